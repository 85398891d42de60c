// zelk tune, zelk signal
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/output.h"
#include "cli/parse.h"
#include "cli/session.h"
#include "platform/host/control.h"
#include "platform/win32.h"

namespace zelk::cli {
namespace {

struct SignalArguments {
  std::string target;  // empty: where the card stands after its start
  std::uint32_t count = 1;
  std::uint32_t intervalMs = 1000;
};

Json SignalJson(const Signal& signal) {
  return {{"present", signal.present},
          {"strength", OrNull(signal.strength)},
          {"afc_offset_khz", OrNull(signal.afcOffsetKHz)},
          {"decoder_lock", OrNull(signal.decoderLock)}};
}

std::string SignalText(const Signal& signal) {
  const std::string strength = signal.strength ? std::to_string(*signal.strength) : "-";
  return std::string(signal.present ? "signal" : "no signal") + ", strength " + strength +
         ", AFC " + OffsetText(signal.afcOffsetKHz) + " kHz, decoder lock " +
         YesNoText(signal.decoderLock);
}

std::string CarrierText(const Session& session, std::uint32_t kHz) {
  const auto channel = session.ChannelName(kHz);
  return MegahertzText(kHz) + " MHz" +
         (channel ? " (" + *channel + " of " + session.Raster().id + ')' : "");
}

int TuneTv(const Options& options, const std::string& target) {
  Session session(options);
  const std::uint32_t kHz = ParseChannelOrFrequencyKHz(target, session.Raster());
  session.RequireInTvBand(kHz);
  session.StartTv();
  session.Tune(kHz);
  const Signal signal = session.ReadSignal();
  if (options.json) {
    Json result = {{"command", "tune"},
                   {"card", session.CardDescription()},
                   {"frequency_khz", kHz},
                   {"channel", OrNull(session.ChannelName(kHz))}};
    result.update(SignalJson(signal));
    PrintJson(result);
  } else {
    std::cout << CarrierText(session, kHz) << ": " << SignalText(signal) << '\n';
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
    session.RequireInTvBand(*kHz);
  }
  session.StartTv();
  if (kHz) session.Tune(*kHz);

  if (!options.json && kHz) std::cout << CarrierText(session, *kHz) << '\n';
  Json readings = Json::array();
  const std::uint64_t start = host::ClockMilliseconds();
  for (std::uint32_t i = 0; i < arguments.count && !interrupt.Requested(); ++i) {
    if (i > 0) Pause(arguments.intervalMs, interrupt);
    if (interrupt.Requested()) break;
    const Signal signal = session.ReadSignal();
    const std::uint64_t now = host::ClockMilliseconds() - start;
    if (options.json) {
      Json reading = {{"time_ms", now}};
      reading.update(SignalJson(signal));
      readings.push_back(reading);
    } else {
      std::cout << DurationText(now) << ": " << SignalText(signal) << std::endl;
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
  return interrupt.Requested() ? kExitInterrupted : kExitSuccess;
}

}  // namespace

void AddTuningCommands(CLI::App& app, Command& chosen) {
  CLI::App* tune = app.add_subcommand("tune", "Tune the card and read the signal there");
  tune->require_subcommand(1);
  tune->footer("Example:\n  zelk tune tv 175.25MHz");
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
