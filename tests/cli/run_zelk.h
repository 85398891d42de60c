// Runs the built program the way a user does, in a folder of its own.
#pragma once

#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/temp_folder.h"

namespace zelk::test {

struct ZelkRun {
  int exitCode = -1;  // negative: the number of the signal that killed it
  std::string out;
  std::string err;

  // Standard output as JSON. Anything else fails the test with a parse error.
  nlohmann::json Json() const { return nlohmann::json::parse(out); }
};

class Zelk {
 public:
  // Gives standard error a terminal instead of a pipe.
  bool terminal = false;
  // Sends the signal as soon as standard error contains this text: Ctrl-C once, others again and
  // again.
  std::string interruptAt;
  int signalNumber = SIGINT;
  bool ignoresSignal = false;  // from the start, as under nohup

  // A line as one would type it, words separated by blanks or in double quotes.
  ZelkRun Run(std::string_view line) const;
  const zelk::testing::TempFolder& Folder() const { return folder_; }
  // What stands in a file of that folder.
  std::string Content(std::string_view name) const {
    std::ifstream in(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  zelk::testing::TempFolder folder_;
};

}  // namespace zelk::test
