#include "cli/parse.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "cli/errors.h"

namespace zelk::cli {
namespace {

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

// A number that takes up the whole text.
template <class Number, class... Format>
std::optional<Number> WholeText(std::string_view text, Format... format) {
  Number number{};
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), number, format...);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// Takes `unit` off the end of the text if it stands there.
bool TakeUnit(std::string_view& text, std::string_view unit) {
  if (text.size() < unit.size()) return false;
  const std::string_view end = text.substr(text.size() - unit.size());
  for (std::size_t i = 0; i < unit.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(end[i])) != unit[i]) return false;
  }
  text.remove_suffix(unit.size());
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return true;
}

std::optional<std::uint32_t> FrequencyKHz(std::string_view text) {
  // 4 GHz is where 32 bits of hertz, which drivers count in, end.
  constexpr std::uint32_t kHighestKHz = 4'000'000;
  if (TakeUnit(text, "mhz")) {
    const auto megahertz = WholeText<double>(text, std::chars_format::fixed);
    // "nan" is a number to the reader, and is neither below nor above another.
    if (!megahertz || text.starts_with('-') || !(*megahertz * 1000 <= kHighestKHz))
      return std::nullopt;
    return static_cast<std::uint32_t>(std::lround(*megahertz * 1000));
  }
  TakeUnit(text, "khz");
  const auto kHz = WholeText<std::uint32_t>(text);
  return kHz && *kHz <= kHighestKHz ? kHz : std::nullopt;
}

constexpr const char* kFrequencyForms = "write 175250, 175250kHz or 175.25MHz";

}  // namespace

std::uint32_t ParseNumber(std::string_view text, std::uint32_t highest, std::string_view what) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  const auto number =
      hexadecimal ? WholeText<std::uint64_t>(text.substr(2), 16) : WholeText<std::uint64_t>(text);
  if (!number)
    throw UsageError(std::string(what) + ' ' + Quoted(text) +
                     " is not a number; write 194 or 0xC2");
  if (*number > highest)
    throw UsageError(std::string(what) + ' ' + Quoted(text) + " is above " +
                     std::to_string(highest));
  return static_cast<std::uint32_t>(*number);
}

std::uint32_t ParseFrequencyKHz(std::string_view text) {
  const auto frequency = FrequencyKHz(text);
  if (!frequency) throw UsageError(Quoted(text) + " is not a frequency; " + kFrequencyForms);
  return *frequency;
}

std::uint32_t ParseChannelOrFrequencyKHz(std::string_view text,
                                         const virtual_cards::Raster& raster) {
  if (const virtual_cards::RasterChannel* channel = raster.Find(text)) return channel->pictureKHz;
  const auto frequency = FrequencyKHz(text);
  if (!frequency)
    throw UsageError(Quoted(text) + " is neither a channel of raster " + raster.id + " (" +
                     raster.channels.front().name + " to " + raster.channels.back().name +
                     ") nor a frequency; " + kFrequencyForms);
  return *frequency;
}

}  // namespace zelk::cli
