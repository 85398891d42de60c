// What needs a terminal, a signal, a full disk or the pages of the documentation.
#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <regex>

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
             {"channel": "K68", "station": "Relay", "level_dbuv": 60}]})");
    const ZelkRun run = zelk.Run("scan tv --air hill.json");
    EXPECT_EQ(run.exitCode, row.exitCode);
    EXPECT_THAT(run.out, HasSubstr(" E2 "));
    EXPECT_EQ(run.out.find("K68") == std::string::npos, !row.ignored);
    EXPECT_EQ(run.out.find("\nInterrupted at ") == std::string::npos, row.ignored);
    EXPECT_THAT(run.err, HasSubstr("[..............................] 0%  53.500 MHz  1 found"));
    EXPECT_EQ(run.err.find("[##############################] 100%  ") == std::string::npos,
              !row.ignored);
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

TEST(Terminal, SignalsEndWhatRunsOnTheRealClock) {
  for (const auto& [line, signalNumber, text] :
       {std::tuple("seek down 108MHz", SIGINT, "Interrupted at "),
        {"scan fm", SIGTERM, "Interrupted at "},
        {"signal 175.25MHz --count 1000", SIGINT, "175.250 MHz"}}) {
    SCOPED_TRACE(line);
    Zelk zelk;
    zelk.terminal = true;
    zelk.interruptAt = "i2c write";
    zelk.signalNumber = signalNumber;
    const ZelkRun run = zelk.Run(std::string(line) + " --air us-cable --realtime --trace");
    EXPECT_EQ(run.exitCode, 128 + signalNumber);
    EXPECT_THAT(run.out, HasSubstr(text));
    EXPECT_THAT(run.out, Not(HasSubstr("virtual clock")));
    EXPECT_THAT(run.err, Not(HasSubstr("\x1b[K"))) << "a bar in the trace";
  }
}

TEST(Trial, LeavesNothingBehind) {
  const Zelk zelk;
  setenv("TMPDIR", zelk.Folder().Path().c_str(), 1);
  EXPECT_EQ(zelk.Run("cards --plug saa7134").exitCode, 0);
  EXPECT_TRUE(std::filesystem::is_empty(zelk.Folder().Path()));
  setenv("TMPDIR", "/nowhere", 1);
  EXPECT_EQ(zelk.Run("cards --plug saa7134").err,
            "zelk: no folder for the logs of a trial: No such file or directory; with --names no "
            "card is tried\n");
  unsetenv("TMPDIR");
}

TEST(FileName, NeedNotBeUtf8) {
  const Zelk zelk;
  zelk.Folder().Write("\xE9", std::string(256, '\xFF'));
  EXPECT_TRUE(zelk.Run("eeprom --json --card virtual:saa7134,eeprom=\xE9").Json().is_object());
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

// What differs from run to run.
std::string WithoutElapsedTime(const std::string& text) {
  return std::regex_replace(text, std::regex(", [^,\n]* elapsed|(elapsed_ms\": )\\d+"), "$1");
}

// A line of the page that is only "…" stands for any lines.
bool Shows(const std::string& page, const std::string& printed) {
  const std::string gap = "\u2026\n";
  std::size_t at = 0;
  for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + gap.size()) {
    end = page.find(gap, begin);
    const std::string part = page.substr(begin, end - begin);
    const std::size_t found = printed.find(part, at);
    if (found == std::string::npos || (begin == 0 && found != 0)) return false;
    at = found + part.size();
  }
  return printed.substr(at).empty() || page.ends_with(gap);
}

TEST(Documentation, ShowsWhatTheProgramPrints) {
  std::ifstream in(ZELK_PAGE);
  const std::string page{std::istreambuf_iterator<char>(in), {}};
  const std::regex block("```console\n\\$ zelk ([^\n]*)\n([^`]*)```");
  std::size_t blocks = 0;
  for (std::sregex_iterator it(page.begin(), page.end(), block), end; it != end; ++it, ++blocks) {
    const Zelk zelk;
    const ZelkRun run = zelk.Run((*it)[1].str());
    const std::string shown = WithoutElapsedTime((*it)[2]);
    EXPECT_TRUE(Shows(shown, WithoutElapsedTime(run.err + run.out)) ||
                Shows(shown, WithoutElapsedTime(run.out + run.err)))
        << "zelk " << (*it)[1] << '\n'
        << run.out << run.err;
  }
  EXPECT_GT(blocks, 30u);
}

}  // namespace
}  // namespace zelk::test
