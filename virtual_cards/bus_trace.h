// A listener on a virtual card's wires. It hears one readable line for each property request, I2C
// transfer and GPIO change, in the order in which they reach the card.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace zelk::virtual_cards {

class BusTrace {
 public:
  virtual ~BusTrace() = default;
  virtual void Line(std::string_view line) = 0;
};

// Keeps the lines, for tests.
class RecordedTrace final : public BusTrace {
 public:
  void Line(std::string_view line) override { lines_.emplace_back(line); }
  const std::vector<std::string>& Lines() const { return lines_; }
  std::vector<std::string> Take() { return std::move(lines_); }

 private:
  std::vector<std::string> lines_;
};

// Writes the lines to a stream, for people.
class StreamTrace final : public BusTrace {
 public:
  explicit StreamTrace(std::ostream& out) : out_(out) {}
  void Line(std::string_view line) override { out_ << line << '\n'; }

 private:
  std::ostream& out_;
};

}  // namespace zelk::virtual_cards
