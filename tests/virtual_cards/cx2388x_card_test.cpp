// The CX2388x card's driver from outside: what the library's own tests do not ask of it.
#include "virtual_cards/cards/cx2388x_card.h"
#include "bt_client.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr ULONG kHardware = 0x11000002;

struct Cx2388xClient : BtClient {
  using BtClient::BtClient;

  // One byte, or -1 for a transfer that failed by its status. No call fails.
  int Read(BYTE address) const {
    Block block = I2cBlock(0x11000006);
    EXPECT_EQ(Set(4, I2cBlock(0x11000018).Byte(48, address)), S_OK);
    EXPECT_EQ(Get(4, block), S_OK);
    return block.WordAt(28) == 0 ? block.ByteAt(50) : -1;
  }
};

using Cx2388xTest = CardModelTest<Cx2388xCard, Cx2388xOptions>;

TEST_F(Cx2388xTest, FailedTransfersShowInTheStatusWordAlone) {
  Plug({});
  const Cx2388xClient on(*card_);
  HRESULT code = S_OK;
  EXPECT_EQ(on.SetUp(0x11000003), E_INVALIDARG) << "the one engine is the hardware";
  on.SetUp(kHardware);
  Listen();
  EXPECT_EQ(on.WriteByHardware(0x96, {0x0D, 0x62}, code).WordAt(28), 1u);
  EXPECT_EQ(code, S_OK);
  EXPECT_EQ(on.Read(0x96), -1);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("i2c write 96: 0D 62 -> nak", "i2c select 96", "i2c read 96 -> nak"));
}

TEST_F(Cx2388xTest, RegistersAreSelectedAndThenRead) {
  Plug({});
  const Cx2388xClient on(*card_);
  // The last register is none.
  for (const auto& [selected, read, result] : {std::tuple(0x350010u, 0x350010u, S_OK),
                                               {0x350010u, 0x350018u, E_INVALIDARG},
                                               {0x35001Cu, 0x35001Cu, E_INVALIDARG}}) {
    Block block = Block(40).Word(24, 0x30000003).Word(28, read);
    EXPECT_EQ(on.Set(6, Block(40).Word(24, 0x30000001).Word(28, selected)), S_OK);
    EXPECT_EQ(on.Get(6, block), result);
  }
}

// Where no driver of its own sets the demodulator up, the capture driver has done so at its start.
TEST_F(Cx2388xTest, DemodulatorIsSetUpAtTheStart) {
  const std::tuple<std::uint32_t, LONG, unsigned, BYTE> cases[] = {
      {12, AnalogVideo_NTSC_M, 45750, 0x42},
      {14, AnalogVideo_PAL_B, 38900, 0x22},
      {17, AnalogVideo_NTSC_M, 58750, 0x42},
      {21, AnalogVideo_PAL_B, 38900, 0x02},
      {24, AnalogVideo_NTSC_M, 45750, 0x02}};
  for (const auto& [type, standard, ifKHz, band] : cases) {
    Plug({.tunerType = type}, AirWith(205250, standard));
    const Cx2388xClient on(*card_);
    HRESULT code = S_OK;
    on.SetUp(kHardware);
    on.Read(0x86);  // ends the power-on state
    const unsigned divider = (205250 + ifKHz) * 16 / 1000;
    const auto high = static_cast<BYTE>(divider >> 8);
    on.WriteByHardware(0xC0, {high, static_cast<BYTE>(divider), 0xCE, band}, code);
    Sleep(60);
    EXPECT_TRUE(on.Locked()) << type;
    EXPECT_EQ(on.Read(0x86) & 0xE0, 0xE0) << "sound, picture and carrier of " << type;
  }
}

}  // namespace
}  // namespace zelk::virtual_cards
