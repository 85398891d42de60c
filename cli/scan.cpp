// zelk scan
#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdlib>
#include <iostream>

#include "cli/commands.h"
#include "cli/interrupt.h"
#include "cli/output.h"
#include "cli/parse.h"
#include "cli/session.h"
#include "cli/sweep.h"
#include "platform/host/control.h"
#include "virtual_cards/video_standard.h"

namespace zelk::cli {
namespace {

// These two tuners see a carrier from either side, and the library reports it 1750 kHz too high
// when it came upon it in the middle of their AFC range.
constexpr std::uint32_t kTunerAlpsTseh1 = 46;
constexpr std::uint32_t kTunerAlpsTsej1 = 48;
constexpr std::uint32_t kAlpsReportOffsetKHz = 1750;
// The library gives up after this many channels, wherever the sweep stands.
constexpr std::size_t kMostChannels = 125;

struct FoundChannel {
  std::uint32_t reportedKHz;
  std::uint32_t carrierKHz;
  std::optional<std::string> name;
  Signal signal;
};

struct Durations {
  std::uint64_t cardMs;     // on the card's clock
  std::uint64_t elapsedMs;  // on the wall clock
};

std::uint32_t CarrierOf(const Session& session, std::uint32_t tunerType,
                        std::uint32_t reportedKHz) {
  if (tunerType != kTunerAlpsTseh1 && tunerType != kTunerAlpsTsej1) return reportedKHz;
  const std::uint32_t lower = reportedKHz - kAlpsReportOffsetKHz;
  const bool misreported = !session.ChannelName(reportedKHz) && session.ChannelName(lower);
  return misreported ? lower : reportedKHz;
}

// A sweep leaves the tuner anywhere, so each channel is tuned once more for its figures.
std::vector<FoundChannel> Revisit(const Session& session, const Sweep& sweep) {
  const std::uint32_t tunerType = session.TunerType();
  std::vector<FoundChannel> channels;
  for (const std::uint32_t reportedKHz : sweep.FoundKHz()) {
    const std::uint32_t carrierKHz = CarrierOf(session, tunerType, reportedKHz);
    session.Tune(carrierKHz);
    channels.push_back(
        {reportedKHz, carrierKHz, session.ChannelName(carrierKHz), session.ReadSignal()});
  }
  return channels;
}

void PrintScanJson(const Session& session, const Sweep& sweep,
                   const std::vector<FoundChannel>& channels, const Durations& durations) {
  const ZELK_HWInfo info = session.HWInfo();
  Json list = Json::array();
  for (const FoundChannel& channel : channels) {
    list.push_back({{"frequency_khz", channel.carrierKHz},
                    {"reported_khz", channel.reportedKHz},
                    {"channel", OrNull(channel.name)},
                    {"present", channel.signal.present},
                    {"strength", OrNull(channel.signal.strength)},
                    {"afc_offset_khz", OrNull(channel.signal.afcOffsetKHz)},
                    {"decoder_lock", OrNull(channel.signal.decoderLock)}});
  }
  PrintJson({{"command", "scan"},
             {"card", session.CardDescription()},
             {"raster", session.Raster().id},
             {"standard", virtual_cards::NameOfVideoStandard(session.VideoStandard())},
             {"country", session.CountryCode()},
             {"band_low_khz", info.TvLowKHz},
             {"band_high_khz", info.TvHighKHz},
             {"stopped_at_khz", sweep.NextKHz()},
             {"interrupted", sweep.Interrupted()},
             {"channels", list},
             {"card_time_ms", durations.cardMs},
             {"elapsed_ms", durations.elapsedMs}});
}

void PrintScanTable(const Session& session, const Sweep& sweep,
                    const std::vector<FoundChannel>& channels, const Durations& durations) {
  Table table({{"Frequency (MHz)", true},
               {"Channel"},
               {"Strength", true},
               {"AFC offset (kHz)", true},
               {"Decoder lock"}});
  std::size_t onRaster = 0;
  for (const FoundChannel& channel : channels) {
    if (channel.name) ++onRaster;
    const auto& strength = channel.signal.strength;
    table.AddRow({MegahertzText(channel.carrierKHz), channel.name.value_or("-"),
                  strength ? std::to_string(*strength) : "-",
                  OffsetText(channel.signal.afcOffsetKHz), YesNoText(channel.signal.decoderLock)});
  }
  table.Print(std::cout);

  std::cout << channels.size() << (channels.size() == 1 ? " channel, " : " channels, ") << onRaster
            << " on raster " << session.Raster().id << "; ";
  if (host::ClockIsVirtual())
    std::cout << DurationText(durations.cardMs) << " of card time (virtual clock), ";
  std::cout << DurationText(durations.elapsedMs) << " elapsed";
  // A scan looks at no result code: a board that cannot be tuned is merely silent.
  if (channels.empty()) std::cout << session.LogHint();
  std::cout << '\n';
  if (sweep.Interrupted())
    std::cout << "Interrupted at " << MegahertzText(sweep.NextKHz()) << " MHz\n";
  if (channels.size() >= kMostChannels)
    std::cout << "The library ends a scan at " << kMostChannels << " channels; it came to "
              << MegahertzText(sweep.NextKHz()) << " MHz\n";
}

int ScanTv(const Options& options, const std::string& stopAt) {
  const Interrupt interrupt;
  const auto start = std::chrono::steady_clock::now();
  Sweep::Settings settings;
  if (!stopAt.empty()) settings.stopAtKHz = ParseFrequencyKHz(stopAt);
  // A trace would tear the bar to pieces.
  settings.showProgress = StandardErrorIsTerminal() && !options.trace;

  Session session(options);
  session.StartTv();
  const std::uint64_t cardStart = host::ClockMilliseconds();
  Sweep sweep(settings, interrupt);
  session.Check(sweep.Run(), "scan the TV band");
  const std::vector<FoundChannel> channels = Revisit(session, sweep);
  const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - start);
  const Durations durations{host::ClockMilliseconds() - cardStart,
                            static_cast<std::uint64_t>(elapsed.count())};

  if (options.json) {
    PrintScanJson(session, sweep, channels, durations);
  } else {
    PrintScanTable(session, sweep, channels, durations);
  }
  return sweep.Interrupted() ? kExitInterrupted : kExitSuccess;
}

}  // namespace

void AddScanCommands(CLI::App& app, Command& chosen) {
  CLI::App* scan = app.add_subcommand("scan", "Search a band for everything that can be received");
  scan->require_subcommand(1);
  scan->footer("Example:\n  zelk scan tv");
  CLI::App* tv = scan->add_subcommand("tv", "Search the TV band");
  auto stopAt = std::make_shared<std::string>();
  tv->add_option("--stop-at", *stopAt, "End the search behind this frequency")->type_name("FREQ");
  tv->footer(
      "Ctrl-C ends the search; what was found so far is printed.\n\n"
      "Examples:\n"
      "  zelk scan tv\n"
      "  zelk scan tv --stop-at 300MHz --json\n"
      "  zelk --card virtual:saa7134,tuner=5 --air us-city scan tv");
  tv->callback([&chosen, stopAt] {
    chosen = [stopAt](const Options& options) { return ScanTv(options, *stopAt); };
  });
}

}  // namespace zelk::cli
