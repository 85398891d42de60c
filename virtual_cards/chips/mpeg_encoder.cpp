#include "virtual_cards/chips/mpeg_encoder.h"

#include <algorithm>
#include <optional>

namespace zelk::virtual_cards {

namespace {

struct ParameterRow {
  std::uint32_t number;
  std::uint32_t words;
  std::array<std::uint32_t, 3> atPowerOn;
  std::uint32_t lowest, highest;  // of the first word
};
constexpr ParameterRow kRows[] = {
    {MpegEncoder::kRate, 3, {1, 6000000, 6000000}, 0, 1},
    {MpegEncoder::kGroupFlag, 1, {0}, 0, 1},
    {MpegEncoder::kGroupLength, 1, {15}, 1, 255},
    {MpegEncoder::kAudioBitRate, 1, {11}, 1, 14},
    {MpegEncoder::kAudioMode, 1, {0}, 0, 3},
    {MpegEncoder::kAudioSampleRate, 1, {1}, 0, 2},
    {MpegEncoder::kStreamType, 1, {14}, 0, 15},
};

std::optional<std::size_t> RowOf(std::uint32_t number) {
  for (std::size_t row = 0; row < std::size(kRows); ++row) {
    if (kRows[row].number == number) return row;
  }
  return std::nullopt;
}

}  // namespace

MpegEncoder::MpegEncoder() {
  static_assert(std::size(kRows) == kParameters);
  for (std::size_t row = 0; row < kParameters; ++row) values_[row] = kRows[row].atPowerOn;
}

std::span<const std::uint32_t> MpegEncoder::Words(std::uint32_t parameter) const {
  const auto row = RowOf(parameter);
  if (!row) return {};
  return {values_[*row].data(), kRows[*row].words};
}

bool MpegEncoder::Write(std::uint32_t parameter, std::span<const std::uint32_t> words) {
  const auto row = RowOf(parameter);
  if (!row || words.size() != kRows[*row].words) return false;
  if (words[0] < kRows[*row].lowest || words[0] > kRows[*row].highest) return false;
  if (parameter == kRate && words[1] > words[2]) return false;
  std::copy(words.begin(), words.end(), values_[*row].begin());
  return true;
}

void MpegEncoder::Poke(std::uint32_t parameter, std::uint32_t value, unsigned index) {
  const auto row = RowOf(parameter);
  if (row && index < kRows[*row].words) values_[*row][index] = value;
}

}  // namespace zelk::virtual_cards
