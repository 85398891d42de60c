// What is being broadcast: channel rasters, and the TV carriers and FM stations of a place, as
// data.
//
// A raster is a national channel plan (names and picture carriers). A place names its raster and
// lists what is on the air there. Both are JSON files in the data folder, so that a user can
// replace them: data/rasters/<id>.json and data/places/<id>.json.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelk::virtual_cards {

struct RasterChannel {
  std::string name;          // as printed in the national plan: "E5", "K21", "S01"
  std::uint32_t pictureKHz;  // nominal picture carrier
};

struct Raster {
  std::string id;                       // file name without ending
  std::string title;                    // for people
  std::uint32_t standard = 0;           // AnalogVideoStandard bit that applications set for it
  std::int32_t countryCode = 0;         // dialling code of a country that uses it
  std::vector<RasterChannel> channels;  // ascending picture carrier

  // Exact name, letter case ignored; null when the plan has no such channel.
  const RasterChannel* Find(std::string_view name) const;
  // The channel whose picture carrier lies closest to `kHz`, null when it is further off than
  // `toleranceKHz`.
  const RasterChannel* Nearest(std::uint32_t kHz, std::uint32_t toleranceKHz) const;
};

struct TvCarrier {
  std::string channel;         // name in the raster
  std::string station;         // for people
  double pictureKHz = 0;       // true picture carrier: nominal plus offset
  double levelDbuV = 0;        // level at the antenna socket, dB above 1 microvolt
  std::uint32_t standard = 0;  // AnalogVideoStandard bit that is transmitted
};

struct FmStation {
  std::string station;
  double carrierKHz = 0;
  double levelDbuV = 0;
  bool stereo = false;
};

struct Air {
  std::string place;          // for people
  std::string raster;         // id of the raster its TV channels stand on
  std::vector<TvCarrier> tv;  // ascending picture carrier
  std::vector<FmStation> fm;  // ascending carrier

  // The carrier nearest to `kHz` that lies within `windowKHz` of it, null for none.
  const TvCarrier* NearestTv(double kHz, double windowKHz) const;
  const FmStation* NearestFm(double kHz, double windowKHz) const;
};

inline constexpr std::string_view kDefaultPlace = "western-europe-city";

// The folder with rasters/ and places/: the environment variable ZELKAPI_DATA, else "data" beside
// the running program, else "../share/zelkapi" from it, else the same as seen from the shared
// library that this code is part of.
std::filesystem::path DataFolder();

// All of these throw std::runtime_error with a message that names the file and what is wrong with
// it.
std::vector<std::string> RasterIds();
Raster LoadRaster(std::string_view id);
// `idOrFile` is the name of a place in the data folder or the path of a place file.
Air LoadAir(std::string_view idOrFile);
// The same from the text of such a file; `file` names it in messages.
Raster ReadRaster(std::string_view text, std::string_view id, const std::string& file);
Air ReadAir(std::string_view text, const std::string& file);

}  // namespace zelk::virtual_cards
