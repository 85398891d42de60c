// What the scans of both bands have in common.
#pragma once

#include <cstdint>
#include <string>

#include "cli/commands.h"
#include "cli/picture.h"
#include "cli/session.h"
#include "cli/sweep.h"

namespace zelk::cli {

struct ScanArguments {
  std::string from;  // empty, here and below: the band's end
  std::string to;
  std::string stopAt;
  std::string plot;  // empty: no picture
};

struct Durations {
  std::uint64_t cardMs;     // on the card's clock
  std::uint64_t elapsedMs;  // on the wall clock
};

class Stopwatch {
 public:
  Stopwatch();
  Durations Read() const;

 private:
  std::uint64_t cardStartMs_;
  std::uint64_t wallStartMs_;
};

// A bar for people who watch; a trace would tear it to pieces.
bool ProgressWanted(const Options& options);

// The end of a scan's table: `summary`, how long it took, and why it ended before the band did.
// `mostFinds` is where the library gives up.
void PrintScanEnd(const Session& session, const Sweep& sweep, const std::string& summary,
                  const Durations& durations, std::size_t mostFinds, const char* plural);

// Measures the part of the band that was swept and writes the picture. A run that a signal ended,
// now or before, leaves none. Answers the run's exit code.
int FinishPicture(const Options& options, const Session& session, const Sweep& sweep,
                  const Interrupt& interrupt, Picture& picture, std::uint32_t lowKHz,
                  std::uint32_t highKHz, std::vector<PlotMark> marks);

void AddPlotOption(CLI::App& command, std::string& file);
void AddScanTv(CLI::App& scan, Command& chosen);
void AddScanFm(CLI::App& scan, Command& chosen);

}  // namespace zelk::cli
