// The CX2388x card's driver from outside: what the library's own tests do not ask of it.
#include "virtual_cards/cards/cx2388x_card.h"
#include "bt_client.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr ULONG kHardware = 0x11000002;
constexpr auto kNotReady = static_cast<HRESULT>(0x80070015);

struct Cx2388xClient : BtClient {
  using BtClient::BtClient;

  // True when the driver reports the transfer to have gone well; `code` gets the call's own.
  bool Write(BYTE address, const std::vector<BYTE>& bytes, HRESULT& code) const {
    const Block block = WriteByHardware(address, bytes, code);
    return code == S_OK && block.WordAt(28) == 0;
  }
  // One byte, or -1 for a failed transfer.
  int Read(BYTE address, HRESULT& code) const {
    code = Set(4, I2cBlock(0x11000018).Byte(48, address));
    if (code != S_OK) return -1;
    Block block = I2cBlock(0x11000006);
    code = Get(4, block);
    return code == S_OK && block.WordAt(28) == 0 ? block.ByteAt(50) : -1;
  }
  HRESULT SelectRegister(ULONG address) const {
    return Set(6, Block(40).Word(24, 0x30000001).Word(28, address));
  }
  HRESULT ReadRegister(ULONG address) const {
    Block block = Block(40).Word(24, 0x30000003).Word(28, address);
    return Get(6, block);
  }
};

using Cx2388xTest = CardModelTest<Cx2388xCard, Cx2388xOptions>;

TEST_F(Cx2388xTest, FailedTransfersShowInTheStatusWordAlone) {
  Plug({});
  const Cx2388xClient on(*card_);
  HRESULT code = S_OK;
  EXPECT_EQ(on.Read(0xC0, code), -1);
  EXPECT_EQ(code, kNotReady) << "before the engine's set-up";
  EXPECT_EQ(on.SetUp(0x11000003), E_INVALIDARG) << "the one engine is the hardware";
  on.SetUp(kHardware);
  EXPECT_TRUE(on.Write(0xC0, {}, code)) << "an address alone";
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(0x1100000A).Byte(48, 0xC0).Word(116, 65)), E_INVALIDARG);

  Listen();
  EXPECT_FALSE(on.Write(0x96, {0x0D, 0x62}, code));
  EXPECT_EQ(code, S_OK);
  EXPECT_EQ(on.Read(0x96, code), -1);
  EXPECT_EQ(code, S_OK);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("i2c write 96: 0D 62 -> nak", "i2c select 96", "i2c read 96 -> nak"));
  // A refusal that is no failure's code is the bus's.
  card_->Refuse("i2c read C0", static_cast<HRESULT>(14));
  card_->Refuse("i2c write C0", E_OUTOFMEMORY);
  EXPECT_EQ(on.Read(0xC0, code), -1);
  EXPECT_EQ(code, S_OK);
  on.WriteByHardware(0xC0, {1}, code);
  EXPECT_EQ(code, E_OUTOFMEMORY);
}

TEST_F(Cx2388xTest, RegistersAreSelectedAndThenRead) {
  Plug({});
  const Cx2388xClient on(*card_);
  EXPECT_EQ(on.SelectRegister(0x350010), S_OK);
  EXPECT_EQ(on.ReadRegister(0x350010), S_OK);
  EXPECT_EQ(on.ReadRegister(0x350018), E_INVALIDARG) << "another register is selected";
  EXPECT_EQ(on.SelectRegister(0x35001C), S_OK);
  EXPECT_EQ(on.ReadRegister(0x35001C), E_INVALIDARG) << "no such register";
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
    on.Read(0x86, code);  // ends the power-on state
    const unsigned divider = (205250 + ifKHz) * 16 / 1000;
    const auto high = static_cast<BYTE>(divider >> 8);
    EXPECT_TRUE(on.Write(0xC0, {high, static_cast<BYTE>(divider), 0xCE, band}, code));
    Sleep(60);
    EXPECT_TRUE(on.Locked()) << type;
    EXPECT_EQ(on.Read(0x86, code) & 0xE0, 0xE0) << "sound, picture and carrier of " << type;
  }
}

}  // namespace
}  // namespace zelk::virtual_cards
