// zelk scan
#include "cli/scan.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <iostream>

#include "cli/output.h"
#include "platform/console.h"
#include "platform/control.h"

namespace zelk::cli {
namespace {

std::uint64_t WallMilliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

}  // namespace

Stopwatch::Stopwatch()
    : cardStartMs_(host::ClockMilliseconds()), wallStartMs_(WallMilliseconds()) {}

Durations Stopwatch::Read() const {
  return {host::ClockMilliseconds() - cardStartMs_, WallMilliseconds() - wallStartMs_};
}

bool ProgressWanted(const Options& options) { return StandardErrorIsTerminal() && !options.trace; }

void PrintScanEnd(const Session& session, const Sweep& sweep, const std::string& summary,
                  const Durations& durations, std::size_t mostFinds, const char* plural) {
  std::cout << summary << "; ";
  if (host::ClockIsVirtual())
    std::cout << DurationText(durations.cardMs) << " of card time (virtual clock), ";
  std::cout << DurationText(durations.elapsedMs) << " elapsed";
  // A scan looks at no result code: a board that cannot be tuned is merely silent.
  if (sweep.Found().empty()) std::cout << session.LogHint();
  std::cout << '\n';
  if (sweep.Interrupted())
    std::cout << "Interrupted at " << MegahertzText(sweep.NextKHz()) << " MHz\n";
  if (sweep.Found().size() >= mostFinds)
    std::cout << "The library ends a scan at " << mostFinds << ' ' << plural << "; it came to "
              << MegahertzText(sweep.NextKHz()) << " MHz\n";
}

int FinishPicture(const Options& options, const Session& session, const Sweep& sweep,
                  const Interrupt& interrupt, Picture& picture, std::uint32_t lowKHz,
                  std::uint32_t highKHz, std::vector<PlotMark> marks) {
  // A find makes the sweep jump ahead, beyond the end perhaps.
  const std::uint32_t end = std::max(lowKHz, std::min(sweep.NextKHz(), highKHz));
  if (picture.Wanted() && !interrupt.Requested() &&
      picture.Measure(session, lowKHz, end, interrupt, ProgressWanted(options))) {
    picture.Write(session, std::move(marks));
    if (!options.json) std::cout << "Picture: " << picture.File() << '\n';
  } else if (picture.Wanted() && !options.json) {
    std::cout << "Interrupted: no picture\n";
  }
  return interrupt.ExitCode();
}

void AddPlotOption(CLI::App& command, std::string& file) {
  command
      .add_option("--plot", file, "Then measure the band and write its picture to this SVG file")
      ->type_name("FILE")
      ->check([](const std::string& name) { return name.empty() ? "needs a file name" : ""; });
}

void AddScanCommands(CLI::App& app, Command& chosen) {
  CLI::App* scan = app.add_subcommand("scan", "Search a band for everything that can be received");
  scan->require_subcommand(1);
  scan->footer("Examples:\n  zelk scan tv\n  zelk scan fm");
  AddScanTv(*scan, chosen);
  AddScanFm(*scan, chosen);
}

}  // namespace zelk::cli
