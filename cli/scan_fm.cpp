// zelk scan fm
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/output.h"
#include "cli/parse.h"
#include "cli/scan.h"

namespace zelk::cli {
namespace {

constexpr std::uint32_t kWholeBand = 0;  // direction of the library's FM scan
// The library gives up after this many stations, wherever the sweep stands.
constexpr std::size_t kMostStations = 99;

// The library's own step, a quarter of a station's width.
constexpr Picture::Kind kPicture{kFmBand, 50, 10'500, "station", "stations", true};

struct FoundStation {
  std::uint32_t kHz;
  bool stereo;
  Signal signal;
};

struct Limits {
  std::uint32_t lowKHz;
  std::uint32_t highKHz;
};

// A sweep leaves the tuner at its end, so each station is tuned once more for its figures.
std::vector<FoundStation> Revisit(const Session& session, const Sweep& sweep) {
  std::vector<FoundStation> stations;
  for (const Sweep::Find& find : sweep.Found()) {
    session.Tune(kFmBand, find.kHz);
    stations.push_back({find.kHz, find.stereo, session.ReadSignal(kFmBand)});
  }
  return stations;
}

void PrintScanJson(const Session& session, const Sweep& sweep, const Limits& limits,
                   const std::vector<FoundStation>& stations, const Durations& durations) {
  Json list = Json::array();
  for (const FoundStation& station : stations) {
    list.push_back({{"frequency_khz", station.kHz},
                    {"stereo", station.stereo},
                    {"present", station.signal.present},
                    {"strength", OrNull(station.signal.strength)},
                    {"afc_offset_khz", OrNull(station.signal.afcOffsetKHz)}});
  }
  PrintJson({{"command", "scan fm"},
             {"card", session.CardDescription()},
             {"band_low_khz", limits.lowKHz},
             {"band_high_khz", limits.highKHz},
             {"stopped_at_khz", sweep.NextKHz()},
             {"interrupted", sweep.Interrupted()},
             {"stations", list},
             {"card_time_ms", durations.cardMs},
             {"elapsed_ms", durations.elapsedMs}});
}

void PrintScanTable(const Session& session, const Sweep& sweep,
                    const std::vector<FoundStation>& stations, const Durations& durations) {
  Table table({{"Frequency (MHz)", true}, {"Stereo"}, {"Level", true}});
  std::size_t inStereo = 0;
  for (const FoundStation& station : stations) {
    if (station.stereo) ++inStereo;
    const auto& level = station.signal.strength;
    table.AddRow({MegahertzText(station.kHz), YesNoText(station.stereo),
                  level ? std::to_string(*level) : "-"});
  }
  table.Print(std::cout);
  const std::string count = std::to_string(stations.size());
  PrintScanEnd(session, sweep,
               count + (stations.size() == 1 ? " station, " : " stations, ") +
                   std::to_string(inStereo) + " in stereo",
               durations, kMostStations, "stations");
}

std::vector<PlotMark> MarksOf(const std::vector<FoundStation>& stations) {
  std::vector<PlotMark> marks;
  for (const FoundStation& station : stations) {
    std::string name = MegahertzText(station.kHz);
    // Most stations stand on multiples of 100 kHz.
    while (name.ends_with('0') && !name.ends_with(".0")) name.pop_back();
    marks.push_back({station.kHz, name, station.stereo});
  }
  return marks;
}

Limits LimitsOf(const Session& session, const ScanArguments& arguments) {
  const ZELK_HWInfo info = session.HWInfo();
  Limits limits{info.FmLowKHz, info.FmHighKHz};
  if (!arguments.from.empty()) limits.lowKHz = ParseFrequencyKHz(arguments.from);
  if (!arguments.to.empty()) limits.highKHz = ParseFrequencyKHz(arguments.to);
  session.RequireInBand(kFmBand, limits.lowKHz);
  session.RequireInBand(kFmBand, limits.highKHz);
  if (limits.lowKHz >= limits.highKHz)
    throw UsageError("from " + std::to_string(limits.lowKHz) + " to " +
                     std::to_string(limits.highKHz) + " kHz is no band");
  return limits;
}

int ScanFm(const Options& options, const ScanArguments& arguments) {
  const Interrupt interrupt;
  Sweep::Settings settings;
  if (!arguments.stopAt.empty()) settings.highestKHz = ParseFrequencyKHz(arguments.stopAt);
  settings.showProgress = ProgressWanted(options);
  Picture picture(kPicture, arguments.plot);

  Session session(options);
  const Limits limits = LimitsOf(session, arguments);
  settings.scan = [limits](ZELK_ScanCallback callback, std::uint32_t command) {
    return ZELK_FMAllFreqScan(callback, command, kWholeBand, 0, limits.lowKHz, limits.highKHz);
  };
  session.StartFm();
  const Stopwatch stopwatch;
  Sweep sweep(settings, interrupt);
  session.Check(sweep.Run(), "scan the FM band");
  const std::vector<FoundStation> stations = Revisit(session, sweep);
  const Durations durations = stopwatch.Read();

  if (options.json) {
    PrintScanJson(session, sweep, limits, stations, durations);
  } else {
    PrintScanTable(session, sweep, stations, durations);
  }
  return FinishPicture(options, session, sweep, interrupt, picture, limits.lowKHz,
                       std::min(limits.highKHz, settings.highestKHz), MarksOf(stations));
}

}  // namespace

void AddScanFm(CLI::App& scan, Command& chosen) {
  CLI::App* fm = scan.add_subcommand("fm", "Search the FM band");
  auto arguments = std::make_shared<ScanArguments>();
  fm->add_option("--from", arguments->from, "Begin here (default: the card's lowest frequency)")
      ->type_name("FREQ");
  fm->add_option("--to", arguments->to, "End here (default: the card's highest frequency)")
      ->type_name("FREQ");
  fm->add_option("--stop-at", arguments->stopAt, "End the search behind this frequency")
      ->type_name("FREQ");
  AddPlotOption(*fm, arguments->plot);
  fm->footer(
      "Ctrl-C ends the search; what was found so far is printed.\n\n"
      "Examples:\n"
      "  zelk scan fm\n"
      "  zelk scan fm --from 95MHz --to 100MHz --plot band.svg\n"
      "  zelk --card virtual:saa7134,tuner=5 --air japan-city scan fm --json");
  fm->callback([&chosen, arguments] {
    chosen = [arguments](const Options& options) { return ScanFm(options, *arguments); };
  });
}

}  // namespace zelk::cli
