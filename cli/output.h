// How results look: numbers as people of the field write them, plain tables, JSON.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace zelk::cli {

// Keys stay in the order in which they are written.
using Json = nlohmann::ordered_json;

// One object, indented, on standard output.
void PrintJson(const Json& object);

template <class Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

std::string MegahertzText(std::uint32_t kHz);              // "175.250"
std::string OffsetText(const std::optional<double>& kHz);  // "+62.5", "-" for unknown
std::string YesNoText(const std::optional<bool>& value);   // "yes", "no", "-" for unknown
std::string HexText(std::uint32_t value);                  // "0xC2"
std::string DurationText(std::uint64_t milliseconds);      // "850 ms", "4 min 12.3 s"

// Columns as wide as their widest cell, two blanks between them.
class Table {
 public:
  struct Column {
    std::string title;
    bool numeric = false;  // stands at the right edge
  };
  explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}
  void AddRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  void Print(std::ostream& out) const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

// Sixteen bytes a line with their offset and what they spell in ASCII; "--" for a byte that is not
// known.
void PrintHexDump(std::ostream& out, std::uint32_t firstOffset,
                  const std::vector<std::optional<std::uint8_t>>& bytes);

}  // namespace zelk::cli
