// The Bt878 card's driver from outside: bus, tuner, GPIO, locks, EEPROM.
#include "virtual_cards/cards/bt878_card.h"
#include "bt_client.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ULONG kHardware = 0x11000002;
constexpr ULONG kSoftware = 0x11000003;
constexpr ULONG kStart = 0x1100000B;
constexpr ULONG kStop = 0x1100000C;

constexpr auto kNotReady = static_cast<HRESULT>(0x80070015);

struct Bt878Client : BtClient {
  using BtClient::BtClient;

  HRESULT Start() const { return Set(4, I2cBlock(kStart)); }
  HRESULT Stop() const { return Set(4, I2cBlock(kStop)); }
  HRESULT WriteByte(BYTE byte) const { return Set(4, I2cBlock(0x1100000E).Byte(50, byte)); }
  // The byte, or -1 for a request that failed.
  int ReadByte() const {
    Block block = I2cBlock(0x1100000D);
    return Set(4, block) == S_OK && Get(4, block) == S_OK ? block.ByteAt(50) : -1;
  }
  // All bytes, the address first; how many were acknowledged.
  int Transfer(const std::vector<BYTE>& bytes) const {
    int acknowledged = 0;
    Start();
    for (const BYTE byte : bytes) acknowledged += WriteByte(byte) == S_OK;
    Stop();
    return acknowledged;
  }
  int ReadAt(BYTE address, BYTE subaddress) const {
    Start();
    WriteByte(address);
    WriteByte(subaddress);
    Start();
    const bool heard = WriteByte(address | 1) == S_OK;
    const int byte = ReadByte();
    Stop();
    return heard ? byte : -1;
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

using Bt878Test = BtCardTest<Bt878Card, Bt878Options>;

TEST_F(Bt878Test, TunesAndReadsStepByStep) {
  Plug({.tunerType = 0}, AirWith(175250));
  const Bt878Client on(*card_);
  ASSERT_EQ(on.SetUp(kSoftware), S_OK);
  EXPECT_EQ(on.Transfer({0xC2, 0x0D, 0x62, 0xCE, 0x90}), 5);
  EXPECT_EQ(card_->TunedKHz(), 175225);
  EXPECT_FALSE(on.Locked());
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_TRUE(card_->HorizontalLocked());
  EXPECT_EQ(on.Start(), S_OK);
  EXPECT_EQ(on.WriteByte(0xC3), S_OK);
  EXPECT_EQ(on.ReadByte() & 0x47, 0x42);
  EXPECT_EQ(on.Stop(), S_OK);
  EXPECT_EQ(on.Transfer({0xC0, 0x0D, 0x62}), 0) << "these boards' tuners are at 0xC2";
}

TEST_F(Bt878Test, HardwareEngineNeedsItsSetUp) {
  Plug({.tunerType = 13});
  const Bt878Client on(*card_);
  HRESULT code = S_OK;
  EXPECT_EQ(on.Start(), kNotReady);
  EXPECT_EQ(on.WriteByte(0xC2), kNotReady);
  EXPECT_EQ(on.ReadByte(), -1);
  on.SetUp(kSoftware);
  on.WriteByHardware(0x86, {0, 0x56, 0x30, 0x44}, code);
  EXPECT_EQ(code, kNotReady);
  EXPECT_EQ(on.ReadByHardware(0x86), -1);

  EXPECT_EQ(on.SetUp(kHardware), S_OK);
  Block block = on.WriteByHardware(0x86, {0, 0x56, 0x30, 0x44}, code);
  EXPECT_EQ(code, S_OK);
  EXPECT_EQ(on.Get(4, block), S_OK);
  EXPECT_GE(on.ReadByHardware(0x86), 0);
  EXPECT_EQ(on.ReadAt(0xA0, 0x41), 0x68) << "steps take the lines over in either mode";

  block = on.WriteByHardware(0x96, {0}, code);
  EXPECT_EQ(code, E_FAIL) << "nobody there";
  EXPECT_EQ(on.Get(4, block), E_FAIL);
  EXPECT_EQ(on.ReadByHardware(0x96), -1);
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(0x1100000A).Byte(48, 0xC2).Word(116, 65)), E_INVALIDARG);
  on.WriteByHardware(0xC2, {}, code);
  EXPECT_EQ(code, S_OK) << "an address alone";
}

TEST_F(Bt878Test, SetUpsMustBeFilledIn) {
  Plug({});
  const Bt878Client on(*card_);
  EXPECT_EQ(on.SetUp(kSoftware, 0), E_INVALIDARG);
  EXPECT_EQ(on.SetUp(kSoftware, 1000000), E_INVALIDARG);
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(kSoftware).Word(32, 100000)), E_INVALIDARG);
  EXPECT_EQ(on.Start(), kNotReady);
}

TEST_F(Bt878Test, EepromHoldsWhatTheMakerProgrammed) {
  struct Case {
    std::uint32_t tunerType;
    int tunerByte, optionByte;
  };
  for (const Case& one :
       {Case{1, 0x0A, 0x00}, Case{15, 0x68, 0xA0}, Case{40, 0x00, 0xD0}, Case{45, 0x0F, 0x90}}) {
    Plug({.tunerType = one.tunerType});
    const Bt878Client on(*card_);
    on.SetUp(kSoftware);
    EXPECT_EQ(on.ReadAt(0xA0, 0x41), one.tunerByte);
    EXPECT_EQ(on.ReadAt(0xA0, 0x42), one.optionByte);
    EXPECT_EQ(on.ReadAt(0xA0, 0xFD), 1);
    EXPECT_EQ(on.ReadAt(0xA0, 0x00), 0xFF);
  }
  for (const std::uint32_t none : {2u, 3u, 16u, 19u, 24u, 41u, 46u, 99u})
    EXPECT_THROW(Plug({.tunerType = none}), std::invalid_argument) << none;
}

TEST_F(Bt878Test, EepromsInBadCondition) {
  std::array<std::uint8_t, 256> image{};
  image[0x41] = 0x12;
  const auto firstBytes = [&](EepromState state) {
    Plug({.eeprom = image, .eepromState = state, .eepromTransfers = 3});
    const Bt878Client on(*card_);
    on.SetUp(kSoftware);
    const int first = on.ReadAt(0xA0, 0x41);
    return std::pair(first, on.ReadAt(0xA0, 0x41));
  };
  EXPECT_EQ(firstBytes(EepromState::kGood), std::pair(0x12, 0x12));
  EXPECT_EQ(firstBytes(EepromState::kBlank), std::pair(0xFF, 0xFF));
  EXPECT_EQ(firstBytes(EepromState::kMissing), std::pair(-1, -1));
  EXPECT_EQ(firstBytes(EepromState::kDying), std::pair(0x12, -1));
}

TEST_F(Bt878Test, RemoteControlOnInputPins) {
  Plug({});
  const Bt878Client on(*card_);
  card_->PressKey(0xA7);
  EXPECT_EQ(on.ReadPins(15, 23), 0) << "driven by the chip";
  for (ULONG pin = 15; pin <= 23; ++pin) EXPECT_EQ(on.SetPin(pin, 0), S_OK);
  const int pins = on.ReadPins(15, 23);
  EXPECT_EQ((pins >> 1 & 0xF8) | (pins & 7), 0xA7);
  EXPECT_EQ(on.ReadPins(16, 17), 3);
  EXPECT_EQ(on.SetPin(15, 1), S_OK);
  EXPECT_EQ(on.ReadPins(15, 17), 6);
  card_->ReleaseKey();
  EXPECT_EQ(on.ReadPins(15, 23), 0);
  EXPECT_EQ(on.ReadPins(15, 24), -1);
  EXPECT_EQ(on.ReadPins(5, 4), -1);
  EXPECT_EQ(on.SetPin(24, 0), E_INVALIDARG);
}

TEST_F(Bt878Test, Locks) {
  Plug({});
  const Bt878Client on(*card_);
  EXPECT_EQ(on.SetLock(6, 1), S_OK);
  EXPECT_TRUE(card_->Lock(0));
  EXPECT_FALSE(card_->Lock(1));
  EXPECT_EQ(on.GetLock(6), 1);
  EXPECT_EQ(on.GetLock(7), 0);
  EXPECT_EQ(on.SetLock(7, 1), S_OK);
  EXPECT_EQ(on.SetLock(6, 2), S_OK);
  EXPECT_EQ(on.GetLock(6), 0);
  EXPECT_EQ(on.GetLock(7), 1);
}

TEST_F(Bt878Test, TraceOfEveryRequest) {
  Plug({}, AirWith(175250));
  Listen();
  const Bt878Client on(*card_);
  HRESULT code = S_OK;
  on.SetUp(kSoftware);
  on.Start();
  on.WriteByte(0xA0);
  on.WriteByte(0x41);
  on.Start();
  on.WriteByte(0xA1);
  on.ReadByte();
  on.Stop();
  on.Start();
  on.WriteByte(0x96);
  on.Stop();
  on.SetUp(kHardware);
  Block block = on.WriteByHardware(0xC2, {0x0D, 0x62, 0xCE, 0x90}, code);
  on.Get(4, block);
  block = on.WriteByHardware(0x96, {0x1B}, code);
  on.Get(4, block);
  Sleep(60);
  on.ReadByHardware(0xC2);
  on.Set(4, BtClient::I2cBlock(0x11000018));
  EXPECT_THAT(trace_.Take(),
              ElementsAre("capture query IKsPropertySet", "capture query IAMAnalogVideoDecoder",
                          "tuner query IKsPropertySet", "tuner query IAMTVTuner",
                          "i2c setup software 100000", "i2c start", "i2c write-byte A0 -> ack",
                          "i2c write-byte 41 -> ack", "i2c start", "i2c write-byte A1 -> ack",
                          "i2c order read-byte", "i2c read-byte -> 0A", "i2c stop", "i2c start",
                          "i2c write-byte 96 -> nak", "i2c stop", "i2c setup hardware 100000",
                          "i2c write C2: 0D 62 CE 90", "i2c result", "i2c write 96: 1B -> nak",
                          "i2c result -> 80004005", "i2c order read C2", "i2c read C2 -> C2",
                          "i2c command 11000018 -> 80070057"));

  card_->PressKey(0xFF);
  for (ULONG pin = 15; pin <= 23; ++pin) on.SetPin(pin, 0);
  trace_.Take();
  on.SetPin(3, 1);
  on.ReadPins(15, 23);
  on.SetLock(6, 1);
  on.GetLock(7);
  on.tvTuner->put_Mode(AMTUNER_MODE_TV);
  on.tvTuner->put_CountryCode(34);
  on.tvTuner->put_Channel(9, 0, 0);
  on.Tune(175250000, 34);
  on.SetStandard(AnalogVideo_PAL_B);
  on.Locked();
  EXPECT_THAT(trace_.Take(),
              ElementsAre("gpio 3 output", "gpio result", "gpio order 15-23", "gpio 15-23 -> 1FF",
                          "lock 0 := 1", "lock 1 -> 0", "tuner mode 1", "tuner country 34",
                          "tuner channel 9 0 0",
                          "tuner set TUNER.4 frequency=175250000 flags=0 channel=0 country=34",
                          "tuner set TUNER.3 00000010", "capture horizontal-locked -> 0"));
}

TEST_F(Bt878Test, RefusedRequestsDoNotReachTheHardware) {
  Plug({.tunerType = 0});
  const Bt878Client on(*card_);
  on.SetUp(kSoftware);
  card_->Refuse("i2c write-byte CE", E_UNEXPECTED);
  EXPECT_EQ(on.Transfer({0xC2, 0x0D, 0x62, 0xCE, 0x90}), 3);
  EXPECT_EQ(card_->TunedKHz(), 0) << "no band was heard";
  card_->ClearRefusals();
  // The ways in which a byte fails: by a code, by the bus's own failure, on order of that.
  card_->Refuse("i2c write-byte C2", static_cast<HRESULT>(14));
  on.Start();
  EXPECT_EQ(on.WriteByte(0xC2), E_FAIL);
  EXPECT_EQ(on.WriteByte(0xA0), E_FAIL) << "no address any more";
  card_->Refuse("i2c order read-byte", E_OUTOFMEMORY);
  EXPECT_EQ(on.Set(4, BtClient::I2cBlock(0x1100000D)), E_OUTOFMEMORY);
  card_->Refuse("lock 0 :=", E_UNEXPECTED);
  EXPECT_EQ(on.SetLock(6, 1), E_UNEXPECTED);
  EXPECT_FALSE(card_->Lock(0));
  card_->Refuse("i2c write 86", E_OUTOFMEMORY);
  on.SetUp(kHardware);
  HRESULT code = S_OK;
  Block block = on.WriteByHardware(0x86, {0}, code);
  EXPECT_EQ(code, E_OUTOFMEMORY);
  EXPECT_EQ(on.Get(4, block), E_OUTOFMEMORY);
}

TEST_F(Bt878Test, MalformedRequests) {
  Plug({});
  const Bt878Client on(*card_);
  Listen();
  ULONG words[82] = {};
  DWORD returned = 0;
  EXPECT_EQ(on.capture->Set(kZelkCapture, 4, words, 120, words, 116), E_INVALIDARG);
  EXPECT_EQ(on.capture->Set(kZelkCapture, 4, nullptr, 120, nullptr, 120), E_POINTER);
  EXPECT_EQ(on.capture->Get(kZelkCapture, 4, words, 120, words, 120, nullptr), E_POINTER);
  EXPECT_EQ(on.capture->Get(kZelkCapture, 103, words, 32, words, 32, &returned),
            E_PROP_ID_UNSUPPORTED);
  EXPECT_EQ(on.capture->QuerySupported(kZelkCapture, 2, &returned), S_OK);
  EXPECT_EQ(returned, KSPROPERTY_SUPPORT_GET | KSPROPERTY_SUPPORT_SET);
  EXPECT_EQ(trace_.Lines().back(), "capture query-supported ZELK_CAPTURE.2 -> 00000003");
}

TEST_F(Bt878Test, TunesByTheTunerFilter) {
  // Types of each kind of module; the last two made for the American IF on these boards.
  for (const std::uint32_t type : {0u, 4u, 10u, 13u, 20u, 40u, 42u, 43u}) {
    const bool american = type == 4 || type == 10 || type == 13;
    Plug({.tunerType = type}, AirWith(205250, american ? AnalogVideo_NTSC_M : AnalogVideo_PAL_B));
    const BtClient on(*card_);
    EXPECT_EQ(on.Tune(205250000, american ? 1 : 49), S_OK) << type;
    Sleep(60);
    EXPECT_TRUE(on.Locked()) << type;
    EXPECT_NEAR(card_->TunedKHz(), 205250, 63) << type;
    EXPECT_EQ(on.Tune(1000000000, 49), E_INVALIDARG);
  }
  EXPECT_EQ(Plug({.tunerFilter = false}).TunerFilter().Get(), nullptr);
}

TEST_F(Bt878Test, DriverSetsTheDemodulatorUp) {
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
  LONG country = 0;
  EXPECT_EQ(on.tvTuner->get_CountryCode(&country), S_OK);
  EXPECT_EQ(country, 33);
  EXPECT_EQ(on.SetStandard(AnalogVideo_PAL_D), S_OK);
  EXPECT_FALSE(locks());
  EXPECT_EQ(on.SetStandard(AnalogVideo_SECAM_L), S_OK);
  EXPECT_TRUE(locks());
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
  EXPECT_EQ(on.Tune(98000000, 33), S_OK);
  EXPECT_EQ(card_->TunedKHz(), 98000);
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_TV), S_OK);
  EXPECT_TRUE(locks());
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_DSS), E_INVALIDARG);
  Plug({.tunerType = 14});
  EXPECT_EQ(BtClient(*card_).tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), E_INVALIDARG);
}

TEST_F(Bt878Test, StationsShowSoonAfterASmallStep) {
  Plug({.tunerType = 45}, FmAirWith(98000));
  const Bt878Client on(*card_);
  on.SetUp(kSoftware);
  const auto tune = [&](BYTE high, BYTE low) { on.Transfer({0xC2, high, low, 0x88, 0xA5}); };
  const auto status = [&] {
    on.Start();
    on.WriteByte(0xC3);
    const int byte = on.ReadByte();
    on.Stop();
    return byte & 0x57;
  };
  status();
  tune(0x08, 0x7D);  // 97.95 MHz
  Sleep(20);
  EXPECT_EQ(status() & 0x40, 0) << "out of television";
  Sleep(40);
  tune(0x08, 0x7E);
  EXPECT_EQ(status() & 0x40, 0);
  Sleep(16);
  EXPECT_EQ(status(), 0x52);
  EXPECT_EQ(card_->TunedKHz(), 98000);
  tune(0x08, 0x50);
  Sleep(16);
  EXPECT_EQ(status() & 0x40, 0) << "a leap";
}

TEST_F(Bt878Test, ReferencesAreCountedAndOutliveTheCard) {
  Plug({}, AirWith(175250));
  Listen();
  EXPECT_EQ(card_->LiveReferences(), 0);
  const Bt878Client on(*card_);
  EXPECT_EQ(card_->LiveReferences(), 4);
  on.SetUp(kSoftware);
  on.Transfer({0xC2, 0x0D, 0x62, 0xCE, 0x90});
  card_.reset();
  trace_.Take();
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_THAT(trace_.Lines(), IsEmpty()) << "the listener may be gone";
}

}  // namespace
}  // namespace zelk::virtual_cards
