// The TV channel scan.
#include "api/band_sweep.h"
#include "platform/win32.h"

namespace zelk {
namespace {

constexpr std::uint32_t kStepKHz = 250;
constexpr std::int32_t kMostChannels = 125;

// The usual way: a channel is where the tuner reports a carrier and the decoder locks to it.
class CarrierProbe {
 public:
  void Probe(BandSweep& sweep) {
    // Cleared for each probe: a query that the card refuses finds nothing.
    std::uint32_t carrier = 0;
    std::uint32_t type = 0;
    Ask<Saa713xDevice>([&](auto& card) { card.GetTunerType(&type); });
    // On the silicon tuners a low level does not count.
    const bool silicon = type == 40 || type == 41;
    std::uint32_t strength = 0;
    AskAny([&](auto& card) { card.SetTVFreq(sweep.frequency); });
    AskAny([&](auto& card) {
      card.IsSignalPresent_TUNER(&carrier, silicon ? &strength : nullptr, nullptr);
    });
    if (silicon && strength < 4) carrier = 0;
    PumpMessages();
    if (carrier == 0) return;
    const bool asked =
        Ask<Saa713xDevice, Bt878Device, Bt88xDevice>(
            [&](auto& card) { card.IsSignalPresent_DECODER(&decoderLock_, nullptr); }) ||
        Ask<QuillonDevice>([&](auto& card) { card.IsSignalPresent_DECODER(&decoderLock_); });
    if (!asked || decoderLock_ == 0) return;
    sweep.Report(ZELK_EVENT_FOUND, sweep.frequency);
    sweep.frequency += 5000;
    ++sweep.found;
  }

 private:
  std::uint32_t decoderLock_ = 1;
};

// How a found channel is recognised and reported on an ALPS module, by the AFC reading at its
// probe.
struct AlpsReading {
  std::uint8_t reading;
  std::uint32_t reportedAboveProbeKHz;
};

struct AlpsModule {
  DWORD waitBeforeTuningMs;
  AlpsReading readings[3];
  std::uint32_t stepAfterFoundKHz;  // on top of the second look's step
};

constexpr std::uint8_t kAfcFarAbove = 0;   // tuned well above the carrier
constexpr std::uint8_t kAfcFarBelow = 4;   // no carrier, or tuned well below it
constexpr std::uint8_t kNoReading = 0xFF;  // fills a row; the AFC has three bits

// TSEH1 and TSEJ1.
// Quirk: a reading of 2 is reported 1750 kHz above the probe.
constexpr AlpsModule kTsehTsej = {0, {{3, 0}, {2, 1750}, {kNoReading, 0}}, 4750};
// TSEZ1.
constexpr AlpsModule kTsez = {1, {{2, 0}, {3, 0}, {4, 0}}, 6000};

// ALPS modules: a channel is where the AFC is near its middle with the decoder locked, and at its
// end one step further up. Only SAA713x cards carry these modules; on another card nothing is
// tuned.
class AlpsProbe {
 public:
  explicit AlpsProbe(const AlpsModule& module) : module_(module) {}

  void Probe(BandSweep& sweep) {
    if (module_.waitBeforeTuningMs) Sleep(module_.waitBeforeTuningMs);
    Look(sweep.frequency, firstAfc_);
    PumpMessages();
    Sleep(1);
    const AlpsReading* first = FirstLook();
    if (!first) return;

    const bool looked = Look(sweep.frequency + kStepKHz, secondAfc_);
    if (!looked || secondAfc_ != kAfcFarAbove || decoderLock_ == 0) return;
    sweep.Report(ZELK_EVENT_FOUND, sweep.frequency + first->reportedAboveProbeKHz);
    sweep.frequency += kStepKHz + module_.stepAfterFoundKHz;
    ++sweep.found;
    firstAfc_ = secondAfc_ = kAfcFarBelow;
  }

 private:
  // False when no card with such a module is there to be asked.
  bool Look(std::uint32_t frequency, std::uint8_t& afc) {
    return Ask<Saa713xDevice>([&](auto& card) { card.SetTVFreq(frequency); }) &&
           Ask<Saa713xDevice>(
               [&](auto& card) { card.IsSignalPresent_DECODER(&decoderLock_, nullptr); }) &&
           Ask<Saa713xDevice>([&](auto& card) { card.ReadTunerAfc(&afc); });
  }

  const AlpsReading* FirstLook() const {
    if (decoderLock_ == 0) return nullptr;
    for (const AlpsReading& row : module_.readings) {
      if (row.reading == firstAfc_) return &row;
    }
    return nullptr;
  }

  const AlpsModule& module_;
  std::uint32_t decoderLock_ = 1;
  std::uint8_t firstAfc_ = kAfcFarBelow;
  std::uint8_t secondAfc_ = kAfcFarBelow;
};

// The strategies of one scan. Which one probes is asked anew each time: a callback may exchange the
// card.
class TvProbes {
 public:
  AfterProbe operator()(BandSweep& sweep) {
    if (library.AlpsTsehTsej == 1) {
      tsehTsej_.Probe(sweep);
    } else if (library.AlpsTsez == 1) {
      tsez_.Probe(sweep);
    } else {
      carrier_.Probe(sweep);
    }
    sweep.frequency += kStepKHz;
    return AfterProbe::GoOn;
  }

 private:
  AlpsProbe tsehTsej_{kTsehTsej};
  AlpsProbe tsez_{kTsez};
  CarrierProbe carrier_;
};

// Reads the live card's record; false without one. This is no call of the card that must be
// counted, because no driver is asked, and it must not be: another thread may be here to stop the
// scan.
bool ReadLimits(ZELK_HWInfo& info) {
  const auto read = [&](auto* card) {
    if (card) card->GetHWInfo(&info);
    return card != nullptr;
  };
  return read(Live<Saa713xDevice>()) || read(Live<Bt878Device>()) || read(Live<Bt88xDevice>()) ||
         read(Live<QuillonDevice>());
}

}  // namespace
}  // namespace zelk

using namespace zelk;

HRESULT ZELK_CALL ZELK_AllFreqScan(ZELK_ScanCallback callback, uint32_t command) {
  // A card that cannot say its limits has a band of one probe.
  ZELK_HWInfo info = {};
  if (!ReadLimits(info)) return E_FAIL;

  if (command == ZELK_SCAN_START && library.ScanRunning.exchange(true)) return E_FAIL;
  if (command == ZELK_SCAN_STOP && library.ScanRunning.exchange(false)) return S_OK;
  // Any other command runs a scan within the running one.

  BandSweep sweep = {.frequency = info.TvLowKHz,
                     .low = info.TvLowKHz,
                     .high = info.TvHighKHz,
                     .foundLimit = kMostChannels,
                     .callback = callback};
  if (library.ScanRunning) sweep.Report(ZELK_EVENT_STARTED, 0);
  RunSweep(sweep, TvProbes());
  sweep.Report(ZELK_EVENT_ENDED, 0);
  return S_FALSE;
}
