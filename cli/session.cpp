#include "cli/session.h"

#include <cmath>
#include <limits>
#include <utility>

#include "cli/devices.h"
#include "platform/control.h"
#include "virtual_cards/video_standard.h"

namespace zelk::cli {
namespace {

constexpr std::string_view kVirtualPrefix = "virtual:";
// A card without filters, which the library reaches through the I/O library of its maker.
constexpr std::string_view kIoLibrary = "io";
constexpr std::string_view kNoTuner = "none";
// Adjacent carriers are several MHz apart in every plan, and the library searches in steps of 250
// kHz.
constexpr std::uint32_t kNameToleranceKHz = 200;
// Longest tuner name and its terminator are 26 bytes. The library copies without regard to the
// size.
constexpr std::uint32_t kTunerNameBytes = 64;

bool IsVirtual(const std::string& card) { return card.starts_with(kVirtualPrefix); }

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

const Device& DeviceNamed(const std::string& name, const std::vector<Device>& devices,
                          const std::string& what) {
  for (const Device& device : devices) {
    if (device.name == name) return device;
  }
  throw UsageError(what);
}

ComPtr<IUnknown> FilterOf(const Device& device) {
  ComPtr<IUnknown> filter = device.MakeFilter();
  if (!filter) throw Failure("the driver of \"" + device.name + "\" makes no filter");
  return filter;
}

std::unique_ptr<virtual_cards::VirtualCard> PlugIn(const std::string& description,
                                                   const Options& options, const char* option,
                                                   virtual_cards::Air air) {
  if (options.realtime) {
    host::UseRealClock();
  } else {
    host::UseVirtualClock();
  }
  try {
    return virtual_cards::CreateCard(description, std::move(air));
  } catch (const std::invalid_argument& error) {
    throw UsageError(std::string(option) + ": " + error.what());
  }
}

// The card that --card or --plug names; nothing when they name none.
std::unique_ptr<virtual_cards::VirtualCard> PlugInChosenCard(const Options& options,
                                                             virtual_cards::Air air) {
  if (!IsVirtual(options.card)) return PlugInBesideTheSystem(options, std::move(air));
  for (const auto& [option, value] :
       {std::pair("--plug", options.plug), std::pair("--tuner", options.tuner)}) {
    if (!value.empty())
      throw UsageError(std::string(option) + " goes with a --card that is no virtual:KIND");
  }
  return PlugIn(options.card.substr(kVirtualPrefix.size()), options, "--card", std::move(air));
}

}  // namespace

std::unique_ptr<virtual_cards::VirtualCard> PlugInBesideTheSystem(const Options& options,
                                                                  virtual_cards::Air air) {
  if (options.plug.empty()) return nullptr;
  return PlugIn(options.plug, options, "--plug", std::move(air));
}

Session::Session(const Options& options) : cardDescription_(options.card) {
  virtual_cards::Air air = virtual_cards::LoadAir(options.air);
  raster_ = RasterOf(options, air);
  standard_ = StandardOf(options, raster_);
  country_ = options.country.value_or(static_cast<std::uint32_t>(raster_.countryCode));
  const std::string place = air.place;
  card_ = PlugInChosenCard(options, std::move(air));
  if (card_) placeName_ = place;
  if (options.trace) {
    if (!card_) throw UsageError("--trace listens to virtual cards alone");
    card_->AttachTrace(&trace_);
  }
  TakeFilters(options);
  Check(ZELK_HWInit(capture_.Get(), friendlyName_ ? friendlyName_->c_str() : nullptr, tuner_.Get(),
                    options.easternFm ? 1 : 0),
        "initialise the card \"" + friendlyName_.value_or(cardDescription_) + '"');
  // Why the families that were tried before refused the card is no reason of what comes now.
  logs_ = LogWatch();
}

void Session::TakeFilters(const Options& options) {
  if (options.card == kIoLibrary) return;
  if (!IsVirtual(options.card)) return FindFilters(options);
  capture_ = card_->CaptureFilter();
  tuner_ = card_->TunerFilter();
  if (capture_) friendlyName_ = card_->FriendlyName();
}

void Session::FindFilters(const Options& options) {
  const std::vector<Device> captures = CaptureDevices();
  const std::vector<Device> tuners = TunerDevices();
  const Device& capture = DeviceNamed(
      options.card, captures,
      "--card \"" + options.card +
          "\" is neither virtual:KIND nor a capture device of this system; see zelk cards");
  const Device* tuner = nullptr;
  if (options.tuner.empty()) {
    tuner = TunerOf(capture, tuners);
  } else if (options.tuner != kNoTuner) {
    tuner = &DeviceNamed(options.tuner, tuners,
                         "--tuner \"" + options.tuner + "\" is no tuner device of this system");
  }
  friendlyName_ = capture.friendlyName;
  capture_ = FilterOf(capture);
  if (tuner) tuner_ = FilterOf(*tuner);
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
