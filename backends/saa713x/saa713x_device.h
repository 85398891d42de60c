// Cards built on the Philips SAA7130, SAA7133, SAA7134 and SAA7135.
//
// The backend reaches a card in three ways: through the capture filter's property sets (the
// standard decoder set and the card driver's own), through the tuner filter's property set where
// the driver tunes, and through the Vamp COM server for the I2C bus, the GPIO lines and the
// decoder. It finds no devices of its own: it accepts or refuses the card whose filters it is
// given, by friendly name.
//
// Life: construct, HWInit once (a failed object is only good for destruction; a second HWInit gives
// the card back and keeps whatever the new one does not set), InitialTV or InitialFM to choose a
// mode, then the operations of that mode.
// Before HWInit has succeeded every operation answers E_FAIL and says so in "zelkapi_713x.log",
// except those that only exchange a property with the driver.
//
// Frequencies are kilohertz. Output places may be null.
#pragma once

#include <array>
#include <cstdint>

#include "ZElkAPI.h"
#include "backends/saa713x/boards.h"
#include "backends/tuner_modules/fm_receiver.h"
#include "backends/tuner_modules/signal_reading.h"
#include "platform/com_ptr.h"

namespace zelk {

class Saa713xDevice {
 public:
  Saa713xDevice() = default;
  Saa713xDevice(const Saa713xDevice&) = delete;
  Saa713xDevice& operator=(const Saa713xDevice&) = delete;
  virtual ~Saa713xDevice();

  // --- Discovery (hw_init.cpp) ---
  // Accepts the card if its name is one of the family's and its interfaces can be had, then reads
  // the board's configuration. Failures are the code of the step that failed.
  HRESULT HWInit(IUnknown* captureFilter, const char* friendlyName, IUnknown* tunerFilter,
                 std::uint8_t russia);
  HRESULT GetHWInfo(ZELK_HWInfo* record) const;
  HRESULT GetTunerType(std::uint32_t* type) const;
  // The board carries an ALPS TSEH1 or TSEJ1 / a TSEZ1 module (1 = yes).
  std::uint8_t GetAlpsTsehTsej() const { return Board.AlpsTsehTsej; }
  std::uint8_t GetAlpsTsez() const { return Board.AlpsTsez; }

  // --- Television (tv_format.cpp, tv_tuning.cpp, tv_signal.cpp) ---
  HRESULT InitialTV();
  HRESULT SetTVFormat(std::uint32_t standard, std::uint32_t country);
  HRESULT SetTVFreq(std::uint32_t frequencyKHz);
  HRESULT PutTVSystem(std::uint32_t standard, std::uint32_t system);
  // Both wait for the card to settle first, 80 ms.
  HRESULT IsSignalPresent_TUNER(std::uint32_t* present, std::uint32_t* strength,
                                double* afcOffsetKHz);
  HRESULT IsSignalPresent_DECODER(std::uint32_t* present, std::uint32_t* strength);
  // The AFC reading of an ALPS module, 0..4, in the tuner's status byte at 0xC1. Always answers 1.
  std::uint32_t ReadTunerAfc(std::uint8_t* reading);
  // Quirk: both answer E_FAIL even after their work is done.
  HRESULT SetCaptureStandard(std::uint32_t standard);
  HRESULT GetVIDEOSTANDARD(std::uint32_t* record) const;
  HRESULT GetDecoder(std::uint32_t* chipNumber) const;

  // --- FM radio (fm_radio.cpp, fm_signal.cpp) ---
  // Audio mode 1 is stereo, any other mono.
  HRESULT InitialFM(std::uint32_t audioMode);
  // Frequencies outside the card's FM band are refused. On some tuners the result is not a code:
  // see there.
  HRESULT SetFMFreq(std::uint32_t frequencyKHz);
  HRESULT SetFMAudioMode(std::uint32_t mode);
  HRESULT GetFMAudioMode(std::uint32_t* mode) const;
  // 0 while a scan tests a station a second time, 1 otherwise.
  void SetFMTuneFlag(std::uint32_t value) { FmTuneFlag = value; }
  // Both wait for the card to settle first, 80 ms. `demodulator` receives the IF demodulator's
  // status byte.
  HRESULT IsFMSignalPresent(std::uint32_t* present, std::uint32_t* strength, double* afcOffsetKHz);
  HRESULT GetFMStatusByte(std::uint8_t* tuner, std::uint8_t* demodulator);
  HRESULT GetFMStereo(std::uint32_t* stereo) const;
  // Reads the FM receiver chip into FmReceiverStatus.
  void ReadFmReceiverStatus();
  // Keeps the FM receiver's search levels, eight bytes, for the whole library. Always answers 1.
  std::uint32_t FM_SetSearchLevel(const std::uint8_t* levels);

  // --- Bus (i2c_bus.cpp) ---
  // Device addresses are 8-bit bus addresses; bit 0 does not matter.
  HRESULT I2CWriteSequence(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count);
  HRESULT I2CReadSequence(std::uint8_t device, std::uint8_t* buffer, std::uint32_t count);
  HRESULT I2CRead(std::uint8_t device, std::uint8_t* byte);
  // Four bytes, high byte first: a demodulator's subaddress and registers, or a PLL's divider and
  // control.
  HRESULT I2CWriteDWord(std::uint8_t device, std::uint16_t word1, std::uint16_t word2);
  // A failed read delivers 0.
  HRESULT ReadEEPROM(std::uint8_t address, std::uint8_t* byte);

  // --- Remote control (remote_control.cpp) ---
  HRESULT GetRemoteData(std::uint32_t* data);
  HRESULT GetRemoteICData(std::uint8_t* key);

  // --- Driver property set (driver_properties.cpp) ---
  // Lock 0 keeps the driver off the tuner while the application uses it; lock 1 is the
  // application's.
  HRESULT SetHWLock(std::uint32_t index, std::uint32_t value);
  HRESULT GetHWLock(std::uint32_t index, std::uint32_t* value) const;
  HRESULT SetTunerPowerState(std::uint32_t on);
  HRESULT SetRussiaFlag(std::uint32_t flag);
  HRESULT SetVolume(std::uint32_t value);
  HRESULT SetFUSE(std::uint32_t value);
  HRESULT GetFUSE(std::uint32_t* value) const;
  HRESULT SetAUDIOSYSTEM(std::uint32_t value);
  HRESULT GetAUDIOSYSTEM(std::uint32_t* value) const;
  HRESULT Set7135VirtualMode(std::uint32_t value);
  HRESULT Set7135VirtualStereoEffect(std::uint32_t value);
  HRESULT Set7135Bass(std::uint32_t value);
  HRESULT Set7135Treble(std::uint32_t value);
  HRESULT Get7135VirtualMode(std::uint32_t* value) const;
  HRESULT Get7135VirtualStereoEffect(std::uint32_t* value) const;
  HRESULT Get7135Bass(std::uint32_t* value) const;
  HRESULT Get7135Treble(std::uint32_t* value) const;
  HRESULT SetGainValue(std::uint32_t propertyId, std::uint32_t value);
  HRESULT GetGainValue(std::uint32_t propertyId, std::uint32_t* value) const;

 private:
  enum class Mode { None, TV, FM };

  struct PresenceTest;

  static void Log(const char* message);
  // False, after logging `refusal`, until HWInit has obtained the card's interfaces.
  bool Ready(const char* refusal) const;

  // Steps of HWInit.
  void ReleaseInterfaces();
  HRESULT ObtainFilters(IUnknown* captureFilter, IUnknown* tunerFilter);
  void BindTvAudio();
  HRESULT ObtainVampInterfaces(ComPtr<IVampDevice>& device);
  // `code`, after logging `failure` where it is one.
  static HRESULT Judged(HRESULT code, const char* failure);
  void ReadBoardConfiguration(IVampDevice& device);
  void ReadTunerFromEeprom();
  void SetUpDemodulator();
  void SetFmLimits(bool russia);
  void SetTvLimits();

  // The silicon tuner's power-on set-up (silicon_tuner.cpp).
  void SetTunerI2CGate(bool open);
  void InitSiliconTunerA();
  void InitSiliconTunerB();

  // FM radio.
  struct FmPresenceTest;
  std::uint8_t FmReceiverBand() const;
  HRESULT WriteFmReceiver(const FmReceiverBytes& bytes);
  HRESULT TuneFmReceiver();
  HRESULT TuneFmPll();
  HRESULT SetUpFmTuner();
  HRESULT TuneSiliconFmA(std::uint32_t stationHz);
  HRESULT TuneSiliconFmB(std::uint32_t stationHz);
  void WriteSiliconTuner(std::uint8_t subaddress, std::uint8_t value);
  void WriteSiliconDemodulator(std::uint8_t subaddress, std::uint8_t value);
  HRESULT SiliconFmPresence(const SignalPlaces& places);
  HRESULT DemodulatorFmPresence(const SignalPlaces& places);
  HRESULT ReceiverFmPresence(const SignalPlaces& places);
  HRESULT TunerFmPresence(const SignalPlaces& places);

  // Television.
  bool IsSilicon() const { return Board.TunerType == 40 || Board.TunerType == 41; }
  bool NeedsCountrySubstitute(std::uint32_t country) const;
  HRESULT SetUpDemodulatorFor(std::uint32_t standard);
  HRESULT SwitchTunerMode(LONG mode, const char* failure);
  HRESULT NotifyTuning(std::uint32_t phase, std::uint32_t country);
  HRESULT RequestTunerFrequency(std::uint32_t frequencyKHz, std::uint32_t flags,
                                std::uint32_t channel, std::uint32_t country);
  HRESULT WritePll(std::uint32_t frequencyKHz, std::uint32_t country);
  HRESULT ReadDecoderStandard(std::uint32_t& standard) const;
  void FollowDecoderStandard(std::uint32_t decoderStandard);
  void Retune();
  HRESULT DemodulatorAfcPresence(const SignalPlaces& places);
  HRESULT DemodulatorLockPresence(const SignalPlaces& places);
  HRESULT DecoderPresence(const SignalPlaces& places);
  HRESULT Silicon40Presence(const SignalPlaces& places);
  HRESULT Silicon41Presence(const SignalPlaces& places);
  HRESULT TunerAfcPresence(const SignalPlaces& places);
  HRESULT ReadSiliconStatus(std::uint8_t& status);

  // Transfers that neither test nor log.
  HRESULT WriteBus(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count);
  bool ReadBus(std::uint8_t device, std::uint8_t* buffer, std::uint32_t count);
  HRESULT ReadBusAt(std::uint8_t device, std::uint8_t subaddress, std::uint8_t* buffer,
                    std::uint32_t count);

  HRESULT RemoteFromChip(std::uint8_t& key);
  HRESULT RemoteFromGpio(std::uint8_t& key);

  HRESULT SetAudioSystemProperty(std::uint32_t value);
  HRESULT SetDriverProperty(std::uint32_t id, std::uint32_t value);
  HRESULT GetDriverProperty(std::uint32_t id, std::uint32_t* value, std::uint32_t preset = 0) const;

  ComPtr<IAMTVAudio> TvAudio;
  ComPtr<IVampI2c> I2c;
  ComPtr<IVampGpio> Gpio;
  ComPtr<IVampDecoder> Decoder;
  ComPtr<IVampService> Service;
  ComPtr<IKsPropertySet> TunerProps;  // empty on cards without a tuner filter
  ComPtr<IKsPropertySet> CaptureProps;

  bool Initialised = false;
  Mode CurrentMode = Mode::None;
  BoardSettings Board;
  ZELK_HWInfo HwInfo = {};
  bool RemotePresent = false;  // a remote-control receiver chip, not GPIO lines

  std::uint32_t TvFrequency = 175250;
  std::uint32_t CountryCode = 0;
  std::int32_t LastTunedCountry = -1;  // effective country of the last tuning
  std::uint32_t VideoStandard = 0;
  std::uint32_t FmFrequency = 90000;
  std::uint32_t FmAudioMode = 1;
  std::uint32_t FmTuneFlag = 1;
  std::uint32_t RussiaFlag = 0;  // what the driver was last told

  // Register images that the silicon tuners were set up with. FM tuning takes from them what it
  // does not set itself.
  std::array<std::uint8_t, 13> TunerImageA = {};
  std::array<std::uint8_t, 14> TunerImageB = {};
};

}  // namespace zelk
