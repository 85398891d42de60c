// Tests with a Bt878 or CX2388x card, in any of the four set-ups in which they come.
#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/card_test.h"
#include "tests/support/told_chip.h"
#include "virtual_cards/cards/bt878_card.h"
#include "virtual_cards/cards/cx2388x_card.h"

namespace zelk::test {

struct CardSetUp {
  const char* name;
  bool cx2388x;
  bool ioLibrary;
  bool tunerFilter = false;

  const char* PllAddress() const { return cx2388x ? "C0" : "C2"; }
  const char* Log() const { return cx2388x ? "zelkapi_BT88X.log" : "zelkapi_BT878.log"; }
  const char* Library() const { return cx2388x ? "PioGate880.dll" : "PioGate.dll"; }
  friend void PrintTo(const CardSetUp& setUp, std::ostream* out) { *out << setUp.name; }
};

inline constexpr CardSetUp kBt878 = {"bt878", false, false};
inline constexpr CardSetUp kBt878Tuner = {"bt878 with a tuner filter", false, false, true};
inline constexpr CardSetUp kBt878Io = {"bt878-io", false, true};
inline constexpr CardSetUp kCx2388x = {"cx2388x", true, false};
inline constexpr CardSetUp kCx2388xTuner = {"cx2388x with a tuner filter", true, false, true};
inline constexpr CardSetUp kCx2388xIo = {"cx2388x-io", true, true};
inline constexpr CardSetUp kSetUps[] = {kBt878,   kBt878Tuner,   kBt878Io,
                                        kCx2388x, kCx2388xTuner, kCx2388xIo};

// A chip that also notes what is written to it: "C2: 0D 62 CE 90".
class NotedChip final : public ToldChip {
 public:
  NotedChip(std::string name, std::vector<std::string>& notes)
      : name_(std::move(name)), notes_(notes) {
    Tell({0});
  }

  bool Acknowledges(virtual_cards::I2cDirection) override { return answering; }
  bool Write(std::span<const std::uint8_t> bytes) override;
  void Tell(const std::deque<std::uint8_t>& bytes) { ToldChip::Tell({bytes.begin(), bytes.end()}); }

  bool answering = true;

 private:
  const std::string name_;
  std::vector<std::string>& notes_;
};

class BtTest : public CardFixture {
 protected:
  struct Board {
    std::uint32_t tunerType = 1;
    std::optional<EepromImage> eeprom = std::nullopt;
    virtual_cards::EepromState eepromState = virtual_cards::EepromState::kGood;
    unsigned eepromTransfers = 2;
    std::vector<std::string> missingEntryPoints = {};
    bool initFails = false;
    bool i2cFails = false;
    std::string friendlyName = {};  // the family's usual one
  };

  // Plugs a card in, in place of the one that was there.
  virtual_cards::BtCard& Plug(const CardSetUp& setUp, const Board& board,
                              virtual_cards::Air air = {});
  // The same, initialised and in TV or FM mode.
  virtual_cards::BtCard& PlugTv(const CardSetUp& wanted, const Board& board,
                                virtual_cards::Air air = {}) {
    return PlugInto(ZELK_TVInit, wanted, board, std::move(air));
  }
  virtual_cards::BtCard& PlugFm(const CardSetUp& wanted, const Board& board,
                                virtual_cards::Air air = {}) {
    return PlugInto(ZELK_FMInit, wanted, board, std::move(air));
  }
  // Puts chips that note and answer onto the tuner's and both demodulators' addresses.
  void FitNotedChips();
  std::vector<std::string> TakeNotes() { return std::exchange(notes, {}); }

  std::vector<std::string> TakeLog() { return CardFixture::TakeLog(setUp.Log()); }

  virtual_cards::BtCard* card = nullptr;
  CardSetUp setUp = kBt878;
  std::vector<std::string> notes;
  std::optional<NotedChip> pll, demodulator, silicon;

 private:
  virtual_cards::BtCard& PlugInto(HRESULT(ZELK_CALL* mode)(), const CardSetUp& wanted,
                                  const Board& board, virtual_cards::Air air);
};

}  // namespace zelk::test
