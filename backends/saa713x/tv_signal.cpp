// Is there a signal? Each kind of tuner module shows it in its own way.
#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/afc.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr std::uint32_t kSettlingMs = 80;

// Vamp decoder status word.
constexpr ULONG kDecoderLocked = 0x1000000;
constexpr ULONG kDecoderFieldRate = 0x30000;  // either bit: 50 or 60 Hz found

}  // namespace

struct Saa713xDevice::PresenceTest {
  TunerSet tunerTypes;
  HRESULT (Saa713xDevice::*read)(const SignalPlaces&);
};

HRESULT Saa713xDevice::IsSignalPresent_TUNER(std::uint32_t* present, std::uint32_t* strength,
                                             double* afcOffsetKHz) {
  if (!Initialised) return E_FAIL;
  if (CurrentMode != Mode::TV) return VFW_E_WRONG_STATE;
  WaitMs(kSettlingMs);

  static constexpr PresenceTest kTests[] = {
      {{12, 13, 14, 15, 16, 17, 18, 19, 20, 21}, &Saa713xDevice::DemodulatorAfcPresence},
      {{24, 37}, &Saa713xDevice::DemodulatorLockPresence},
      {{46, 47, 48}, &Saa713xDevice::DecoderPresence},
      {{40}, &Saa713xDevice::Silicon40Presence},
      {{41}, &Saa713xDevice::Silicon41Presence},
  };
  const SignalPlaces places = {present, strength, afcOffsetKHz};
  for (const PresenceTest& test : kTests) {
    if (test.tunerTypes.Has(Board.TunerType)) return (this->*test.read)(places);
  }
  return TunerAfcPresence(places);
}

HRESULT Saa713xDevice::DemodulatorAfcPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kDemodulatorAddress, &status);
  if (FAILED(code)) return StoreNoReading(places, code);
  StoreDemodulatorTvAfc(places, status, kDemodulatorAfc);
  return code;
}

HRESULT Saa713xDevice::DemodulatorLockPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kDemodulatorAddress, &status);
  if (FAILED(code)) return StoreNoReading(places, code);
  StoreDemodulatorTvLock(places, status);
  return code;
}

HRESULT Saa713xDevice::DecoderPresence(const SignalPlaces& places) {
  const HRESULT code = IsSignalPresent_DECODER(places.present, nullptr);
  // Quirk: full strength whatever the decoder found, as long as its answer had a place to go.
  Store(places.strength, places.present ? 5 : 0);
  return code;
}

HRESULT Saa713xDevice::ReadSiliconStatus(std::uint8_t& status) {
  return ReadBusAt(kSiliconDemodulatorAddress, kSiliconAfcRegister, &status, 1);
}

HRESULT Saa713xDevice::Silicon40Presence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = ReadSiliconStatus(status);
  if (FAILED(code)) return StoreNoReading(places, code);
  Store(places.present, (status & kSiliconLocked) != 0);
  Store(places.strength, SiliconLevel(status) / 13);
  Store(places.offset, SiliconOffsetKHz(status));
  return code;
}

HRESULT Saa713xDevice::Silicon41Presence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  HRESULT code = ReadSiliconStatus(status);
  if ((status & kSiliconLocked) == 0) {
    // A second look, after as much time again.
    WaitMs(kSettlingMs);
    code = ReadSiliconStatus(status);
  }
  if (FAILED(code)) return StoreNoReading(places, code);
  constexpr std::uint32_t kLowestLevel = 50;  // about 185 kHz from the carrier
  const std::uint32_t level = SiliconLevel(status);
  Store(places.present, (status & kSiliconLocked) != 0 && level >= kLowestLevel);
  Store(places.strength, level);
  Store(places.offset, SiliconOffsetKHz(status));
  return code;
}

HRESULT Saa713xDevice::TunerAfcPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kTunerAddress, &status);
  if (FAILED(code)) return StoreNoReading(places, code);
  const bool present = StoreTunerTvStatus(places, status);
  // With these modules the decoder has the last word.
  constexpr TunerSet kAskDecoder = {35, 36};
  if (present && kAskDecoder.Has(Board.TunerType)) {
    return IsSignalPresent_DECODER(places.present, nullptr);
  }
  return code;
}

HRESULT Saa713xDevice::IsSignalPresent_DECODER(std::uint32_t* present, std::uint32_t* strength) {
  if (!Ready("SAA713x IsSignalPresent_DECODER(): Hardware not initial")) return E_FAIL;
  WaitMs(kSettlingMs);
  bool locked = false;
  HRESULT code = S_OK;
  if (CaptureProps) {
    ComPtr<IAMAnalogVideoDecoder> decoder;
    code = Query(CaptureProps.Get(), decoder);
    if (SUCCEEDED(code)) {
      LONG horizontalLock = 0;
      code = decoder->get_HorizontalLocked(&horizontalLock);
      locked = SUCCEEDED(code) && horizontalLock != 0;
    }
  } else {
    ULONG status = 0;
    code = Decoder->GetStatus(&status);
    locked = (status & kDecoderLocked) != 0 && (status & kDecoderFieldRate) != 0;
  }
  Store(present, locked);
  Store(strength, locked ? 5 : 0);
  return code;
}

std::uint32_t Saa713xDevice::ReadTunerAfc(std::uint8_t* reading) {
  std::uint8_t status = reading ? *reading : 0;
  I2CReadSequence(kTunerStatusAddress, &status, 1);
  Store(reading, TunerAfcCode(status));
  return 1;
}

}  // namespace zelk
