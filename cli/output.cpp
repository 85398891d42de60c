#include "cli/output.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace zelk::cli {
namespace {

template <class... Arguments>
std::string Formatted(const char* format, Arguments... arguments) {
  char text[64];
  std::snprintf(text, sizeof text, format, arguments...);
  return text;
}

void PrintRow(std::ostream& out, const std::vector<Table::Column>& columns,
              const std::vector<std::size_t>& widths, const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string blanks(widths[i] - cells[i].size(), ' ');
    if (i > 0) line += "  ";
    line += columns[i].numeric ? blanks + cells[i] : cells[i] + blanks;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  out << line << '\n';
}

}  // namespace

void PrintJson(const Json& object) {
  // File names need not be UTF-8; what is not becomes the replacement character.
  std::cout << object.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

std::string MegahertzText(std::uint32_t kHz) { return Formatted("%.3f", kHz / 1000.0); }

std::string OffsetText(const std::optional<double>& kHz) {
  if (!kHz) return "-";
  return *kHz == 0 ? "0.0" : Formatted("%+.1f", *kHz);
}

std::string YesNoText(const std::optional<bool>& value) {
  if (!value) return "-";
  return *value ? "yes" : "no";
}

std::string HexText(std::uint32_t value) { return Formatted("0x%02X", value); }

std::string DurationText(std::uint64_t milliseconds) {
  if (milliseconds < 1000) return std::to_string(milliseconds) + " ms";
  const std::uint64_t minutes = milliseconds / 60'000;
  const double seconds = static_cast<double>(milliseconds % 60'000) / 1000;
  if (minutes == 0) return Formatted("%.1f s", seconds);
  return Formatted("%llu min %.1f s", static_cast<unsigned long long>(minutes), seconds);
}

void Table::Print(std::ostream& out) const {
  std::vector<std::string> titles;
  std::vector<std::size_t> widths;
  for (const Column& column : columns_) {
    titles.push_back(column.title);
    widths.push_back(column.title.size());
  }
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  PrintRow(out, columns_, widths, titles);
  for (const auto& row : rows_) PrintRow(out, columns_, widths, row);
}

void PrintHexDump(std::ostream& out, std::uint32_t firstOffset,
                  const std::vector<std::optional<std::uint8_t>>& bytes) {
  constexpr std::size_t kPerLine = 16;
  for (std::size_t start = 0; start < bytes.size(); start += kPerLine) {
    std::string line = Formatted("%02x ", static_cast<unsigned>(firstOffset + start));
    std::string text;
    for (std::size_t i = start; i < start + kPerLine; ++i) {
      if (i >= bytes.size()) {
        line += "   ";
        continue;
      }
      const std::uint8_t byte = bytes[i].value_or(0);
      line += bytes[i] ? Formatted(" %02x", static_cast<unsigned>(byte)) : " --";
      text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    out << line << "  |" << text << "|\n";
  }
}

}  // namespace zelk::cli
