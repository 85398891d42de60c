#include "tests/fuzz/targets.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include "cli/errors.h"
#include "cli/parse.h"
#include "virtual_cards/cards/virtual_card.h"
#include "virtual_cards/video_standard.h"

namespace zelk::fuzz {
namespace {

using namespace virtual_cards;

void Promise(bool kept, const std::string& what) {
  if (!kept) throw std::logic_error("promised, and not kept: " + what);
}

// What `parse` answers; nothing when it complains, in words.
template <class Complaint, class Parse>
auto AnswerOf(Parse parse) -> std::optional<decltype(parse())> {
  try {
    return parse();
  } catch (const Complaint& complaint) {
    Promise(*complaint.what() != '\0', "a reason");
    Promise(!dynamic_cast<const std::system_error*>(&complaint), "words of our own");
    return std::nullopt;
  }
}

bool TakesNumber(std::string_view text) {
  const std::string copy(text);
  bool taken = false;
  for (const std::uint32_t highest : {0xFFu, 0xFFFFFFFFu}) {
    const auto number =
        AnswerOf<cli::UsageError>([&] { return cli::ParseNumber(text, highest, "number"); });
    if (!number) continue;
    taken = true;
    Promise(*number <= highest, "a limit");
    const bool hexadecimal = copy.find_first_of("xX") != std::string::npos;
    Promise(*number == std::strtoull(copy.c_str(), nullptr, hexadecimal ? 16 : 10), "the number");
  }
  return taken;
}

bool TakesFrequency(std::string_view text) {
  static const Raster raster = LoadRaster("pal-bg");
  const std::string copy(text);
  const auto kHz = AnswerOf<cli::UsageError>([&] { return cli::ParseFrequencyKHz(text); });
  const auto either =
      AnswerOf<cli::UsageError>([&] { return cli::ParseChannelOrFrequencyKHz(text, raster); });
  const RasterChannel* channel = raster.Find(text);
  Promise(channel ? either == channel->pictureKHz : either == kHz, "a channel or a frequency");
  if (!kHz) return false;
  const bool mega = copy.find_first_of("mM") != std::string::npos;
  const double written = std::strtod(copy.c_str(), nullptr) * (mega ? 1000 : 1);
  Promise(std::abs(written - *kHz) <= 0.5 && !std::signbit(written), "the frequency");
  Promise(*kHz <= 4'000'000, "what 32 bits of hertz can say");
  return true;
}

bool TakesCard(std::string_view text) {
  const auto card = AnswerOf<std::invalid_argument>([&] { return CreateCard(text, {}); });
  if (!card) return false;
  const bool filters = static_cast<bool>((*card)->CaptureFilter());
  Promise(filters != (*card)->FriendlyName().empty(), "a name for a card with filters");
  Promise((*card)->LiveReferences() == 0, "nothing held");
  return true;
}

bool TakesRaster(std::string_view text) {
  const auto raster =
      AnswerOf<std::runtime_error>([&] { return ReadRaster(text, "id", "raster.json"); });
  if (!raster) return false;
  Promise(!NameOfVideoStandard(raster->standard).empty(), "a video standard");
  Promise(raster->countryCode > 0 && raster->countryCode <= 9999, "a country");
  Promise(!raster->channels.empty(), "channels");
  std::uint32_t last = 29'999;
  for (const RasterChannel& channel : raster->channels) {
    Promise(channel.pictureKHz > last, "ascending carriers in the TV band");
    last = channel.pictureKHz;
  }
  // Each would be looked for among all, and there may be thousands.
  for (const RasterChannel& channel :
       std::span(raster->channels).first(std::min<std::size_t>(raster->channels.size(), 200)))
    Promise(raster->Find(channel.name) == &channel, "a name for each channel");
  Promise(last <= 1'000'000, "carriers in the TV band");
  return true;
}

bool TakesPlace(std::string_view text) {
  const auto air = AnswerOf<std::runtime_error>([&] { return ReadAir(text, "place.json"); });
  if (!air) return false;
  static const std::vector<std::string> ids = RasterIds();
  Promise(std::find(ids.begin(), ids.end(), air->raster) != ids.end(), "a raster that there is");
  const Raster raster = LoadRaster(air->raster);
  double last = 0;
  const auto onAir = [&last](double kHz, double levelDbuV, const std::string& station) {
    Promise(kHz >= last, "ascending carriers");
    last = kHz;
    Promise(levelDbuV >= 0 && levelDbuV <= 120, "a level that an antenna gives");
    Promise(!station.empty(), "a name for each station");
  };
  for (const TvCarrier& carrier : air->tv) {
    onAir(carrier.pictureKHz, carrier.levelDbuV, carrier.station);
    const RasterChannel* channel = raster.Find(carrier.channel);
    Promise(channel && std::abs(carrier.pictureKHz - channel->pictureKHz) <= 1500,
            "a carrier in its channel");
    Promise(!NameOfVideoStandard(carrier.standard).empty(), "a video standard");
  }
  last = 59'900;
  for (const FmStation& station : air->fm)
    onAir(station.carrierKHz, station.levelDbuV, station.station);
  Promise(last <= 110'100, "carriers in the FM band");
  return true;
}

constexpr Target kTargets[] = {{"number", TakesNumber},
                               {"frequency", TakesFrequency},
                               {"card", TakesCard},
                               {"raster", TakesRaster},
                               {"place", TakesPlace}};

}  // namespace

std::span<const Target> Targets() { return kTargets; }

}  // namespace zelk::fuzz
