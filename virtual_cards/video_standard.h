// Names of the analogue video standards, as data files and people write them.
#pragma once

#include <array>
#include <cctype>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/dshow.h"

namespace zelk::virtual_cards {

struct VideoStandardName {
  std::string_view name;
  std::uint32_t standard;  // one bit of AnalogVideoStandard
};

inline constexpr std::array<VideoStandardName, 19> kVideoStandardNames{{
    {"NTSC_M", AnalogVideo_NTSC_M},     {"NTSC_M_J", AnalogVideo_NTSC_M_J},
    {"NTSC_433", AnalogVideo_NTSC_433}, {"PAL_B", AnalogVideo_PAL_B},
    {"PAL_D", AnalogVideo_PAL_D},       {"PAL_G", AnalogVideo_PAL_G},
    {"PAL_H", AnalogVideo_PAL_H},       {"PAL_I", AnalogVideo_PAL_I},
    {"PAL_M", AnalogVideo_PAL_M},       {"PAL_N", AnalogVideo_PAL_N},
    {"PAL_60", AnalogVideo_PAL_60},     {"SECAM_B", AnalogVideo_SECAM_B},
    {"SECAM_D", AnalogVideo_SECAM_D},   {"SECAM_G", AnalogVideo_SECAM_G},
    {"SECAM_H", AnalogVideo_SECAM_H},   {"SECAM_K", AnalogVideo_SECAM_K},
    {"SECAM_K1", AnalogVideo_SECAM_K1}, {"SECAM_L", AnalogVideo_SECAM_L},
    {"SECAM_L1", AnalogVideo_SECAM_L1},
}};

// Letter case does not matter in what people type.
inline bool SameIgnoringCase(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(left[i])) !=
        std::tolower(static_cast<unsigned char>(right[i])))
      return false;
  }
  return true;
}

inline std::optional<std::uint32_t> FindVideoStandard(std::string_view name) {
  for (const VideoStandardName& row : kVideoStandardNames) {
    if (SameIgnoringCase(row.name, name)) return row.standard;
  }
  return std::nullopt;
}

// Empty for a value that is not exactly one known standard.
inline std::string_view NameOfVideoStandard(std::uint32_t standard) {
  for (const VideoStandardName& row : kVideoStandardNames) {
    if (row.standard == standard) return row.name;
  }
  return {};
}

}  // namespace zelk::virtual_cards
