// The kinds of virtual cards there are, by name.
#include <functional>
#include <span>
#include <stdexcept>
#include <utility>

#include "virtual_cards/cards/bt_family/options.h"
#include "virtual_cards/cards/ql2/options.h"
#include "virtual_cards/cards/saa713x/options.h"
#include "virtual_cards/cards/virtual_card.h"

namespace zelk::virtual_cards {

namespace {

// "a,b,c" into its parts; an empty text has none.
std::vector<std::string_view> Split(std::string_view text) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    parts.push_back(text.substr(0, comma));
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  }
  return parts;
}

std::vector<OptionText> SplitOptions(std::string_view text) {
  std::vector<OptionText> options;
  for (const std::string_view part : Split(text)) {
    const std::size_t equals = part.find('=');
    if (equals == std::string_view::npos) {
      throw std::invalid_argument("\"" + std::string(part) + "\" is not of the form key=value");
    }
    options.push_back({part.substr(0, equals), part.substr(equals + 1)});
  }
  return options;
}

// A kind together with the function of its family that makes such a card.
struct Entry {
  CardKind kind;
  std::function<std::unique_ptr<VirtualCard>(std::span<const OptionText>, Air)> create;
};

// `kinds` is a family's table of kinds; each has a name and a description.
template <class Kind, std::size_t Count, class Create>
void AddFamily(std::vector<Entry>& entries, const Kind (&kinds)[Count], Create create) {
  for (const Kind& kind : kinds) {
    entries.push_back({{std::string(kind.name), std::string(kind.description)},
                       [&kind, create](std::span<const OptionText> options, Air air) {
                         return create(kind, options, std::move(air));
                       }});
  }
}

std::vector<Entry> Entries() {
  std::vector<Entry> entries;
  AddFamily(entries, kSaa713xKinds, CreateSaa713x);
  AddFamily(entries, kBt878Kinds, CreateBt878);
  AddFamily(entries, kCx2388xKinds, CreateCx2388x);
  AddFamily(entries, kQl2Kinds, CreateQl2);
  return entries;
}

}  // namespace

std::vector<CardKind> CardKinds() {
  std::vector<CardKind> kinds;
  for (Entry& entry : Entries()) kinds.push_back(std::move(entry.kind));
  return kinds;
}

std::unique_ptr<VirtualCard> CreateCard(std::string_view description, Air air) {
  const std::size_t comma = description.find(',');
  const std::string_view name = description.substr(0, comma);
  const std::string_view rest =
      comma == std::string_view::npos ? std::string_view{} : description.substr(comma + 1);
  std::string known;
  for (const Entry& entry : Entries()) {
    if (entry.kind.name == name) return entry.create(SplitOptions(rest), std::move(air));
    known += (known.empty() ? "" : ", ") + entry.kind.name;
  }
  throw std::invalid_argument("unknown card \"" + std::string(name) + "\"; there are " + known);
}

}  // namespace zelk::virtual_cards
