// zelk tune fm, zelk seek, zelk fm
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iostream>
#include <optional>

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/parse.h"
#include "cli/signal_text.h"
#include "cli/sweep.h"

namespace zelk::cli {
namespace {

struct SeekResult {
  std::optional<Sweep::Find> station;
  std::uint32_t nextKHz;  // where the search would have gone on
  bool interrupted;
};

// Directions of the library's FM scan.
constexpr std::uint32_t kSweepUp = 0;
constexpr std::uint32_t kSeekUp = 1;
constexpr std::uint32_t kStationGapKHz = 100;

SeekResult SeekUp(const Session& session, const Interrupt& interrupt, std::uint32_t fromKHz) {
  const ZELK_HWInfo info = session.HWInfo();
  Sweep::Settings settings;
  settings.scan = [&](ZELK_ScanCallback callback, std::uint32_t command) {
    return ZELK_FMAllFreqScan(callback, command, kSeekUp, fromKHz, info.FmLowKHz, info.FmHighKHz);
  };
  Sweep sweep(settings, interrupt);
  session.Check(sweep.Run(), "seek a station");
  std::optional<Sweep::Find> station;
  if (!sweep.Found().empty()) station = sweep.Found().front();
  return {station, sweep.NextKHz(), sweep.Interrupted()};
}

// The library recognises a station by what lies below it, so that its own downward seek passes
// stations by. This one sweeps upward through a short stretch, then through the one below it, and
// so on, until a stretch has a station: its last one is the nearest.
SeekResult SeekDown(const Session& session, const Interrupt& interrupt, std::uint32_t fromKHz) {
  constexpr std::uint32_t kStretchKHz = 1000;
  // Probes that a station needs below and above it to be recognised.
  constexpr std::uint32_t kMarginKHz = 200;
  const ZELK_HWInfo info = session.HWInfo();
  std::uint32_t top = fromKHz - kStationGapKHz;
  while (top > info.FmLowKHz) {
    const std::uint32_t bottom = std::max(top - kStretchKHz, info.FmLowKHz);
    const std::uint32_t low = std::max(bottom - kMarginKHz, info.FmLowKHz);
    const std::uint32_t high = std::min(top + kMarginKHz, info.FmHighKHz);
    Sweep::Settings settings;
    settings.scan = [=](ZELK_ScanCallback callback, std::uint32_t command) {
      return ZELK_FMAllFreqScan(callback, command, kSweepUp, 0, low, high);
    };
    Sweep sweep(settings, interrupt);
    session.Check(sweep.Run(), "seek a station");
    if (sweep.Interrupted()) return {std::nullopt, sweep.NextKHz(), true};
    std::optional<Sweep::Find> station;
    for (const Sweep::Find& find : sweep.Found()) {
      if (find.kHz >= bottom && find.kHz <= top) station = find;
    }
    if (station) return {station, bottom, false};
    top = bottom;
  }
  return {std::nullopt, info.FmLowKHz, false};
}

struct SeekDirection {
  const char* name;
  SeekResult (*seek)(const Session&, const Interrupt&, std::uint32_t);
  const char* beyond;
};

constexpr std::array<SeekDirection, 2> kSeekDirections{
    {{"up", SeekUp, "above"}, {"down", SeekDown, "below"}}};

struct AudioMode {
  const char* name;
  std::uint32_t code;
};

constexpr std::array<AudioMode, 2> kAudioModes{{{"stereo", 1}, {"mono", 0}}};

template <class Rows>
const auto& RowNamed(const Rows& rows, const std::string& name, const char* what) {
  std::string names;
  for (const auto& row : rows) {
    if (row.name == name) return row;
    names += (names.empty() ? "" : " or ") + std::string(row.name);
  }
  throw UsageError(std::string(what) + " \"" + name + "\" is not " + names);
}

// Tunes the station and shows what is there, in `mode` if one is given.
int ShowStation(const Options& options, const char* command, const std::string& target,
                const AudioMode* mode) {
  const std::uint32_t kHz = ParseFrequencyKHz(target);
  Session session(options);
  session.RequireInBand(kFmBand, kHz);
  session.StartFm();
  session.Tune(kFmBand, kHz);
  if (mode) {
    session.Check(ZELK_FMSetAudioMode(mode->code), std::string("switch to ") + mode->name);
  }
  const Signal signal = session.ReadSignal(kFmBand);
  if (options.json) {
    Json result = {
        {"command", command}, {"card", session.CardDescription()}, {"frequency_khz", kHz}};
    if (mode) result["mode"] = mode->name;
    result.update(FmSignalJson(signal));
    PrintJson(result);
  } else {
    std::cout << MegahertzText(kHz) << " MHz" << (mode ? std::string(" in ") + mode->name : "")
              << ": " << FmSignalText(signal) << '\n';
  }
  return kExitSuccess;
}

int Seek(const Options& options, const std::string& directionName, const std::string& reference) {
  const SeekDirection& direction = RowNamed(kSeekDirections, directionName, "direction");
  const std::uint32_t kHz = ParseFrequencyKHz(reference);
  const Interrupt interrupt;
  Session session(options);
  session.RequireInBand(kFmBand, kHz);
  session.StartFm();
  // A scan looks at no result code. A board that cannot be tuned shows here.
  session.Tune(kFmBand, kHz);
  const SeekResult result = direction.seek(session, interrupt, kHz);
  const auto& station = result.station;

  if (options.json) {
    Json json = {{"command", "seek"},
                 {"card", session.CardDescription()},
                 {"direction", direction.name},
                 {"from_khz", kHz},
                 {"found", station.has_value()},
                 {"interrupted", result.interrupted},
                 {"frequency_khz", nullptr},
                 {"stereo", nullptr}};
    if (station) {
      json["frequency_khz"] = station->kHz;
      json["stereo"] = station->stereo;
    }
    PrintJson(json);
  } else if (station) {
    std::cout << MegahertzText(station->kHz) << " MHz, " << (station->stereo ? "stereo" : "mono")
              << '\n';
  } else if (result.interrupted) {
    std::cout << "Interrupted at " << MegahertzText(result.nextKHz) << " MHz\n";
  } else {
    std::cout << "no station " << direction.beyond << ' ' << MegahertzText(kHz) << " MHz\n";
  }
  return result.interrupted ? interrupt.ExitCode() : kExitSuccess;
}

struct RadioArguments {
  std::string word;  // a direction or a mode
  std::string frequency;
};

void AddFrequency(CLI::App& command, std::string& frequency, const char* what) {
  command.add_option("frequency", frequency, std::string(what) + " (98000, 98000kHz, 98MHz)")
      ->type_name("FREQ")
      ->required();
}

}  // namespace

void AddTuneFm(CLI::App& tune, Command& chosen) {
  CLI::App* fm = tune.add_subcommand("fm", "Tune an FM station");
  auto target = std::make_shared<std::string>();
  AddFrequency(*fm, *target, "The station's carrier");
  fm->footer("Examples:\n  zelk tune fm 90.8MHz\n  zelk tune fm 98600 --json");
  fm->callback([&chosen, target] {
    chosen = [target](const Options& options) {
      return ShowStation(options, "tune fm", *target, nullptr);
    };
  });
}

void AddRadioCommands(CLI::App& app, Command& chosen) {
  CLI::App* seek = app.add_subcommand("seek", "Seek the next FM station");
  auto seeking = std::make_shared<RadioArguments>();
  seek->add_option("direction", seeking->word, "up or down")->type_name("up|down")->required();
  AddFrequency(*seek, seeking->frequency, "Where to begin");
  seek->footer("Examples:\n  zelk seek up 95MHz\n  zelk seek down 95MHz --json");
  seek->callback([&chosen, seeking] {
    chosen = [seeking](const Options& options) {
      return Seek(options, seeking->word, seeking->frequency);
    };
  });

  CLI::App* fm = app.add_subcommand("fm", "Settings of the FM radio");
  fm->require_subcommand(1);
  fm->footer("Example:\n  zelk fm mode mono 90.8MHz");
  CLI::App* mode = fm->add_subcommand("mode", "Receive a station in stereo or mono");
  auto listening = std::make_shared<RadioArguments>();
  mode->add_option("mode", listening->word, "stereo or mono")->type_name("stereo|mono")->required();
  AddFrequency(*mode, listening->frequency, "The station's carrier");
  mode->footer("Examples:\n  zelk fm mode mono 90.8MHz\n  zelk fm mode stereo 90.8MHz --json");
  mode->callback([&chosen, listening] {
    chosen = [listening](const Options& options) {
      const AudioMode& mode = RowNamed(kAudioModes, listening->word, "mode");
      return ShowStation(options, "fm mode", listening->frequency, &mode);
    };
  });
}

}  // namespace zelk::cli
