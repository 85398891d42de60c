// What the backends of Bt878 and CX2388x cards have in common: the same boards were built with
// either chip, so that tuning, FM radio and the signal queries are the same work. A family differs
// in its data (FamilyTraits) and in the steps that it overrides.
//
// The backend reaches a card in one of two ways, chosen by HWInit: through the property sets of the
// capture filter (and of the tuner filter, if there is one) or, without a capture filter or a name,
// through the family's I/O library.
//
// Life: construct, HWInit once (a failed object is only good for destruction; a second HWInit gives
// the card back and keeps whatever the new one does not set), InitialTV or InitialFM to choose a
// mode, then the operations of that mode.
// Before HWInit has succeeded every operation answers E_FAIL, in the wrong mode VFW_E_WRONG_STATE.
//
// Frequencies are kilohertz. Output places may be null.
#pragma once

#include <cstdint>
#include <span>

#include "ZElkAPI.h"
#include "backends/bt_family/card_bus.h"
#include "backends/bt_family/family_log.h"
#include "backends/bt_family/io_library.h"
#include "backends/tuner_modules/signal_reading.h"
#include "backends/tuner_modules/tuner_set.h"
#include "platform/com_ptr.h"
#include "platform/dshow.h"

namespace zelk {

// How a family differs where a figure or a name says it.
struct FamilyTraits {
  FamilyLog Log;
  FamilyLog UnknownTunerLog;  // receives the line on a tuner type without PLL settings
  bool LogsRefusals;          // of operations that came too early or in the wrong mode
  std::span<const char* const> AcceptedNames;
  std::uint8_t PllAddress;
  std::uint32_t HighestTunerType;  // that bands and PLL settings are known of
  DWORD LockProperties[2];
  std::uint32_t FmStatusWaitMs;   // before a status byte is read in FM; 0 for none
  std::uint32_t FmSignalWaitMs;   // before IsFMSignalPresent reads
  TunerSet FmStatusDemodulators;  // modules whose status bytes come from the demodulator too
};

class BtFamilyDevice {
 public:
  BtFamilyDevice(const BtFamilyDevice&) = delete;
  BtFamilyDevice& operator=(const BtFamilyDevice&) = delete;
  virtual ~BtFamilyDevice();

  // --- Discovery (bt_family_device.cpp) ---
  // Accepts the card if its name is one of the family's and its interfaces can be had, or else its
  // I/O library, then reads the board's EEPROM. S_OK or E_FAIL.
  HRESULT HWInit(IUnknown* captureFilter, const char* friendlyName, IUnknown* tunerFilter);
  HRESULT GetHWInfo(ZELK_HWInfo* record) const;
  HRESULT GetTunerType(std::uint32_t* type) const;

  // --- Television (tv_tuning.cpp, signal.cpp) ---
  HRESULT SetTVFreq(std::uint32_t frequencyKHz);
  // Both wait for the card to settle first, 80 ms.
  HRESULT IsSignalPresent_TUNER(std::uint32_t* present, std::uint32_t* strength,
                                double* afcOffsetKHz);
  HRESULT IsSignalPresent_DECODER(std::uint32_t* present, std::uint32_t* strength);

  // --- FM radio (fm_radio.cpp, signal.cpp) ---
  // Audio mode 1 is stereo, any other mono. Frequencies outside the FM band are refused.
  HRESULT SetFMFreq(std::uint32_t frequencyKHz);
  HRESULT SetFMAudioMode(std::uint32_t mode);
  HRESULT GetFMAudioMode(std::uint32_t* mode) const;
  // 0 while a scan tests a station a second time, 1 otherwise.
  void SetFMTuneFlag(std::uint32_t value) { FmTuneFlag = value; }
  HRESULT IsFMSignalPresent(std::uint32_t* present, std::uint32_t* strength, double* afcOffsetKHz);
  HRESULT GetFMStatusByte(std::uint8_t* tuner, std::uint8_t* demodulator);

  // --- Bus (bt_family_device.cpp) ---
  // Device addresses are 8-bit write addresses. More than 64 bytes are refused.
  HRESULT I2CWriteSequence(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count);
  // Four bytes, high byte first.
  HRESULT I2CWriteDWord(std::uint8_t device, std::uint16_t word1, std::uint16_t word2);
  HRESULT I2CRead(std::uint8_t device, std::uint8_t* byte);
  HRESULT ReadEEPROM(std::uint8_t address, std::uint8_t* byte);
  HRESULT GetRemoteData(std::uint32_t* code);
  // Flags that the driver keeps; in TV or FM mode, with a driver. Only the value 1 means on.
  HRESULT SetHWLock(std::uint32_t index, std::uint32_t value);
  HRESULT GetHWLock(std::uint32_t index, std::uint32_t* value);

 protected:
  enum class Mode { None, TV, FM };
  // What a card needs before its signal can be read.
  static constexpr std::uint32_t kSettlingMs = 80;

  // Both outlive the object.
  BtFamilyDevice(const FamilyTraits& family, const IoLibraryApi& api)
      : Family(family), Library(api) {}

  // --- Steps that a family takes in its own way ---
  // Makes the transport ready and Bus point to it.
  virtual bool SetUpDriver() = 0;
  virtual bool SetUpLibrary() = 0;
  // Reads the tuner type and the board's codes from the EEPROM. False refuses the card.
  virtual bool IdentifyBoard() = 0;
  // The last step of HWInit.
  virtual void PrepareTuner() {}
  virtual HRESULT TuneFm();
  virtual HRESULT TvPresence(const SignalPlaces& places);
  // The property set that keeps the locks.
  virtual HRESULT LockProperties(ComPtr<IKsPropertySet>& properties);

  // --- What families use of the common part ---
  // False, after logging where the family does, until HWInit has succeeded.
  bool Ready(const char* operation, const char* refusal = "(): Hardware not initial") const;
  HRESULT WriteDWord(std::uint8_t device, std::uint16_t word1, std::uint16_t word2);
  HRESULT RequestTunerFrequency(std::uint32_t frequencyKHz, std::uint32_t country);
  // The same, with a line in the log when the driver refuses.
  HRESULT TuneByDriver(std::uint32_t frequencyKHz, std::uint32_t country);
  // The writes and the state of the change to FM. The result of the last write.
  HRESULT EnterFm(std::uint32_t audioMode);

  const FamilyTraits& Family;
  IoLibrary Library;
  CardBus* Bus = nullptr;
  ComPtr<IKsPropertySet> TunerProps;  // empty on cards without a tuner filter
  ComPtr<IKsPropertySet> CaptureProps;

  bool Initialised = false;
  Mode CurrentMode = Mode::None;
  std::uint32_t TunerType = 4;
  ZELK_HWInfo HwInfo = {};
  std::uint32_t TvFrequency = 175250;
  std::uint32_t CountryCode = 0;
  std::uint32_t VideoStandard = 0;
  std::uint32_t FmFrequency = 90000;
  std::uint32_t FmAudioMode = 1;
  std::uint32_t FmTuneFlag = 1;

 private:
  void TearDown();
  bool OpenDriver(IUnknown* captureFilter, const char* friendlyName, IUnknown* tunerFilter);
  void SetBands();
  void LogRefusal(const char* operation, const char* refusal) const;
  bool InMode(Mode mode, const char* operation) const;
  HRESULT LockAccess(const char* operation, std::uint32_t index) const;
  HRESULT WriteTvPll();
  HRESULT ReadInto(std::uint8_t device, std::uint8_t* place);
};

}  // namespace zelk
