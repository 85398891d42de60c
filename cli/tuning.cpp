// zelk tune, zelk signal
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/parse.h"
#include "cli/session.h"
#include "cli/signal_text.h"
#include "platform/control.h"
#include "platform/win32.h"

namespace zelk::cli {
namespace {

struct SignalArguments {
  std::string target;  // empty: where the card stands after its start
  std::uint32_t count = 1;
  std::uint32_t intervalMs = 1000;
};

std::string CarrierText(const Session& session, std::uint32_t kHz) {
  const auto channel = session.ChannelName(kHz);
  return MegahertzText(kHz) + " MHz" +
         (channel ? " (" + *channel + " of " + session.Raster().id + ')' : "");
}

int TuneTv(const Options& options, const std::string& target) {
  Session session(options);
  const std::uint32_t kHz = ParseChannelOrFrequencyKHz(target, session.Raster());
  session.RequireInBand(kTvBand, kHz);
  session.StartTv();
  session.Tune(kTvBand, kHz);
  const Signal signal = session.ReadSignal(kTvBand);
  if (options.json) {
    Json result = {{"command", "tune"},
                   {"card", session.CardDescription()},
                   {"frequency_khz", kHz},
                   {"channel", OrNull(session.ChannelName(kHz))}};
    result.update(TvSignalJson(signal));
    PrintJson(result);
  } else {
    std::cout << CarrierText(session, kHz) << ": " << TvSignalText(signal) << '\n';
  }
  return kExitSuccess;
}

// Waits on the card's clock, in slices that leave Ctrl-C its say.
void Pause(std::uint32_t milliseconds, const Interrupt& interrupt) {
  constexpr std::uint32_t kSliceMs = 50;
  while (milliseconds > 0 && !interrupt.Requested()) {
    const std::uint32_t slice = std::min(milliseconds, kSliceMs);
    Sleep(slice);
    milliseconds -= slice;
  }
}

int WatchSignal(const Options& options, const SignalArguments& arguments) {
  const Interrupt interrupt;
  Session session(options);
  std::optional<std::uint32_t> kHz;
  if (!arguments.target.empty()) {
    kHz = ParseChannelOrFrequencyKHz(arguments.target, session.Raster());
    session.RequireInBand(kTvBand, *kHz);
  }
  session.StartTv();
  if (kHz) session.Tune(kTvBand, *kHz);

  if (!options.json && kHz) std::cout << CarrierText(session, *kHz) << '\n';
  Json readings = Json::array();
  const std::uint64_t start = host::ClockMilliseconds();
  for (std::uint32_t i = 0; i < arguments.count && !interrupt.Requested(); ++i) {
    if (i > 0) Pause(arguments.intervalMs, interrupt);
    if (interrupt.Requested()) break;
    const Signal signal = session.ReadSignal(kTvBand);
    const std::uint64_t now = host::ClockMilliseconds() - start;
    if (options.json) {
      Json reading = {{"time_ms", now}};
      reading.update(TvSignalJson(signal));
      readings.push_back(reading);
    } else {
      std::cout << DurationText(now) << ": " << TvSignalText(signal) << std::endl;
    }
  }
  if (options.json) {
    PrintJson({{"command", "signal"},
               {"card", session.CardDescription()},
               {"frequency_khz", OrNull(kHz)},
               {"channel", kHz ? OrNull(session.ChannelName(*kHz)) : Json(nullptr)},
               {"interrupted", interrupt.Requested()},
               {"readings", readings}});
  }
  return interrupt.ExitCode();
}

}  // namespace

void AddTuningCommands(CLI::App& app, Command& chosen) {
  CLI::App* tune = app.add_subcommand("tune", "Tune the card and read the signal there");
  tune->require_subcommand(1);
  tune->footer("Examples:\n  zelk tune tv 175.25MHz\n  zelk tune fm 98.6MHz");
  CLI::App* tv = tune->add_subcommand("tv", "Tune a TV channel");
  auto target = std::make_shared<std::string>();
  tv->add_option(
        "channel", *target,
        "Picture carrier (175250, 175250kHz, 175.25MHz) or channel name of the raster (E5)")
      ->type_name("FREQ|CHANNEL")
      ->required();
  tv->footer(
      "Examples:\n"
      "  zelk tune tv E5\n"
      "  zelk tune tv 175.25MHz\n"
      "  zelk --air us-city --card virtual:saa7134,tuner=5 tune tv 7 --json");
  tv->callback([&chosen, target] {
    chosen = [target](const Options& options) { return TuneTv(options, *target); };
  });

  AddTuneFm(*tune, chosen);

  CLI::App* signal = app.add_subcommand("signal", "Read the signal once or watch it");
  auto arguments = std::make_shared<SignalArguments>();
  signal
      ->add_option("channel", arguments->target,
                   "Where to tune first (default: where the card stands after its start)")
      ->type_name("FREQ|CHANNEL");
  signal->add_option("--count", arguments->count, "Number of readings")
      ->type_name("N")
      ->check(CLI::Range(1, 1'000'000))
      ->capture_default_str();
  signal->add_option("--interval", arguments->intervalMs, "Pause between readings")
      ->type_name("MS")
      ->check(CLI::Range(0, 3'600'000))
      ->capture_default_str();
  signal->footer(
      "Examples:\n"
      "  zelk signal E5\n"
      "  zelk signal K24 --count 100 --interval 500 --realtime");
  signal->callback([&chosen, arguments] {
    chosen = [arguments](const Options& options) { return WatchSignal(options, *arguments); };
  });
}

}  // namespace zelk::cli
