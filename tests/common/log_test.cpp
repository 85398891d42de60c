// The log writer's file: its bytes, its bound, and its silence when it cannot write.
#include "common/log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "common/wait.h"
#include "platform/control.h"
#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

std::string Content(const char* name) {
  std::ifstream file(name, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(Log, RecordIsALineBreakAndTheText) {
  const WorkingFolder folder;
  AppendLogMessage("first", "test.log");
  EXPECT_EQ(Content("test.log"), "\r\nfirst");
  AppendLogMessage("", "test.log");
  AppendLogMessage("third", "test.log");
  EXPECT_EQ(Content("test.log"), "\r\nfirst\r\n\r\nthird");
}

TEST(Log, FileAboveOneMebibyteIsStartedAnew) {
  const WorkingFolder folder;
  std::ofstream("kept.log", std::ios::binary) << std::string(1048576, 'x');
  AppendLogMessage("more", "kept.log");
  EXPECT_EQ(std::filesystem::file_size("kept.log"), 1048576u + 6);
  // One record past the bound, the next one starts anew.
  AppendLogMessage("fresh", "kept.log");
  EXPECT_EQ(Content("kept.log"), "\r\nfresh");
}

TEST(Log, UnwritableTargetIsSilent) {
  const WorkingFolder folder;
  std::filesystem::create_directory("folder.log");
  AppendLogMessage("nobody reads this", "folder.log");
  AppendLogMessage("nor this", "missing/test.log");
  EXPECT_FALSE(std::filesystem::exists("missing"));
}

TEST(WaitMs, SleepsInSlicesUntilTheTimeHasPassed) {
  for (const auto& [wait, slept] :
       {std::pair<std::uint32_t, std::uint64_t>{80, 80}, {16, 20}, {1, 5}, {0, 5}}) {
    host::UseVirtualClock();
    WaitMs(wait);
    EXPECT_EQ(host::SleptMilliseconds(), slept) << wait;
  }
}

}  // namespace
}  // namespace zelk::test
