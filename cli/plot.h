// A band as a picture: signal strength against frequency, the channels that were found marked and
// named. SVG, black on white, for the width of a phone as well as for a sheet of paper.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelk::cli {

// What the card said at one frequency.
struct PlotReading {
  std::uint32_t kHz = 0;
  bool present = false;
  std::optional<std::uint32_t> strength;  // empty: the curve has a gap here
};

struct PlotMark {
  std::uint32_t kHz = 0;
  std::string name;
  bool stereo = false;
};

struct BandPlot {
  std::string title;
  std::vector<std::string> notes;  // below the title, a line each
  std::uint32_t lowKHz = 0;
  std::uint32_t highKHz = 0;
  // The band is wrapped into rows of about this width, of less when the names need the room.
  std::uint32_t rowKHz = 0;
  std::uint32_t stepKHz = 0;          // between readings
  bool tellsStereo = false;           // marks carry the stereo sign, and the legend explains it
  std::vector<PlotReading> readings;  // ascending
  std::vector<PlotMark> marks;        // ascending
};

// The whole SVG document. Texts may hold anything; what XML cannot carry is replaced by '?'.
std::string PlotSvg(const BandPlot& plot);

}  // namespace zelk::cli
