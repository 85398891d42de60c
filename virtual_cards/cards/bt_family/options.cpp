#include "virtual_cards/cards/bt_family/options.h"

#include <optional>
#include <string>
#include <utility>

#include "virtual_cards/cards/bt878_card.h"
#include "virtual_cards/cards/cx2388x_card.h"

namespace zelk::virtual_cards {

namespace {

template <class Options>
struct Parsed {
  Options options;
  std::optional<std::uint8_t> key;
};

// Which types a family carries is for the card to say.
template <class Options>
void ParseTuner(const OptionText& option, Parsed<Options>& parsed) {
  const auto type = ParseNumber(option.value);
  if (!type) RejectOption(option, "a tuner type code");
  parsed.options.tunerType = *type;
}

template <class Options>
void ParseEeprom(const OptionText& option, Parsed<Options>& parsed) {
  struct Row {
    std::string_view value;
    EepromState state;
  };
  constexpr Row kStates[] = {{"none", EepromState::kMissing},
                             {"blank", EepromState::kBlank},
                             {"dying", EepromState::kDying}};
  for (const Row& row : kStates) {
    if (row.value != option.value) continue;
    parsed.options.eepromState = row.state;
    return;
  }
  parsed.options.eeprom = ParseEepromImage(option);
}

template <class Options>
void ParseTunerFilter(const OptionText& option, Parsed<Options>& parsed) {
  parsed.options.tunerFilter = ParseFlag(option);
}

template <class Options>
void ParseKey(const OptionText& option, Parsed<Options>& parsed) {
  const auto code = ParseNumber(option.value);
  if (!code || *code > 0xFF) RejectOption(option, "the code of a key, one byte");
  parsed.key = static_cast<std::uint8_t>(*code);
}

template <class Options>
constexpr OptionParser<Parsed<Options>> kParsers[] = {
    {"tuner", ParseTuner<Options>},
    {"eeprom", ParseEeprom<Options>},
    {"tunerfilter", ParseTunerFilter<Options>},
    {"key", ParseKey<Options>},
};

template <class Card, class Options>
std::unique_ptr<VirtualCard> Create(const BtKind& kind, std::span<const OptionText> texts, Air air,
                                    std::string_view cardName) {
  Parsed<Options> parsed;
  parsed.options.ioLibrary = kind.ioLibrary;
  ParseOptions<Parsed<Options>>(texts, kParsers<Options>, cardName, parsed);
  auto card = Card::Create(parsed.options, std::move(air));
  if (parsed.key) card->PressKey(*parsed.key);
  return card;
}

}  // namespace

std::unique_ptr<VirtualCard> CreateBt878(const BtKind& kind, std::span<const OptionText> options,
                                         Air air) {
  return Create<Bt878Card, Bt878Options>(kind, options, std::move(air), "a Bt878 card");
}

std::unique_ptr<VirtualCard> CreateCx2388x(const BtKind& kind, std::span<const OptionText> options,
                                           Air air) {
  return Create<Cx2388xCard, Cx2388xOptions>(kind, options, std::move(air), "a CX2388x card");
}

}  // namespace zelk::virtual_cards
