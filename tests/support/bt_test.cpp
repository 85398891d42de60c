#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

std::string Hex(std::uint8_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 15]};
}

template <class Options, class Board>
Options MakeOptions(const CardSetUp& setUp, const Board& board) {
  Options options;
  options.tunerType = board.tunerType;
  options.ioLibrary = setUp.ioLibrary;
  options.tunerFilter = setUp.tunerFilter;
  options.eeprom = board.eeprom;
  options.eepromState = board.eepromState;
  options.eepromTransfers = board.eepromTransfers;
  options.missingEntryPoints = board.missingEntryPoints;
  options.initFails = board.initFails;
  options.i2cFails = board.i2cFails;
  if (!board.friendlyName.empty()) options.friendlyName = board.friendlyName;
  return options;
}

}  // namespace

bool NotedChip::Write(std::span<const std::uint8_t> bytes) {
  std::string note = name_ + ":";
  for (const std::uint8_t byte : bytes) note.append(" ").append(Hex(byte));
  notes_.push_back(note);
  return true;
}

virtual_cards::BtCard& BtTest::Plug(const CardSetUp& wanted, const Board& board,
                                    virtual_cards::Air air) {
  using namespace virtual_cards;
  Unplug();
  setUp = wanted;
  const auto plug = [&](auto made) {
    card = made.get();
    plugged = std::move(made);
  };
  if (setUp.cx2388x) {
    plug(Cx2388xCard::Create(MakeOptions<Cx2388xOptions>(setUp, board), std::move(air)));
  } else {
    plug(Bt878Card::Create(MakeOptions<Bt878Options>(setUp, board), std::move(air)));
  }
  return *card;
}

virtual_cards::BtCard& BtTest::PlugInto(HRESULT(ZELK_CALL* mode)(), const CardSetUp& wanted,
                                        const Board& board, virtual_cards::Air air) {
  Plug(wanted, board, std::move(air));
  EXPECT_EQ(Init(), S_OK) << setUp.name << " tuner type " << board.tunerType;
  EXPECT_EQ(mode(), S_OK);
  TakeLog();
  return *card;
}

void BtTest::FitNotedChips() {
  card->FitChip(setUp.cx2388x ? 0xC0 : 0xC2, &pll.emplace(setUp.PllAddress(), notes));
  card->FitChip(0x86, &demodulator.emplace("86", notes));
  card->FitChip(0x96, &silicon.emplace("96", notes));
  notes.clear();
}

}  // namespace zelk::test
