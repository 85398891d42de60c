// Cards with a hardware MPEG encoder, the QL2 family.
//
// Unlike the other families' backends this one does not work through the filters that an
// application hands over: it builds a filter graph of its own from the devices it finds by their
// friendly names, and reaches the hardware through the property interfaces of that graph's capture,
// tuner and encoder filters. The graph never runs and no pins are connected.
//
// Life: construct, HWInit once, InitialTV or InitialFM to choose a mode, then the operations of
// that mode; ReleaseInterfaces before destruction. Failures are written to "zelkapi_Quillon.log", a
// few to the debugger's output.
//
// Frequencies are kilohertz. Output places may be null unless said otherwise.
#pragma once

#include <cstdint>

#include "ZElkAPI.h"
#include "backends/tuner_modules/fm_receiver.h"
#include "backends/tuner_modules/signal_reading.h"
#include "platform/com_ptr.h"

namespace zelk {

class QuillonDevice {
 public:
  QuillonDevice();
  QuillonDevice(const QuillonDevice&) = delete;
  QuillonDevice& operator=(const QuillonDevice&) = delete;
  ~QuillonDevice();

  // --- Discovery (hw_init.cpp, filter_graph.cpp) ---
  // Accepts the card if its name is one of the family's and its devices can be had. The filter is
  // only tested for null; the tuner filter is not used.
  HRESULT HWInit(IUnknown* captureFilter, const char* friendlyName, IUnknown* tunerFilter);
  // Takes the graph apart and releases all that belongs to the card. The object keeps its settings.
  void ReleaseInterfaces();
  HRESULT GetHWInfo(ZELK_HWInfo* record) const;
  HRESULT GetTunerType(std::uint32_t* type) const;

  // --- Television (television.cpp) ---
  HRESULT InitialTV();
  HRESULT SetTVFormat(std::uint32_t standard, std::uint32_t country);
  // `selector` 1, 2 or 4 stands for a country with that sound system; any other is a country
  // itself.
  HRESULT PutTVSystem(std::uint32_t standard, std::uint32_t selector);
  HRESULT SetTVFreq(std::uint32_t frequencyKHz);
  // Both wait for the card to settle first, 80 ms. The offset is the driver's figure.
  HRESULT IsSignalPresent_TUNER(std::uint32_t* present, std::uint32_t* strength, double* offset);
  HRESULT IsSignalPresent_DECODER(std::uint32_t* present);

  // --- FM radio (fm_radio.cpp) ---
  HRESULT InitialFM(std::uint32_t ignored);
  // On boards with a separate FM receiver the result is 1 when the receiver took the frequency and
  // 0 when it did not: both are successes to the caller.
  HRESULT SetFMFreq(std::uint32_t frequencyKHz);
  // Audio mode 1 is stereo, any other mono. On boards with a separate FM receiver the result is
  // E_FAIL even when the receiver took it.
  HRESULT SetFMAudioMode(std::uint32_t mode);
  HRESULT GetFMAudioMode(std::uint32_t* mode) const;
  // Both wait for the card to settle first, 80 ms. `present` must have a place.
  HRESULT IsFMSignalPresent(std::uint32_t* present, std::uint32_t* strength, double* offset);
  HRESULT GetFMStatusByte(std::uint8_t* tuner, std::uint8_t* demodulator);
  // Reads the FM receiver chip into FmReceiverStatus.
  void ReadFmReceiverStatus();

  // --- Encoder (mpeg_params.cpp) ---
  // Both need HWInit alone, in any mode. A block is read as a whole or not at all.
  HRESULT SetMPEGParam(const ZELK_MpegParams& params);
  HRESULT GetMPEGParam(ZELK_MpegParams* params);

  // --- Bus, locks, ADC (bus.cpp) ---
  // At most 16 bytes each; a longer transfer is refused. A negative length goes to the driver with
  // its low byte and without data. A failed read delivers what the driver left.
  bool ReadI2C(std::uint8_t address, std::uint8_t* buffer, std::int32_t length);
  bool WriteI2C(std::uint8_t address, const std::uint8_t* buffer, std::int32_t length);
  HRESULT I2CRead(std::uint8_t address, std::uint8_t* byte);
  // Two flags, 0 and 1, that the driver keeps.
  HRESULT GetHWLock(std::uint32_t index, std::uint32_t* value);
  HRESULT SetHWLock(std::uint32_t index, std::uint32_t value);
  // Sets both channels of the audio converter to their fixed gain. Always S_OK.
  HRESULT SetAdcVolume();

 private:
  enum class Mode { None, TV, FM };

  static void Log(const char* message);
  // False, after logging `refusal`, until HWInit has succeeded.
  bool Ready(const char* refusal) const;
  // S_OK in FM mode, else the refusal, logged. `notReady` and `notFm` are the operation's lines.
  HRESULT ReadyForFm(const char* notReady, const char* notFm) const;

  // Steps of HWInit.
  HRESULT CreateGraph();
  bool BuildGraph();
  void RegisterGraph();
  void UnregisterGraph();
  HRESULT ObtainProperties();
  std::uint32_t ReadTunerCode();
  void ApplyTunerCode(std::uint8_t code);
  void SetFmLimits();

  // Television.
  void SwitchTunerMode(AMTunerModeType mode);
  bool SetTunerFrequency(std::uint32_t frequencyHz);
  HRESULT ChangeTunerCountry(std::uint32_t country);

  // FM radio.
  bool WriteFmReceiver(bool japaneseBand);
  HRESULT DemodulatorFmPresence(const SignalPlaces& places);
  HRESULT TunerFmPresence(const SignalPlaces& places);

  // The video pin's format; empty when the card has no such pin.
  ComPtr<IAMStreamConfig> VideoPinConfig() const;
  bool WriteAudioAndRates(const ZELK_MpegParams& params);

  ComPtr<IGraphBuilder> Graph;
  ComPtr<ICaptureGraphBuilder2> CaptureGraphBuilder;
  ComPtr<IBaseFilter> CaptureFilter;
  ComPtr<IBaseFilter> EncoderFilter;
  ComPtr<IBaseFilter> TunerFilter;
  ComPtr<IKsPropertySet> CaptureProps;  // board, bus and locks
  ComPtr<IKsPropertySet> EncoderProps;
  ComPtr<IKsPropertySet> TunerProps;

  ZELK_HWInfo HwInfo = {};
  bool Initialised = false;
  bool EncoderReady = false;
  std::uint32_t TunerType = 0;
  bool FmViaTuner = true;  // false: the board has a separate FM receiver
  Mode CurrentMode = Mode::None;
  DWORD RotCookie = 0;  // of the graph in the running object table, 0 while it is not there
  bool DebugApi;        // the user's setting: show the graph to a graph editor
  std::uint32_t FmAudioMode = 1;
  std::uint32_t FmFrequency = 90000;
  std::uint32_t TvFrequency = 175250;
  std::uint32_t CountryCode = 0;
};

}  // namespace zelk
