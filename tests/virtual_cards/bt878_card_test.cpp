// The Bt878 card's driver from outside: what the library's own tests do not ask of it. They drive
// every transfer, tuner module, EEPROM, lock and key through it.
#include "virtual_cards/cards/bt878_card.h"
#include "bt_client.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr ULONG kHardware = 0x11000002;
constexpr ULONG kSoftware = 0x11000003;
constexpr ULONG kWriteByHardware = 0x1100000A;

constexpr auto kNotReady = static_cast<HRESULT>(0x80070015);

struct Bt878Client : BtClient {
  using BtClient::BtClient;

  HRESULT WriteByte(BYTE byte) const { return Set(4, I2cBlock(0x1100000E).Byte(50, byte)); }
  // The byte, or -1 for a request that failed.
  int ReadByte() const {
    Block block = I2cBlock(0x1100000D);
    return Set(4, block) == S_OK && Get(4, block) == S_OK ? block.ByteAt(50) : -1;
  }
  // All bytes, the address first; how many were acknowledged.
  int Transfer(const std::vector<BYTE>& bytes) const {
    int acknowledged = 0;
    Set(4, I2cBlock(0x1100000B));  // start
    for (const BYTE byte : bytes) acknowledged += WriteByte(byte) == S_OK;
    Set(4, I2cBlock(0x1100000C));  // stop
    return acknowledged;
  }
  int ReadByHardware(BYTE address) const {
    Block block = I2cBlock(0x11000006).Byte(48, address);
    return Set(4, block) == S_OK && Get(4, block) == S_OK ? block.ByteAt(50) : -1;
  }
  HRESULT SetPin(ULONG pin, ULONG value) const {
    Block block = Block(328).Word(24, 8).Word(32, value).Word(40, pin);
    const HRESULT code = Set(2, block);
    EXPECT_EQ(Get(2, block), code);
    return code;
  }
  int ReadPins(ULONG first, ULONG last) const {
    Block block = Block(328).Word(24, 0x1000000B).Word(56, first).Word(60, last);
    return Set(2, block) == S_OK && Get(2, block) == S_OK ? static_cast<int>(block.WordAt(68)) : -1;
  }
};

using Bt878Test = CardModelTest<Bt878Card, Bt878Options>;

TEST_F(Bt878Test, EachEngineNeedsItsSetUp) {
  Plug({.tunerType = 13});
  const Bt878Client on(*card_);
  HRESULT code = S_OK;
  EXPECT_EQ(on.SetUp(kSoftware, 0), E_INVALIDARG);
  EXPECT_EQ(on.SetUp(kSoftware, 1000000), E_INVALIDARG);
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(kSoftware).Word(32, 100000)), E_INVALIDARG)
      << "without the property in the block";
  EXPECT_EQ(on.WriteByte(0xC2), kNotReady);
  EXPECT_EQ(on.ReadByte(), -1);
  on.SetUp(kSoftware);
  on.WriteByHardware(0x86, {0, 0x56, 0x30, 0x44}, code);
  EXPECT_EQ(code, kNotReady);
  EXPECT_EQ(on.ReadByHardware(0x86), -1);
  on.SetUp(kHardware);
  EXPECT_EQ(on.Transfer({0xA0, 0x41}), 2) << "steps take the lines over in either mode";
  on.WriteByHardware(0xC2, {}, code);
  EXPECT_EQ(code, S_OK) << "an address alone";
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(kWriteByHardware).Word(116, 65)), E_INVALIDARG);
  card_->Refuse("i2c write-byte C2", static_cast<HRESULT>(14));
  EXPECT_EQ(on.Transfer({0xC2, 0xA0}), 0) << "after a byte that fails there is no address any more";
}

// Only a block of the right length holds a command; any other is a request like those of the other
// drivers.
TEST_F(Bt878Test, UnheardAndUnknownCommands) {
  Plug({});
  const Bt878Client on(*card_);
  on.SetUp(kHardware);
  Listen();
  HRESULT code = S_OK;
  Block block = on.WriteByHardware(0x96, {0x1B}, code);
  EXPECT_EQ(code, E_FAIL);
  EXPECT_EQ(on.Get(4, block), E_FAIL);
  EXPECT_EQ(on.ReadByHardware(0x96), -1);
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(0x11000018)), E_INVALIDARG);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("i2c write 96: 1B -> nak", "i2c result -> 80004005", "i2c order read 96",
                          "i2c read 96 -> nak", "i2c command 11000018 -> 80070057"));
  EXPECT_EQ(on.capture->Set(kZelkCapture, 4, block.Data(), 120, block.Data(), 116), E_INVALIDARG);
  EXPECT_EQ(on.capture->Get(kZelkCapture, 4, block.Data(), 120, block.Data(), 120, nullptr),
            E_POINTER);
}

TEST_F(Bt878Test, PinsAreTheChipsUntilTheyAreInputs) {
  Plug({});
  const Bt878Client on(*card_);
  card_->PressKey(0xA7);
  EXPECT_EQ(on.ReadPins(15, 23), 0) << "driven by the chip";
  for (ULONG pin = 15; pin <= 23; ++pin) on.SetPin(pin, 0);
  EXPECT_EQ(on.SetPin(15, 1), S_OK);
  EXPECT_EQ(on.ReadPins(15, 17), 6);
  EXPECT_EQ(on.ReadPins(15, 24), -1);
  EXPECT_EQ(on.ReadPins(5, 4), -1);
  EXPECT_EQ(on.SetPin(24, 0), E_INVALIDARG);
}

TEST_F(Bt878Test, DriverSetsTheDemodulatorUp) {
  Plug({.tunerType = 14});
  EXPECT_EQ(BtClient(*card_).tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), E_INVALIDARG);
  Plug({.tunerType = 15}, AirWith(205250, AnalogVideo_SECAM_L));
  const BtClient on(*card_);
  const auto locks = [&] {
    EXPECT_EQ(on.Tune(205250000, 33), S_OK);
    Sleep(60);
    return on.Locked();
  };
  EXPECT_FALSE(locks()) << "negative modulation at first";
  EXPECT_EQ(on.tvTuner->put_CountryCode(33), S_OK);
  EXPECT_TRUE(locks());
  for (const ULONG standard : {AnalogVideo_PAL_D, AnalogVideo_SECAM_L}) {
    Block block = Block(32).Word(24, standard);
    SetProperty(on.tuner.Get(), kPropsetTuner, KSPROPERTY_TUNER_STANDARD, block.Data(), 32);
    EXPECT_EQ(locks(), standard == AnalogVideo_SECAM_L);
  }
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
  EXPECT_EQ(on.Tune(98000000, 33), S_OK);
  EXPECT_EQ(card_->TunedKHz(), 98000);
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_TV), S_OK);
  EXPECT_TRUE(locks());
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_DSS), E_INVALIDARG);
  EXPECT_EQ(on.Tune(1000000000, 49), E_INVALIDARG);
}

}  // namespace
}  // namespace zelk::virtual_cards
