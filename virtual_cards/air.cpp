#include "virtual_cards/air.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "platform/ignore_case.h"
#include "platform/module_path.h"
#include "platform/win32.h"
#include "virtual_cards/video_standard.h"

namespace zelk::virtual_cards {
namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

// What a file may say, so that a slip of the finger is reported instead of broadcast.
constexpr double kLowestLevelDbuV = 0;
constexpr double kHighestLevelDbuV = 120;
// A carrier further away than a quarter of a channel belongs to no channel of the plan.
constexpr double kWidestTvOffsetKHz = 1500;
// FM receivers follow a carrier about this far.
constexpr double kWidestFmOffsetKHz = 100;
constexpr double kLowestTvKHz = 30'000;
constexpr double kHighestTvKHz = 1'000'000;
constexpr double kLowestFmKHz = 60'000;
constexpr double kHighestFmKHz = 110'000;
constexpr double kHighestCountryCode =
    9999;  // dialling codes and the few made-up ones of DirectShow
constexpr double kHighestChannelNumber = 999;

// A value in a data file that knows where it stands, for messages. Every key that an object may
// have is asked for by name; AllowKeys refuses the rest.
class Item {
 public:
  Item(const Json& value, std::string where) : value_(value), where_(std::move(where)) {}

  [[noreturn]] void Fail(const std::string& what) const {
    throw std::runtime_error(where_ + ": " + what);
  }

  void AllowKeys(std::initializer_list<std::string_view> keys) const {
    if (!value_.is_object()) Fail("must be an object in braces");
    for (const auto& [key, unused] : value_.items()) {
      if (std::find(keys.begin(), keys.end(), key) == keys.end())
        Fail("unknown key \"" + key + '"');
    }
  }
  bool Has(const char* key) const { return value_.contains(key); }

  Item At(const char* key) const {
    if (!Has(key)) Fail(std::string("key \"") + key + "\" is missing");
    return {value_.at(key), where_ + ", \"" + key + '"'};
  }
  std::vector<Item> Elements() const {
    if (!value_.is_array()) Fail("must be a list in brackets");
    std::vector<Item> items;
    for (std::size_t i = 0; i < value_.size(); ++i)
      items.emplace_back(value_[i], where_ + " entry " + std::to_string(i + 1));
    return items;
  }
  std::vector<std::pair<std::string, Item>> Members() const {
    if (!value_.is_object()) Fail("must be an object in braces");
    std::vector<std::pair<std::string, Item>> members;
    for (const auto& [key, value] : value_.items())
      members.emplace_back(key, Item(value, where_ + ", \"" + key + '"'));
    return members;
  }

  std::string Text() const {
    if (!value_.is_string() || value_.get_ref<const std::string&>().empty())
      Fail("must be a text that is not empty");
    return value_.get<std::string>();
  }
  bool Flag() const {
    if (!value_.is_boolean()) Fail("must be true or false");
    return value_.get<bool>();
  }
  double Number(double lowest, double highest) const {
    if (!value_.is_number()) Fail("must be a number");
    const double number = value_.get<double>();
    if (!(number >= lowest && number <= highest))
      Fail(value_.dump() + " is out of range, " + Json(lowest).dump() + " to " +
           Json(highest).dump());
    return number;
  }
  std::uint32_t Whole(double lowest, double highest) const {
    if (!value_.is_number_integer()) Fail("must be a whole number");
    return static_cast<std::uint32_t>(Number(lowest, highest));
  }
  std::uint32_t Standard() const {
    const std::string name = Text();
    const auto standard = FindVideoStandard(name);
    if (!standard) Fail('"' + name + "\" is not a video standard");
    return *standard;
  }

 private:
  const Json& value_;
  std::string where_;
};

// The JSON reader keeps the last of two equal keys without a word. A channel that is listed twice
// is a mistake that its author wants to hear of.
class RepeatedKeys {
 public:
  bool operator()(int, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) open_.emplace_back();
    if (event == Json::parse_event_t::object_end) open_.pop_back();
    if (event == Json::parse_event_t::key && !open_.back().insert(parsed.get<std::string>()).second)
      throw std::runtime_error("key " + parsed.dump() + " stands twice in one object");
    return true;
  }

 private:
  std::vector<std::set<std::string>> open_;
};

Json ParseJson(std::string_view text, const std::string& file) {
  try {
    RepeatedKeys check;
    return Json::parse(text, [&check](int depth, Json::parse_event_t event, Json& parsed) {
      return check(depth, event, parsed);
    });
  } catch (const std::exception& error) {
    throw std::runtime_error(file + ": " + error.what());
  }
}

std::string TextOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error(file.string() + ": cannot be read");
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> IdsIn(const fs::path& folder) {
  std::vector<std::string> ids;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".json") ids.push_back(entry.path().stem().string());
  }
  if (error) throw std::runtime_error(folder.string() + ": " + error.message());
  std::sort(ids.begin(), ids.end());
  return ids;
}

// "no raster "x"; there are: a, b, c"
[[noreturn]] void FailUnknown(const char* kind, std::string_view id, const fs::path& folder) {
  std::string message =
      folder.string() + ": no " + kind + " \"" + std::string(id) + "\"; there are:";
  const char* separator = " ";
  for (const std::string& known : IdsIn(folder)) {
    message += separator + known;
    separator = ", ";
  }
  throw std::runtime_error(message);
}

// Ids are plain file names: anything that looks like a path is none, and to the system a name ends
// at its first zero.
bool IsId(std::string_view text) {
  constexpr std::string_view kSeparators("/\\\0", 3);
  return !text.empty() && text.find_first_of(kSeparators) == std::string_view::npos &&
         text.front() != '.';
}

// Whether there is such a file. One that cannot be looked for, because of a name too long, is none.
bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

void AddBand(const Item& band, std::vector<RasterChannel>& channels) {
  band.AllowKeys({"band", "prefix", "numbers", "first_khz", "step_khz"});
  band.At("band").Text();
  const std::string prefix = band.Has("prefix") ? band.At("prefix").Text() : "";
  const Item numbersItem = band.At("numbers");
  const std::vector<Item> numbers = numbersItem.Elements();
  if (numbers.size() != 2) numbersItem.Fail("must be the first and the last channel number");
  const std::uint32_t first = numbers[0].Whole(0, kHighestChannelNumber);
  const std::uint32_t last = numbers[1].Whole(first, kHighestChannelNumber);
  const std::uint32_t step = band.At("step_khz").Whole(1'000, 20'000);
  std::uint32_t kHz = band.At("first_khz").Whole(kLowestTvKHz, kHighestTvKHz);
  for (std::uint32_t number = first; number <= last; ++number, kHz += step) {
    if (kHz > kHighestTvKHz)
      band.Fail("channel " + prefix + std::to_string(number) + " lies at " + std::to_string(kHz) +
                " kHz, above " + Json(kHighestTvKHz).dump());
    channels.push_back({prefix + std::to_string(number), kHz});
  }
}

// Ascending order, and no two channels that could be taken for one another.
void Arrange(const Item& file, std::vector<RasterChannel>& channels) {
  if (channels.empty()) file.Fail("has no channels");
  std::sort(channels.begin(), channels.end(), [](const RasterChannel& a, const RasterChannel& b) {
    return a.pictureKHz < b.pictureKHz;
  });
  std::set<std::string> names;
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (i > 0 && channels[i].pictureKHz == channels[i - 1].pictureKHz)
      file.Fail("channels \"" + channels[i - 1].name + "\" and \"" + channels[i].name +
                "\" stand on one carrier");
    std::string name = channels[i].name;
    std::transform(name.begin(), name.end(), name.begin(), host::FoldCase<char>);
    if (!names.insert(std::move(name)).second)
      file.Fail("channel \"" + channels[i].name + "\" stands twice");
  }
}

TvCarrier ReadTvCarrier(const Item& item, const Raster& raster) {
  item.AllowKeys({"channel", "station", "level_dbuv", "offset_khz", "standard"});
  const std::string name = item.At("channel").Text();
  const RasterChannel* channel = raster.Find(name);
  if (!channel) item.Fail("raster " + raster.id + " has no channel \"" + name + '"');
  TvCarrier carrier;
  carrier.channel = channel->name;
  carrier.station = item.At("station").Text();
  carrier.pictureKHz = channel->pictureKHz;
  if (item.Has("offset_khz"))
    carrier.pictureKHz += item.At("offset_khz").Number(-kWidestTvOffsetKHz, kWidestTvOffsetKHz);
  carrier.levelDbuV = item.At("level_dbuv").Number(kLowestLevelDbuV, kHighestLevelDbuV);
  carrier.standard = item.Has("standard") ? item.At("standard").Standard() : raster.standard;
  return carrier;
}

FmStation ReadFmStation(const Item& item) {
  item.AllowKeys({"frequency_khz", "offset_khz", "station", "level_dbuv", "stereo"});
  FmStation station;
  station.carrierKHz = item.At("frequency_khz").Whole(kLowestFmKHz, kHighestFmKHz);
  if (item.Has("offset_khz"))
    station.carrierKHz += item.At("offset_khz").Number(-kWidestFmOffsetKHz, kWidestFmOffsetKHz);
  station.station = item.At("station").Text();
  station.levelDbuV = item.At("level_dbuv").Number(kLowestLevelDbuV, kHighestLevelDbuV);
  station.stereo = item.At("stereo").Flag();
  return station;
}

// The element of an ascending list that lies nearest to `kHz`, null when it is further off than
// `window`.
template <class Element, class Frequency>
const Element* NearestIn(const std::vector<Element>& elements, Frequency Element::*frequency,
                         double kHz, double window) {
  const Element* nearest = nullptr;
  for (const Element& element : elements) {
    const double distance = std::abs(static_cast<double>(element.*frequency) - kHz);
    if (distance > window) continue;
    nearest = &element;
    window = distance;
  }
  return nearest;
}

// From the folder of an installed program or library.
constexpr const char* kInstalled = "../share/zelkapi";

fs::path ProgramFolder() {
  char name[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameA(nullptr, name, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return {};
  return fs::path(name).parent_path();
}

}  // namespace

const RasterChannel* Raster::Find(std::string_view name) const {
  for (const RasterChannel& channel : channels) {
    if (SameIgnoringCase(channel.name, name)) return &channel;
  }
  return nullptr;
}

const RasterChannel* Raster::Nearest(std::uint32_t kHz, std::uint32_t toleranceKHz) const {
  return NearestIn(channels, &RasterChannel::pictureKHz, kHz, toleranceKHz);
}

const TvCarrier* Air::NearestTv(double kHz, double windowKHz) const {
  return NearestIn(tv, &TvCarrier::pictureKHz, kHz, windowKHz);
}

const FmStation* Air::NearestFm(double kHz, double windowKHz) const {
  return NearestIn(fm, &FmStation::carrierKHz, kHz, windowKHz);
}

std::filesystem::path DataFolder() {
  char chosen[MAX_PATH] = {};
  const DWORD length = GetEnvironmentVariableA("ZELKAPI_DATA", chosen, MAX_PATH);
  if (length > 0 && length < MAX_PATH) return chosen;
  // The virtual cards may be part of a library that an interpreter has loaded from anywhere. Debian
  // keeps libraries one folder deeper than programs.
  static const char kHere = 0;
  const fs::path program = ProgramFolder();
  std::vector<fs::path> folders = {program / "data", program / kInstalled};
  if (const fs::path module = ModulePathOf(&kHere).parent_path(); !module.empty())
    folders.insert(folders.end(),
                   {module / "data", module / kInstalled, module / ".." / kInstalled});
  for (const fs::path& folder : folders) {
    if (fs::is_directory(folder)) return folder.lexically_normal();
  }
  return (program / kInstalled).lexically_normal();
}

std::vector<std::string> RasterIds() { return IdsIn(DataFolder() / "rasters"); }

Raster LoadRaster(std::string_view id) {
  const fs::path folder = DataFolder() / "rasters";
  const fs::path file = folder / (std::string(id) + ".json");
  if (!IsId(id) || !IsFile(file)) FailUnknown("raster", id, folder);
  return ReadRaster(TextOf(file), id, file.string());
}

Raster ReadRaster(std::string_view text, std::string_view id, const std::string& file) {
  const Json json = ParseJson(text, file);
  const Item root(json, file);
  root.AllowKeys({"source", "title", "standard", "country", "bands", "channels"});
  root.At("source").Text();
  Raster raster;
  raster.id = id;
  raster.title = root.At("title").Text();
  raster.standard = root.At("standard").Standard();
  raster.countryCode = static_cast<std::int32_t>(root.At("country").Whole(1, kHighestCountryCode));
  for (const Item& band : root.At("bands").Elements()) AddBand(band, raster.channels);
  if (root.Has("channels")) {
    for (const auto& [name, carrier] : root.At("channels").Members())
      raster.channels.push_back({name, carrier.Whole(kLowestTvKHz, kHighestTvKHz)});
  }
  Arrange(root, raster.channels);
  return raster;
}

Air LoadAir(std::string_view idOrFile) {
  const fs::path folder = DataFolder() / "places";
  fs::path file = folder / (std::string(idOrFile) + ".json");
  if (!IsId(idOrFile) || !IsFile(file)) file = fs::path(idOrFile);
  if (!IsFile(file)) FailUnknown("place or file", idOrFile, folder);
  return ReadAir(TextOf(file), file.string());
}

Air ReadAir(std::string_view text, const std::string& file) {
  const Json json = ParseJson(text, file);
  const Item root(json, file);
  root.AllowKeys({"note", "place", "raster", "tv", "fm"});
  if (root.Has("note")) root.At("note").Text();
  Air air;
  air.place = root.At("place").Text();
  air.raster = root.At("raster").Text();
  const Raster raster = LoadRaster(air.raster);

  for (const Item& item : root.At("tv").Elements()) {
    TvCarrier carrier = ReadTvCarrier(item, raster);
    for (const TvCarrier& other : air.tv) {
      if (other.channel == carrier.channel)
        item.Fail("channel \"" + carrier.channel + "\" stands twice");
    }
    air.tv.push_back(std::move(carrier));
  }
  for (const Item& item : root.At("fm").Elements()) {
    FmStation station = ReadFmStation(item);
    for (const FmStation& other : air.fm) {
      if (other.carrierKHz == station.carrierKHz)
        item.Fail("two stations stand on one carrier, \"" + other.station + "\" and \"" +
                  station.station + '"');
    }
    air.fm.push_back(std::move(station));
  }
  std::sort(air.tv.begin(), air.tv.end(),
            [](const TvCarrier& a, const TvCarrier& b) { return a.pictureKHz < b.pictureKHz; });
  std::sort(air.fm.begin(), air.fm.end(),
            [](const FmStation& a, const FmStation& b) { return a.carrierKHz < b.carrierKHz; });
  return air;
}

}  // namespace zelk::virtual_cards
