#include "virtual_cards/cards/saa713x/options.h"

#include <optional>
#include <utility>

#include "virtual_cards/cards/saa713x/boards.h"

namespace zelk::virtual_cards {

namespace {

struct Key {
  std::uint8_t kind;
  std::uint8_t code;
};

struct Parsed {
  Saa713xOptions options;
  std::optional<std::uint32_t> tunerType;
  std::optional<Key> key;
};

void ParseTuner(const OptionText& option, Parsed& parsed) {
  parsed.tunerType = ParseNumber(option.value);
  if (!parsed.tunerType || !BoardForTuner(*parsed.tunerType)) {
    RejectOption(option, "the code of a tuner that an SAA713x board carries (0-21, 24-38, 40-48)");
  }
}

void ParseBoard(const OptionText& option, Parsed& parsed) {
  parsed.options.boardConfig = ParseNumber(option.value);
  if (!parsed.options.boardConfig)
    RejectOption(option, "a board code or a board configuration word");
}

void ParseEeprom(const OptionText& option, Parsed& parsed) {
  parsed.options.eeprom = ParseEepromImage(option);
  parsed.options.eepromPresent = parsed.options.eeprom.has_value();
}

void ParseTunerFilter(const OptionText& option, Parsed& parsed) {
  parsed.options.tunerFilter = ParseFlag(option);
}

void ParseRemote(const OptionText& option, Parsed& parsed) {
  if (option.value != "gpio" && option.value != "chip") RejectOption(option, "gpio or chip");
  parsed.options.remoteChip = option.value == "chip";
}

void ParseKey(const OptionText& option, Parsed& parsed) {
  const std::size_t colon = option.value.find(':');
  const auto kind = ParseNumber(option.value.substr(0, colon));
  const auto code =
      colon == std::string_view::npos ? std::nullopt : ParseNumber(option.value.substr(colon + 1));
  if (!kind || !code || *kind > 0xFF || *code > 0xFF) RejectOption(option, "KIND:CODE, two bytes");
  parsed.key = Key{static_cast<std::uint8_t>(*kind), static_cast<std::uint8_t>(*code)};
}

constexpr OptionParser<Parsed> kParsers[] = {
    {"tuner", ParseTuner},   {"board", ParseBoard},
    {"eeprom", ParseEeprom}, {"tunerfilter", ParseTunerFilter},
    {"remote", ParseRemote}, {"key", ParseKey},
};

}  // namespace

std::unique_ptr<VirtualCard> CreateSaa713x(const Saa713xKind& kind,
                                           std::span<const OptionText> options, Air air) {
  Parsed parsed;
  parsed.options.chipId = kind.chipId;
  parsed.options.friendlyName = kind.friendlyName;
  ParseOptions<Parsed>(options, kParsers, "an SAA713x card", parsed);

  if (parsed.tunerType) {
    parsed.options.tunerType = *parsed.tunerType;
  } else if (parsed.options.boardConfig) {
    // A board alone comes with the tuner that its maker put on it.
    const auto code = static_cast<std::uint8_t>(*parsed.options.boardConfig);
    if (const Saa713xBoard* board = BoardForCode(code)) parsed.options.tunerType = board->tunerType;
  }

  auto card = Saa713xCard::Create(parsed.options, std::move(air));
  if (parsed.key) card->PressKey(parsed.key->kind, parsed.key->code);
  return card;
}

}  // namespace zelk::virtual_cards
