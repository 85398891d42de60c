#include "virtual_cards/cards/saa713x/options.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
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

[[noreturn]] void Reject(const OptionText& option, std::string_view wanted) {
  throw std::invalid_argument(std::string(option.key) + "=" + std::string(option.value) +
                              ": wanted " + std::string(wanted));
}

// Decimal, or hexadecimal behind 0x.
std::optional<std::uint32_t> Number(std::string_view text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

void ParseTuner(const OptionText& option, Parsed& parsed) {
  parsed.tunerType = Number(option.value);
  if (!parsed.tunerType || !BoardForTuner(*parsed.tunerType)) {
    Reject(option, "the code of a tuner that an SAA713x board carries (0-21, 24-38, 40-48)");
  }
}

void ParseBoard(const OptionText& option, Parsed& parsed) {
  parsed.options.boardConfig = Number(option.value);
  if (!parsed.options.boardConfig) Reject(option, "a board code or a board configuration word");
}

void ParseEeprom(const OptionText& option, Parsed& parsed) {
  if (option.value == "none") {
    parsed.options.eepromPresent = false;
    return;
  }
  std::ifstream file(std::string(option.value), std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  Eeprom::Image image;
  if (!file.is_open() || content.size() != image.size()) {
    Reject(option, "\"none\" or a readable file of 256 bytes");
  }
  std::copy(content.begin(), content.end(), image.begin());
  parsed.options.eeprom = image;
}

void ParseTunerFilter(const OptionText& option, Parsed& parsed) {
  if (option.value != "0" && option.value != "1") Reject(option, "0 or 1");
  parsed.options.tunerFilter = option.value == "1";
}

void ParseRemote(const OptionText& option, Parsed& parsed) {
  if (option.value != "gpio" && option.value != "chip") Reject(option, "gpio or chip");
  parsed.options.remoteChip = option.value == "chip";
}

void ParseKey(const OptionText& option, Parsed& parsed) {
  const std::size_t colon = option.value.find(':');
  const auto kind = Number(option.value.substr(0, colon));
  const auto code =
      colon == std::string_view::npos ? std::nullopt : Number(option.value.substr(colon + 1));
  if (!kind || !code || *kind > 0xFF || *code > 0xFF) Reject(option, "KIND:CODE, two bytes");
  parsed.key = Key{static_cast<std::uint8_t>(*kind), static_cast<std::uint8_t>(*code)};
}

struct KeyParser {
  std::string_view key;
  void (*parse)(const OptionText& option, Parsed& parsed);
};
constexpr KeyParser kParsers[] = {
    {"tuner", ParseTuner},   {"board", ParseBoard},
    {"eeprom", ParseEeprom}, {"tunerfilter", ParseTunerFilter},
    {"remote", ParseRemote}, {"key", ParseKey},
};

void Parse(const OptionText& option, Parsed& parsed) {
  for (const KeyParser& parser : kParsers) {
    if (parser.key == option.key) return parser.parse(option, parsed);
  }
  std::string known;
  for (const KeyParser& parser : kParsers) {
    known += (known.empty() ? "" : ", ") + std::string(parser.key);
  }
  throw std::invalid_argument("unknown option \"" + std::string(option.key) +
                              "\" of an SAA713x card; there are " + known);
}

}  // namespace

std::unique_ptr<VirtualCard> CreateSaa713x(const Saa713xKind& kind,
                                           const std::vector<OptionText>& options, Air air) {
  Parsed parsed;
  parsed.options.chipId = kind.chipId;
  parsed.options.friendlyName = kind.friendlyName;
  for (const OptionText& option : options) Parse(option, parsed);

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
