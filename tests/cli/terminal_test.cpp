// What needs a terminal, a signal or a full disk.
#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(Terminal, ShowsAScansProgressAndWhatItHasWhenASignalComes) {
  struct Row {
    int signalNumber;
    bool ignored;
    int exitCode;
  };
  for (const Row& row : {Row{SIGINT, false, 130}, Row{SIGTERM, false, 143}, Row{SIGHUP, false, 129},
                         Row{SIGINT, true, 0}, Row{SIGHUP, true, 0}}) {
    SCOPED_TRACE(std::to_string(row.signalNumber) + (row.ignored ? " ignored" : ""));
    Zelk zelk;
    zelk.terminal = true;
    zelk.interruptAt = " 1 found";
    zelk.signalNumber = row.signalNumber;
    zelk.ignoresSignal = row.ignored;
    zelk.Folder().Write("hill.json", R"({"place": "Hill", "raster": "pal-bg", "fm": [],
      "tv": [{"channel": "E2", "station": "Relay", "level_dbuv": 60},
             {"channel": "K65", "station": "Relay", "level_dbuv": 60}]})");
    const ZelkRun run = zelk.Run("scan tv --air hill.json");
    EXPECT_EQ(run.exitCode, row.exitCode);
    EXPECT_THAT(run.out, HasSubstr(" E2 "));
    EXPECT_EQ(run.out.find("K65") == std::string::npos, !row.ignored);
    EXPECT_EQ(run.out.find("\nInterrupted at ") == std::string::npos, row.ignored);
    EXPECT_THAT(run.err, HasSubstr("MHz  1 found"));
    EXPECT_TRUE(run.err.ends_with("\r\x1b[K")) << "the bar stays behind: " << run.err;
  }
}

TEST(Terminal, CtrlCLeavesAnEarlierPictureAlone) {
  Zelk zelk;
  zelk.Folder().Write("old.svg", "old picture");
  zelk.terminal = true;
  zelk.interruptAt = "measuring";
  const ZelkRun run = zelk.Run("scan tv --plot old.svg");
  EXPECT_EQ(run.exitCode, 130);
  EXPECT_THAT(run.out, HasSubstr("20 channels"));
  EXPECT_THAT(run.out, HasSubstr("Interrupted: no picture\n"));
  EXPECT_EQ(zelk.Content("old.svg"), "old picture");
}

TEST(FullDisk, IsAFailureOfWhatIsPrintedAndOfAPicture) {
  const Zelk zelk;
  EXPECT_EQ(zelk.Run("scan fm --plot /dev/full").exitCode, 1);
  std::filesystem::create_symlink("/dev/full", zelk.Folder() / "full");
  for (const std::string line : {"cards", "--help", "scan tv --help", "--version"}) {
    EXPECT_EQ(zelk.Run(line).exitCode, 0) << line;
    const std::string command = std::string("cd ") + zelk.Folder().Path() + " && " + ZELK_PROGRAM +
                                ' ' + line + " > full 2> complaint";
    const int status = std::system(command.c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1) << line;
    EXPECT_EQ(zelk.Content("complaint"), "zelk: cannot write to standard output\n") << line;
  }
}

}  // namespace
}  // namespace zelk::test
