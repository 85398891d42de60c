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
    const ProbedCard probed;
    // Cleared for each probe: a query that the card refuses finds nothing.
    std::uint32_t carrier = 0;
    probed.Ask<Saa713xDevice>([&](auto& card) { AskSaa713x(card, sweep.frequency, carrier); });
    probed.Ask<Bt878Device, Bt88xDevice, QuillonDevice>([&](auto& card) {
      card.SetTVFreq(sweep.frequency);
      card.IsSignalPresent_TUNER(&carrier, nullptr, nullptr);
    });
    PumpMessages();
    if (carrier == 0) return;
    probed.Ask<Saa713xDevice, Bt878Device, Bt88xDevice>(
        [&](auto& card) { card.IsSignalPresent_DECODER(&decoderLock_, nullptr); });
    probed.Ask<QuillonDevice>([&](auto& card) { card.IsSignalPresent_DECODER(&decoderLock_); });
    if (decoderLock_ == 0 || !probed.IsLive()) return;
    sweep.Report(ZELK_EVENT_FOUND, sweep.frequency);
    sweep.frequency += 5000;
    ++sweep.found;
  }

 private:
  static void AskSaa713x(Saa713xDevice& card, std::uint32_t frequency, std::uint32_t& carrier) {
    std::uint32_t type = 0;
    card.GetTunerType(&type);
    card.SetTVFreq(frequency);
    if (type == 40 || type == 41) {
      // The silicon tuners lock to a carrier's neighbourhood; only a high level is the carrier
      // itself.
      std::uint32_t strength = 0;
      card.IsSignalPresent_TUNER(&carrier, &strength, nullptr);
      if (strength < 4) carrier = 0;
    } else {
      card.IsSignalPresent_TUNER(&carrier, nullptr, nullptr);
    }
  }

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

// TSEH1 and TSEJ1. A reading of 2 is reported 1750 kHz above the probe: applications expect it
// there.
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
    const ProbedCard probed;
    if (module_.waitBeforeTuningMs) Sleep(module_.waitBeforeTuningMs);
    Look(probed, sweep.frequency, firstAfc_);
    PumpMessages();
    Sleep(1);
    const AlpsReading* first = FirstLook();
    if (!first) return;

    Look(probed, sweep.frequency + kStepKHz, secondAfc_);
    if (secondAfc_ != kAfcFarAbove || decoderLock_ == 0 || !probed.IsLive()) return;
    sweep.Report(ZELK_EVENT_FOUND, sweep.frequency + first->reportedAboveProbeKHz);
    sweep.frequency += kStepKHz + module_.stepAfterFoundKHz;
    ++sweep.found;
    firstAfc_ = secondAfc_ = kAfcFarBelow;
  }

 private:
  void Look(const ProbedCard& probed, std::uint32_t frequency, std::uint8_t& afc) {
    probed.Ask<Saa713xDevice>([&](auto& card) {
      card.SetTVFreq(frequency);
      card.IsSignalPresent_DECODER(&decoderLock_, nullptr);
      card.ReadTunerAfc(&afc);
    });
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

}  // namespace
}  // namespace zelk

using namespace zelk;

HRESULT ZELK_CALL ZELK_AllFreqScan(ZELK_ScanCallback callback, uint32_t command) {
  // A card that cannot say its limits has a band of one probe.
  ZELK_HWInfo info = {};
  bool live = false;
  Dispatch<Saa713xDevice, Bt878Device, Bt88xDevice, QuillonDevice>(E_FAIL, [&](auto& card) {
    live = true;
    return card.GetHWInfo(&info);
  });
  if (!live) return E_FAIL;

  if (command == ZELK_SCAN_START) {
    if (library.ScanRunning) return E_FAIL;
    library.ScanRunning = true;
  } else if (command == ZELK_SCAN_STOP && library.ScanRunning) {
    library.ScanRunning = false;
    return S_OK;
  }
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
