// Buses that do not acknowledge, from the start or half way.
#include "platform/control.h"
#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

using virtual_cards::EepromState;

class BtFault : public BtTest {};

// An EEPROM that dies after any number of transfers: initialisation ends, and soon.
TEST_F(BtFault, DyingEeprom) {
  for (const CardSetUp& wanted : kSetUps) {
    for (unsigned transfers = 0; transfers < 24; ++transfers) {
      SCOPED_TRACE(std::string(wanted.name) + " after " + std::to_string(transfers));
      Plug(wanted, {.eepromState = EepromState::kDying, .eepromTransfers = transfers});
      const auto before = host::SleptMilliseconds();
      // At most the four reads' addressing, ten times each.
      const HRESULT result = Init();
      EXPECT_LT(host::SleptMilliseconds() - before, 4 * 10 * 60u);
      if (wanted.cx2388x) {
        EXPECT_EQ(result, S_OK);
      }
      std::uint8_t byte = 0xAA;
      ZELK_ReadEEPROM(0x42, &byte);
    }
  }
}

// Without a chip at the tuner's and demodulators' addresses each operation answers as the transport
// lets it.
TEST_F(BtFault, NobodyAcknowledges) {
  for (const CardSetUp& wanted : {kBt878, kBt878Io, kCx2388x, kCx2388xIo}) {
    for (const std::uint32_t type : {1u, 13u}) {
      SCOPED_TRACE(std::string(wanted.name) + " tuner type " + std::to_string(type));
      PlugTv(wanted, {.tunerType = type});
      for (const int address : {0xC0, 0xC2, 0x86, 0x96}) {
        card->FitChip(static_cast<std::uint8_t>(address), nullptr);
      }
      // Only the driver of the CX2388x judges a transfer as a whole.
      const bool judges = wanted.cx2388x && !wanted.ioLibrary;
      EXPECT_EQ(ZELK_SetFreq(175250, nullptr), judges ? E_FAIL : S_OK);
      std::uint32_t present = 77;
      EXPECT_EQ(ZELK_IsSignalPresent(&present, nullptr, nullptr), judges ? E_FAIL : S_OK);
      EXPECT_EQ(ScanTv(), std::vector<std::uint32_t>{});
      // The Bt878's hardware engine reports its demodulator.
      const bool hears = !judges && (wanted.ioLibrary || type == 1);
      EXPECT_EQ(ZELK_FMInit(), judges ? E_FAIL : S_OK);
      EXPECT_EQ(ZELK_FMSetAudioMode(0), hears ? S_OK : E_FAIL);
    }
  }
}

}  // namespace
}  // namespace zelk::test
