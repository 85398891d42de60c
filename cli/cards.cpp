// zelk cards, zelk info
#include <CLI/CLI.hpp>
#include <array>
#include <filesystem>
#include <iostream>

#include "cli/commands.h"
#include "cli/devices.h"
#include "cli/output.h"
#include "cli/session.h"
#include "platform/win32.h"

namespace zelk::cli {
namespace {

// A row of the board's record, in the record's order.
struct HWInfoRow {
  std::uint32_t ZELK_HWInfo::*field;
  const char* key;    // in JSON, with its unit
  const char* title;  // for people
  const char* unit;
};

constexpr std::array<HWInfoRow, 10> kHWInfoRows{{
    {&ZELK_HWInfo::FmTuner, "fm_tuner", "FM tuner", ""},
    {&ZELK_HWInfo::BoardOptionCode, "board_option_code", "Board option code", ""},
    {&ZELK_HWInfo::BoardOptionBit, "board_option_bit", "Board option bit", ""},
    {&ZELK_HWInfo::FmLowKHz, "fm_low_khz", "Lowest FM frequency", " kHz"},
    {&ZELK_HWInfo::FmHighKHz, "fm_high_khz", "Highest FM frequency", " kHz"},
    {&ZELK_HWInfo::BoardFlag5, "board_flag_5", "Board flag 5", ""},
    {&ZELK_HWInfo::BoardCode6, "board_code_6", "Board code 6", ""},
    {&ZELK_HWInfo::TvLowKHz, "tv_low_khz", "Lowest TV carrier", " kHz"},
    {&ZELK_HWInfo::TvHighKHz, "tv_high_khz", "Highest TV carrier", " kHz"},
    {&ZELK_HWInfo::BoardCode9, "board_code_9", "Board code 9", ""},
}};

struct DecoderRow {
  std::uint32_t kind;
  const char* name;
};

constexpr std::array<DecoderRow, 4> kDecoders{{
    {0, "SAA7130"},
    {1, "SAA7131"},
    {3, "SAA7133/7135"},
    {4, "SAA7134"},
}};

struct CardsArguments {
  bool namesOnly = false;
};

std::optional<std::string> DecoderName() {
  // The library leaves the place alone for cards of other families, and says -1 for a chip unknown
  // to it.
  constexpr std::uint32_t kNoAnswer = 0xFFFF;
  std::uint32_t kind = kNoAnswer;
  ZELK_GetDecoder(&kind);
  for (const DecoderRow& row : kDecoders) {
    if (row.kind == kind) return row.name;
  }
  return std::nullopt;
}

// The library writes down why it refuses a card. While one tries cards that may well be none of its
// own, that goes into a folder that goes with the object. Throws Failure.
class PassingLogs {
 public:
  PassingLogs() try : before_(std::filesystem::current_path()) {
    const std::string name = "zelk-cards-" + std::to_string(GetCurrentProcessId()) + '-';
    // What somebody else has put under such a name is none of ours to write in, or to remove.
    for (int i = 0; folder_.empty(); ++i) {
      const auto folder = std::filesystem::temp_directory_path() / (name + std::to_string(i));
      if (std::filesystem::create_directory(folder)) folder_ = folder;
    }
    std::filesystem::current_path(folder_);
  } catch (const std::filesystem::filesystem_error& error) {
    throw Failure("no folder for the logs of a trial: " + error.code().message() +
                  "; with --names no card is tried");
  }
  ~PassingLogs() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
    std::filesystem::remove_all(folder_, ignored);
  }
  PassingLogs(const PassingLogs&) = delete;
  PassingLogs& operator=(const PassingLogs&) = delete;

 private:
  const std::filesystem::path before_;
  std::filesystem::path folder_;
};

// What the library makes of a capture device can only be found out by letting it try. The name of
// the card's tuner; nothing when the library refuses the device.
std::optional<std::string> TryDevice(const Device& capture, const std::vector<Device>& tuners) {
  const ComPtr<IUnknown> filter = capture.MakeFilter();
  const Device* const tuner = TunerOf(capture, tuners);
  const ComPtr<IUnknown> tunerFilter = tuner ? tuner->MakeFilter() : ComPtr<IUnknown>();
  if (!filter || ZELK_HWInit(filter.Get(), capture.friendlyName.c_str(), tunerFilter.Get(), 0) < 0)
    return std::nullopt;
  char name[64] = "";
  ZELK_GetTunerName(name, sizeof name);
  ZELK_Free();
  return name;
}

struct ListedDevice {
  std::string name;
  bool captures;
  std::optional<std::string> tuner;  // of a card that the library accepts
};

std::vector<ListedDevice> ListDevices(const CardsArguments& arguments) {
  const std::vector<Device> captures = CaptureDevices();
  const std::vector<Device> tuners = TunerDevices();
  const bool trying = !arguments.namesOnly && !captures.empty();
  std::optional<PassingLogs> logs;
  if (trying) logs.emplace();
  std::vector<ListedDevice> devices;
  for (const Device& device : captures)
    devices.push_back({device.name, true, trying ? TryDevice(device, tuners) : std::nullopt});
  for (const Device& device : tuners) devices.push_back({device.name, false, std::nullopt});
  return devices;
}

Json DevicesJson(const std::vector<ListedDevice>& devices, const CardsArguments& arguments) {
  Json list = Json::array();
  for (const ListedDevice& device : devices) {
    Json row = {{"device", device.name}, {"kind", device.captures ? "capture" : "tuner"}};
    if (device.captures && !arguments.namesOnly) {
      row["accepted"] = device.tuner.has_value();
      row["tuner_name"] = OrNull(device.tuner);
    }
    list.push_back(row);
  }
  return list;
}

void PrintDevices(const std::vector<ListedDevice>& devices, const CardsArguments& arguments) {
  if (devices.empty()) return;
  std::cout << '\n';
  Table table({{"Device"}, {"Kind"}, {"Library"}});
  for (const ListedDevice& device : devices) {
    const bool tried = device.captures && !arguments.namesOnly;
    table.AddRow({device.name, device.captures ? "capture" : "tuner",
                  !tried         ? "-"
                  : device.tuner ? "accepts it, tuner " + *device.tuner
                                 : "does not accept it"});
  }
  table.Print(std::cout);
}

int ListCards(const Options& options, const CardsArguments& arguments) {
  const auto plugged = PlugInBesideTheSystem(options, virtual_cards::LoadAir(options.air));
  const std::vector<virtual_cards::CardKind> kinds = virtual_cards::CardKinds();
  const std::vector<ListedDevice> devices = ListDevices(arguments);
  if (options.json) {
    Json list = Json::array();
    for (const auto& kind : kinds)
      list.push_back({{"card", "virtual:" + kind.name}, {"description", kind.description}});
    PrintJson(
        {{"command", "cards"}, {"cards", list}, {"devices", DevicesJson(devices, arguments)}});
    return kExitSuccess;
  }
  Table table({{"Card"}, {"Description"}});
  for (const auto& kind : kinds) table.AddRow({"virtual:" + kind.name, kind.description});
  table.Print(std::cout);
  PrintDevices(devices, arguments);
  return kExitSuccess;
}

int ShowInfo(const Options& options) {
  const Session session(options);
  const ZELK_HWInfo info = session.HWInfo();
  const std::uint32_t tunerType = session.TunerType();
  const std::string tunerName = session.TunerName();
  const std::optional<std::string> decoder = DecoderName();

  if (options.json) {
    Json record;
    for (const HWInfoRow& row : kHWInfoRows) record[row.key] = info.*row.field;
    PrintJson({{"command", "info"},
               {"card", session.CardDescription()},
               {"friendly_name", OrNull(session.FriendlyName())},
               {"decoder_chip", OrNull(decoder)},
               {"tuner", {{"type", tunerType}, {"name", tunerName}}},
               {"hw_info", record}});
    return kExitSuccess;
  }
  Table table({{"Card"}, {session.FriendlyName().value_or(session.CardDescription())}});
  table.AddRow({"Decoder chip", decoder.value_or("-")});
  table.AddRow({"Tuner", tunerName + " (type " + std::to_string(tunerType) + ')'});
  for (const HWInfoRow& row : kHWInfoRows)
    table.AddRow({row.title, std::to_string(info.*row.field) + row.unit});
  table.Print(std::cout);
  return kExitSuccess;
}

}  // namespace

void AddCardCommands(CLI::App& app, Command& chosen) {
  CLI::App* cards = app.add_subcommand(
      "cards", "List the virtual cards and the system's capture and tuner devices");
  auto arguments = std::make_shared<CardsArguments>();
  cards->add_flag("--names", arguments->namesOnly,
                  "Only name the devices; do not let the library try them");
  cards->footer("Examples:\n  zelk cards\n  zelk cards --plug saa7134");
  cards->callback([&chosen, arguments] {
    chosen = [arguments](const Options& options) { return ListCards(options, *arguments); };
  });

  CLI::App* info = app.add_subcommand("info", "Show what the library finds on the board");
  info->footer("Examples:\n  zelk info\n  zelk info --card virtual:saa7134,tuner=14 --json");
  info->callback([&chosen] { chosen = ShowInfo; });
}

}  // namespace zelk::cli
