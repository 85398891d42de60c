// zelk cards, zelk info
#include <CLI/CLI.hpp>
#include <array>
#include <iostream>

#include "cli/commands.h"
#include "cli/output.h"
#include "cli/session.h"

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

int ListCards(const Options& options) {
  const std::vector<virtual_cards::CardKind> kinds = virtual_cards::CardKinds();
  if (options.json) {
    Json list = Json::array();
    for (const auto& kind : kinds)
      list.push_back({{"card", "virtual:" + kind.name}, {"description", kind.description}});
    PrintJson({{"command", "cards"}, {"cards", list}});
    return kExitSuccess;
  }
  Table table({{"Card"}, {"Description"}});
  for (const auto& kind : kinds) table.AddRow({"virtual:" + kind.name, kind.description});
  table.Print(std::cout);
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
  CLI::App* cards = app.add_subcommand("cards", "List the virtual cards");
  cards->footer("Example:\n  zelk cards");
  cards->callback([&chosen] { chosen = ListCards; });

  CLI::App* info = app.add_subcommand("info", "Show what the library finds on the board");
  info->footer("Examples:\n  zelk info\n  zelk info --card virtual:saa7134,tuner=14 --json");
  info->callback([&chosen] { chosen = ShowInfo; });
}

}  // namespace zelk::cli
