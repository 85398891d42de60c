#include "cli/session.h"

#include <cmath>
#include <limits>
#include <utility>

#include "platform/control.h"
#include "virtual_cards/video_standard.h"

namespace zelk::cli {
namespace {

constexpr std::string_view kVirtualPrefix = "virtual:";
// Adjacent carriers are several MHz apart in every plan, and the library searches in steps of 250
// kHz.
constexpr std::uint32_t kNameToleranceKHz = 200;
// Longest tuner name and its terminator are 26 bytes. The library copies without regard to the
// size.
constexpr std::uint32_t kTunerNameBytes = 64;

// What stands behind "virtual:".
std::string CardKindOf(const std::string& option) {
  if (!option.starts_with(kVirtualPrefix))
    throw UsageError("--card \"" + option + "\": this build drives virtual cards, virtual:KIND");
  return option.substr(kVirtualPrefix.size());
}

virtual_cards::Raster RasterOf(const Options& options, const virtual_cards::Air& air) {
  try {
    return virtual_cards::LoadRaster(options.raster.empty() ? air.raster : options.raster);
  } catch (const std::runtime_error& error) {
    if (options.raster.empty()) throw;
    throw UsageError(std::string("--raster: ") + error.what());
  }
}

std::uint32_t StandardOf(const Options& options, const virtual_cards::Raster& raster) {
  if (options.standard.empty()) return raster.standard;
  if (const auto standard = virtual_cards::FindVideoStandard(options.standard)) return *standard;
  std::string names;
  for (const auto& row : virtual_cards::kVideoStandardNames) names += ' ' + std::string(row.name);
  throw UsageError("--standard \"" + options.standard + "\" is none of" + names);
}

std::unique_ptr<virtual_cards::VirtualCard> PlugIn(const std::string& description,
                                                   virtual_cards::Air air) {
  try {
    return virtual_cards::CreateCard(description, std::move(air));
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string("--card: ") + error.what());
  }
}

}  // namespace

Session::Session(const Options& options) : cardDescription_(options.card) {
  const std::string kind = CardKindOf(options.card);
  if (options.realtime) {
    host::UseRealClock();
  } else {
    host::UseVirtualClock();
  }
  virtual_cards::Air air = virtual_cards::LoadAir(options.air);
  placeName_ = air.place;
  raster_ = RasterOf(options, air);
  standard_ = StandardOf(options, raster_);
  country_ = options.country.value_or(static_cast<std::uint32_t>(raster_.countryCode));
  card_ = PlugIn(kind, std::move(air));
  if (options.trace) card_->AttachTrace(&trace_);
  capture_ = card_->CaptureFilter();
  tuner_ = card_->TunerFilter();
  const std::optional<std::string> name = FriendlyName();
  Check(ZELK_HWInit(capture_.Get(), name ? name->c_str() : nullptr, tuner_.Get(),
                    options.easternFm ? 1 : 0),
        "initialise the card \"" + name.value_or(cardDescription_) + '"');
}

std::optional<std::string> Session::FriendlyName() const {
  if (!capture_) return std::nullopt;
  return card_->FriendlyName();
}

void Session::StartTv() {
  Check(ZELK_TVInit(), "switch the card to TV");
  Check(ZELK_put_TVFormat(standard_, country_),
        "set the TV format " + std::string(virtual_cards::NameOfVideoStandard(standard_)) +
            ", country " + std::to_string(country_));
}

void Session::StartFm() {
  if (HWInfo().FmTuner == 0)
    std::cerr << "zelk: warning: the board's record says that it has no FM tuner; trying anyway\n";
  Check(ZELK_FMInit(), "switch the card to FM radio");
}

ZELK_HWInfo Session::HWInfo() const {
  ZELK_HWInfo info{};
  Check(ZELK_GetHWInfo(&info), "read the board's record");
  return info;
}

std::uint32_t Session::TunerType() const {
  std::uint32_t type = 0;
  Check(ZELK_GetTunerType(&type), "read the tuner type");
  return type;
}

std::string Session::TunerName() const {
  char name[kTunerNameBytes] = {};
  Check(ZELK_GetTunerName(name, sizeof name), "read the tuner's name");
  return name;
}

void Session::RequireInBand(const Band& band, std::uint32_t frequencyKHz) const {
  const ZELK_HWInfo info = HWInfo();
  const std::uint32_t low = info.*band.lowKHz;
  const std::uint32_t high = info.*band.highKHz;
  if (frequencyKHz < low || frequencyKHz > high)
    throw Failure("cannot tune " + std::to_string(frequencyKHz) + " kHz: outside the tuner's " +
                  band.name + " band, " + std::to_string(low) + " to " + std::to_string(high) +
                  " kHz");
}

void Session::Tune(const Band& band, std::uint32_t frequencyKHz) const {
  Check(band.SetFreq(frequencyKHz, nullptr), "tune " + std::to_string(frequencyKHz) + " kHz");
}

HRESULT Session::AskSignal(const Band& band, Signal& signal) const {
  // Some tuners answer the presence alone. What they leave untouched is recognised by these marks.
  constexpr std::uint32_t kNoStrength = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t present = 0;
  std::uint32_t strength = kNoStrength;
  double afcOffsetKHz = std::nan("");
  const HRESULT code = band.IsSignalPresent(&present, &strength, &afcOffsetKHz);
  signal.present = present == 1;
  if (strength != kNoStrength) signal.strength = strength;
  // The MPEG-encoder cards' offset is a signed 32-bit figure that is delivered as an unsigned one.
  constexpr double kWrap = 4294967296.0;
  if (afcOffsetKHz >= kWrap / 2) afcOffsetKHz -= kWrap;
  if (!std::isnan(afcOffsetKHz)) signal.afcOffsetKHz = afcOffsetKHz;
  return code;
}

Signal Session::ReadSignal(const Band& band) const {
  Signal signal;
  Check(AskSignal(band, signal), "read the signal");
  ComPtr<IAMAnalogVideoDecoder> decoder;
  LONG locked = 0;
  if (&band == &kTvBand && SUCCEEDED(Query(capture_.Get(), decoder)) &&
      SUCCEEDED(decoder->get_HorizontalLocked(&locked)))
    signal.decoderLock = locked != 0;
  return signal;
}

std::optional<Signal> Session::Measure(const Band& band, std::uint32_t frequencyKHz) const {
  Signal signal;
  if (FAILED(band.SetFreq(frequencyKHz, nullptr)) || FAILED(AskSignal(band, signal)))
    return std::nullopt;
  return signal;
}

std::optional<std::string> Session::ChannelName(std::uint32_t carrierKHz) const {
  const virtual_cards::RasterChannel* channel = raster_.Nearest(carrierKHz, kNameToleranceKHz);
  if (!channel) return std::nullopt;
  return channel->name;
}

void Session::Check(HRESULT code, const std::string& action) const {
  if (code < 0) throw Failure("cannot " + action + ": " + ResultText(code) + LogHint());
}

}  // namespace zelk::cli
