// zelk scan tv
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "cli/output.h"
#include "cli/parse.h"
#include "cli/scan.h"
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

// The library's own step: no tuner sees a carrier that lies further off than that.
constexpr Picture::Kind kPicture{kTvBand, 250, 280'000, "channel", "channels", false};

struct FoundChannel {
  std::uint32_t reportedKHz;
  std::uint32_t carrierKHz;
  std::optional<std::string> name;
  Signal signal;
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
  for (const Sweep::Find& find : sweep.Found()) {
    const std::uint32_t carrierKHz = CarrierOf(session, tunerType, find.kHz);
    session.Tune(kTvBand, carrierKHz);
    channels.push_back(
        {find.kHz, carrierKHz, session.ChannelName(carrierKHz), session.ReadSignal(kTvBand)});
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
  const std::string count = std::to_string(channels.size());
  PrintScanEnd(session, sweep,
               count + (channels.size() == 1 ? " channel, " : " channels, ") +
                   std::to_string(onRaster) + " on raster " + session.Raster().id,
               durations, kMostChannels, "channels");
}

std::vector<PlotMark> MarksOf(const std::vector<FoundChannel>& channels) {
  std::vector<PlotMark> marks;
  for (const FoundChannel& channel : channels)
    marks.push_back(
        {channel.carrierKHz, channel.name.value_or(MegahertzText(channel.carrierKHz)), false});
  return marks;
}

int ScanTv(const Options& options, const ScanArguments& arguments) {
  const Interrupt interrupt;
  Sweep::Settings settings;
  settings.scan = ZELK_AllFreqScan;
  if (!arguments.stopAt.empty()) settings.highestKHz = ParseFrequencyKHz(arguments.stopAt);
  settings.showProgress = ProgressWanted(options);
  Picture picture(kPicture, arguments.plot);

  Session session(options);
  session.StartTv();
  const Stopwatch stopwatch;
  Sweep sweep(settings, interrupt);
  session.Check(sweep.Run(), "scan the TV band");
  const std::vector<FoundChannel> channels = Revisit(session, sweep);
  const Durations durations = stopwatch.Read();

  if (options.json) {
    PrintScanJson(session, sweep, channels, durations);
  } else {
    PrintScanTable(session, sweep, channels, durations);
  }
  const ZELK_HWInfo info = session.HWInfo();
  return FinishPicture(options, session, sweep, interrupt, picture, info.TvLowKHz,
                       std::min(info.TvHighKHz, settings.highestKHz), MarksOf(channels));
}

}  // namespace

void AddScanTv(CLI::App& scan, Command& chosen) {
  CLI::App* tv = scan.add_subcommand("tv", "Search the TV band");
  auto arguments = std::make_shared<ScanArguments>();
  tv->add_option("--stop-at", arguments->stopAt, "End the search behind this frequency")
      ->type_name("FREQ");
  AddPlotOption(*tv, arguments->plot);
  tv->footer(
      "Ctrl-C ends the search; what was found so far is printed.\n\n"
      "Examples:\n"
      "  zelk scan tv\n"
      "  zelk scan tv --plot band.svg\n"
      "  zelk scan tv --stop-at 300MHz --json\n"
      "  zelk --card virtual:saa7134,tuner=5 --air us-city scan tv");
  tv->callback([&chosen, arguments] {
    chosen = [arguments](const Options& options) { return ScanTv(options, *arguments); };
  });
}

}  // namespace zelk::cli
