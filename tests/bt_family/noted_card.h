// What the tests of both families of boards share beside the fixture: what a card does step by
// step, and what its board says of itself.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "api/library.h"
#include "platform/control.h"
#include "tests/support/bt_test.h"

namespace zelk::test {

using Strings = Lines;

// Steps of a software I2C transfer as the trace names them: the start, the stop, and bytes that
// are all acknowledged.
inline Strings Start(const CardSetUp& setUp) {
  return {!setUp.ioLibrary ? "i2c start" : setUp.cx2388x ? "io I2CSWStart" : "io I2CSWSTART"};
}
inline Strings Stop(const CardSetUp& setUp) {
  return {!setUp.ioLibrary ? "i2c stop" : setUp.cx2388x ? "io I2CSWStop" : "io I2CSWSTOP"};
}
inline Strings Sent(const CardSetUp& setUp, std::initializer_list<std::string> bytes) {
  Strings lines;
  for (const std::string& byte : bytes) {
    lines.push_back(!setUp.ioLibrary ? "i2c write-byte " + byte + " -> ack"
                    : setUp.cx2388x  ? "io I2CSWWrite " + byte + " -> 1"
                                     : "io I2CSWWRITE " + byte + " -> 1");
  }
  return lines;
}

class NotedCardTest : public BtTest {
 protected:
  // A card in TV mode with chips that note and answer.
  void PlugNoted(const CardSetUp& wanted, const Board& board = {}) {
    PlugTv(wanted, board);
    FitNotedChips();
    TakeTrace();
  }
  BtFamilyDevice& Device() {
    if (setUp.cx2388x) return *Slot<Bt88xDevice>();
    return *Slot<Bt878Device>();
  }
  // The milliseconds slept since the last call.
  std::uint64_t Slept() {
    const std::uint64_t before = std::exchange(slept_, host::SleptMilliseconds());
    return slept_ - before;
  }

  ZELK_HWInfo InfoOf(const CardSetUp& wanted, const Board& board) {
    Plug(wanted, board);
    EXPECT_EQ(Init(), S_OK);
    return Info();
  }

 private:
  std::uint64_t slept_ = 0;
};

}  // namespace zelk::test
