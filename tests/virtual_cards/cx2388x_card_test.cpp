// The CX2388x card's driver from outside: hardware I2C, registers, EEPROM, locks, tuner filter.
#include "virtual_cards/cards/cx2388x_card.h"
#include "bt_client.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr ULONG kHardware = 0x11000002;
constexpr auto kNotReady = static_cast<HRESULT>(0x80070015);

struct Cx2388xClient : BtClient {
  using BtClient::BtClient;

  // True when the driver reports the transfer to have gone well.
  bool Write(BYTE address, const std::vector<BYTE>& bytes) const {
    HRESULT code = S_OK;
    const Block block = WriteByHardware(address, bytes, code);
    return code == S_OK && block.WordAt(28) == 0;
  }
  // One byte, or -1 for a failed transfer; `code` gets the call's own.
  int Read(BYTE address, HRESULT& code) const {
    code = Set(4, I2cBlock(0x11000018).Byte(48, address));
    if (code != S_OK) return -1;
    Block block = I2cBlock(0x11000006);
    code = Get(4, block);
    return code == S_OK && block.WordAt(28) == 0 ? block.ByteAt(50) : -1;
  }
  int Read(BYTE address) const {
    HRESULT code = S_OK;
    return Read(address, code);
  }
  int ReadRegister(ULONG address) const {
    if (Set(6, Block(40).Word(24, 0x30000001).Word(28, address)) != S_OK) return -1;
    Block block = Block(40).Word(24, 0x30000003).Word(28, address);
    return Get(6, block) == S_OK ? static_cast<int>(block.WordAt(32)) : -1;
  }
  int ReadEeprom(BYTE address) const {
    if (Set(104, Block(32).Byte(24, address)) != S_OK) return -1;
    Block block(32);
    return Get(105, block) == S_OK ? block.ByteAt(24) : -1;
  }
};

using Cx2388xTest = BtCardTest<Cx2388xCard, Cx2388xOptions>;

TEST_F(Cx2388xTest, TunesAndReads) {
  Plug({.tunerType = 0}, AirWith(175250));
  const Cx2388xClient on(*card_);
  HRESULT code = S_OK;
  EXPECT_FALSE(on.Write(0xC0, {0x0D, 0x62, 0xCE, 0x90}));
  EXPECT_EQ(on.Read(0xC0, code), -1);
  EXPECT_EQ(code, kNotReady);
  EXPECT_EQ(on.SetUp(kHardware), S_OK);
  EXPECT_TRUE(on.Write(0xC0, {0x0D, 0x62, 0xCE, 0x90}));
  EXPECT_EQ(card_->TunedKHz(), 175225);
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_EQ(on.Read(0xC0) & 0x47, 0x42);
  EXPECT_TRUE(on.Write(0xC0, {}));
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(0x1100000A).Byte(48, 0xC0).Word(116, 65)), E_INVALIDARG);
}

TEST_F(Cx2388xTest, FailedTransfersShowInTheStatusWordAlone) {
  Plug({});
  const Cx2388xClient on(*card_);
  on.SetUp(kHardware);
  HRESULT code = E_FAIL;
  const Block block = on.WriteByHardware(0xC2, {0x0D, 0x62}, code);
  EXPECT_EQ(code, S_OK);
  EXPECT_EQ(block.WordAt(28), 1u) << "these boards' tuners are at 0xC0";
  EXPECT_EQ(on.Read(0xC2, code), -1);
  EXPECT_EQ(code, S_OK);

  card_->Refuse("i2c read C0", static_cast<HRESULT>(14));
  card_->Refuse("i2c write C0", E_OUTOFMEMORY);
  EXPECT_EQ(on.Read(0xC0, code), -1);
  EXPECT_EQ(code, S_OK);
  on.WriteByHardware(0xC0, {1}, code);
  EXPECT_EQ(code, E_OUTOFMEMORY);
}

TEST_F(Cx2388xTest, EepromsInEveryCondition) {
  struct Case {
    std::uint32_t tunerType;
    int tunerByte;
  };
  for (const Case& one :
       {Case{4, 4}, Case{14, 0x0A}, Case{13, 0x11}, Case{24, 0x20}, Case{30, 0x85}}) {
    Plug({.tunerType = one.tunerType});
    EXPECT_EQ(Cx2388xClient(*card_).ReadEeprom(6), one.tunerByte);
    EXPECT_EQ(Cx2388xClient(*card_).ReadEeprom(0x42), 0);
  }
  for (const std::uint32_t none : {18u, 19u, 22u, 31u, 40u, 42u})
    EXPECT_THROW(Plug({.tunerType = none}), std::invalid_argument) << none;

  Plug({.eepromState = EepromState::kBlank});
  EXPECT_EQ(Cx2388xClient(*card_).ReadEeprom(6), 0xFF);
  Plug({.eepromState = EepromState::kMissing});
  EXPECT_EQ(Cx2388xClient(*card_).ReadEeprom(6), -1);
  Plug({.eepromState = EepromState::kDying});
  EXPECT_EQ(Cx2388xClient(*card_).ReadEeprom(6), 1);
  EXPECT_EQ(Cx2388xClient(*card_).ReadEeprom(6), -1);
}

TEST_F(Cx2388xTest, RemoteControlInAGpioRegister) {
  Plug({});
  const Cx2388xClient on(*card_);
  EXPECT_EQ(on.ReadRegister(0x350018), 0);
  card_->PressKey(0x8F);
  EXPECT_EQ(on.ReadRegister(0x350018), 0x1F);
  card_->PressKey(0x62);
  EXPECT_EQ(on.ReadRegister(0x350018), 0x62);
  EXPECT_EQ(on.ReadRegister(0x350010), 0);
  EXPECT_EQ(on.ReadRegister(0x350014), 0);
  EXPECT_EQ(on.ReadRegister(0x35001C), -1);
  Block other = Block(40).Word(24, 0x30000003).Word(28, 0x350018);
  EXPECT_EQ(on.Get(6, other), E_INVALIDARG) << "another register is selected";
  card_->ReleaseKey();
  EXPECT_EQ(on.ReadRegister(0x350018), 0);
}

TEST_F(Cx2388xTest, TraceOfEveryRequest) {
  Plug({.tunerType = 0, .tunerFilter = true}, AirWith(175250));
  const Cx2388xClient on(*card_);
  Listen();
  on.SetUp(kHardware);
  on.Write(0xC0, {0x0D, 0x62, 0xCE, 0x90});
  Sleep(60);
  on.Read(0xC0);
  on.Write(0x96, {0x00});
  on.Read(0x96);
  on.SetUp(0x11000003);
  on.ReadRegister(0x350018);
  on.ReadEeprom(6);
  on.SetLock(106, 1);
  on.SetLock(103, 1);
  on.GetLock(103);
  on.GetLock(106);
  on.tvTuner->put_Mode(AMTUNER_MODE_TV);
  on.tvTuner->put_Channel(9, 0, 0);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("i2c setup hardware 100000", "i2c write C0: 0D 62 CE 90", "i2c select C0",
                          "i2c read C0 -> C2", "i2c write 96: 00 -> nak", "i2c select 96",
                          "i2c read 96 -> nak", "i2c command 11000003 -> 80070057",
                          "register select 350018", "register read 350018 -> 0", "eeprom select 06",
                          "eeprom read 06 -> 00", "lock 0 := 1", "lock 1 := 1", "lock 1 -> 1",
                          "lock 0 -> 1", "tuner mode 1", "tuner channel 9 0 0"));
  EXPECT_TRUE(card_->Lock(0));
  card_->Refuse("eeprom select", E_FAIL);
  EXPECT_EQ(on.ReadEeprom(6), -1);
  card_->Refuse("register read 350018", E_FAIL);
  EXPECT_EQ(on.ReadRegister(0x350018), -1);
  EXPECT_EQ(on.ReadRegister(0x350010), 0);
}

TEST_F(Cx2388xTest, DriverTunesTelevisionAndRadio) {
  Air air = AirWith(205250, AnalogVideo_NTSC_M);
  air.fm = FmAirWith(98000).fm;
  Plug({.tunerType = 13, .tunerFilter = true}, air);
  const Cx2388xClient on(*card_);
  on.SetUp(kHardware);
  EXPECT_EQ(on.Tune(205250000, 1), S_OK);
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
  EXPECT_EQ(on.Tune(98000000, 886), S_OK);
  Sleep(60);
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(on.Read(0x86) & 0xBE, 0xA0) << "found, and in the middle of it";
  EXPECT_EQ(on.Read(0xC0) & 7, 4) << "stereo";
  EXPECT_EQ(on.Tune(50000000, 886), E_INVALIDARG);
}

// Where no driver of its own sets the demodulator up, the capture driver has done so at its start.
TEST_F(Cx2388xTest, DemodulatorIsSetUpAtTheStart) {
  for (const std::uint32_t type : {12u, 14u, 17u, 21u, 24u}) {
    const bool european = type == 14 || type == 21;
    Plug({.tunerType = type}, AirWith(205250, european ? AnalogVideo_PAL_B : AnalogVideo_NTSC_M));
    const Cx2388xClient on(*card_);
    on.SetUp(kHardware);
    EXPECT_TRUE(on.Read(0x86) >= 0) << type;
    const unsigned ifKHz = european ? 38900 : type == 17 ? 58750 : 45750;
    const unsigned divider = (205250 + ifKHz) * 16 / 1000;
    BYTE band = 0x42;
    if (type == 14) band = 0x22;
    if (type == 21 || type == 24) band = 0x02;
    EXPECT_TRUE(
        on.Write(0xC0, {static_cast<BYTE>(divider >> 8), static_cast<BYTE>(divider), 0xCE, band}));
    Sleep(60);
    EXPECT_TRUE(on.Locked()) << type;
    EXPECT_EQ(on.Read(0x86) & 0xE0, 0xE0) << "sound, picture and carrier of type " << type;
  }
}

TEST_F(Cx2388xTest, ReferencesAreCounted) {
  Plug({.tunerFilter = true});
  {
    const Cx2388xClient on(*card_);
    EXPECT_EQ(card_->LiveReferences(), 4);
  }
  EXPECT_EQ(card_->LiveReferences(), 0);
  EXPECT_FALSE(Plug({}).TunerFilter());
}

}  // namespace
}  // namespace zelk::virtual_cards
