// PioGate.dll from outside, and the installer's profile file.
#include "bt_client.h"
#include "virtual_cards/cards/bt878_card.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr IoClient::Names kPioGate = {"PioGate.dll",   "INIT_IO",    "FREE_IO",    "I2CISINITOK",
                                      "I2CINITSWMODE", "I2CSWSTART", "I2CSWWRITE", "I2CSWREAD",
                                      "I2CSWSTOP",     "READDECODER"};

using Bt878IoTest = BtCardTest<Bt878Card, Bt878Options>;

std::string ProfileValue(const char* key) {
  char text[16];
  GetPrivateProfileStringA("PRODUCTINFO", key, "", text, sizeof text, "Telmora2k.ini");
  return text;
}

TEST_F(Bt878IoTest, HasNoFiltersAndNoName) {
  Plug({.ioLibrary = true});
  EXPECT_FALSE(card_->CaptureFilter());
  EXPECT_FALSE(card_->TunerFilter());
  EXPECT_EQ(card_->FriendlyName(), "");
  EXPECT_EQ(card_->LiveReferences(), 0);
  EXPECT_TRUE(IoClient(kPioGate).Loaded());
  EXPECT_EQ(host::ModuleLoadCount("PioGate.dll"), 0);
  Plug({});
  EXPECT_FALSE(IoClient(kPioGate).Loaded()) << "with filters the library is not installed";
}

TEST_F(Bt878IoTest, CallsOutOfOrderDoNothing) {
  Plug({.tunerType = 0, .ioLibrary = true});
  const IoClient io(kPioGate);
  EXPECT_EQ(io.IsInitOk(), 0);
  EXPECT_EQ(io.Transfer({0xC2}), 0);
  EXPECT_EQ(io.Init(), 1);
  EXPECT_EQ(io.IsInitOk(), 1);
  EXPECT_EQ(io.Transfer({0xC2}), 0) << "the bus is not in software mode";
  EXPECT_EQ(io.Read(), 0x55);
  io.InitSwMode();
  EXPECT_EQ(io.Transfer({0xC2}), 1);
  io.Free();
  EXPECT_EQ(io.Transfer({0xC2}), 0);
  EXPECT_EQ(io.IsInitOk(), 0);
}

TEST_F(Bt878IoTest, TunesAndReads) {
  Plug({.tunerType = 13, .ioLibrary = true}, AirWith(175250, AnalogVideo_NTSC_M));
  const IoClient io(kPioGate);
  io.Init();
  io.InitSwMode();
  EXPECT_EQ(io.Transfer({0xC2, 0x0D, 0xD0, 0x86, 0x42, 0xA0}), 6);
  EXPECT_EQ(io.Decoder(0), 0);
  Sleep(60);
  EXPECT_EQ(card_->TunedKHz(), 175250);
  EXPECT_EQ(io.Decoder(0), 0xC0) << "the library has set the demodulator up";
  EXPECT_EQ(io.Decoder(1), 0);
  io.Start();
  EXPECT_EQ(io.Write(0x87), 1);
  EXPECT_EQ(io.Read() >> 1 & 0xF, 0);
  io.Stop();
  EXPECT_EQ(io.ReadAt(0xA0, 0x41), 0x68);
}

TEST_F(Bt878IoTest, Faults) {
  Plug({.ioLibrary = true, .initFails = true});
  EXPECT_EQ(IoClient(kPioGate).Init(), 0);
  EXPECT_EQ(IoClient(kPioGate).IsInitOk(), 0);
  Plug({.ioLibrary = true, .i2cFails = true});
  EXPECT_EQ(IoClient(kPioGate).Init(), 1);
  EXPECT_EQ(IoClient(kPioGate).IsInitOk(), 0);
  Plug({.ioLibrary = true, .missingEntryPoints = {"FREE_IO", "GETGPDATABITS"}});
  const IoClient io(kPioGate);
  EXPECT_FALSE(io.Has("FREE_IO"));
  EXPECT_FALSE(io.Has("GETGPDATABITS"));
  EXPECT_TRUE(io.Has("SETGPIEBIT"));
}

TEST_F(Bt878IoTest, RemoteControl) {
  Plug({.ioLibrary = true});
  const IoClient io(kPioGate);
  io.Init();
  card_->PressKey(0x52);
  std::uint32_t pins = 7;
  const auto read = [&](int last) {
    io.Call<void, int, int, std::uint32_t*, int>("GETGPDATABITS", 15, last, &pins, 0);
    return pins;
  };
  EXPECT_EQ(read(23), 0u);
  for (int pin = 15; pin <= 23; ++pin) io.Call<void, int, int>("SETGPIEBIT", pin, 0);
  EXPECT_EQ(read(23), 0xAAu);
  EXPECT_EQ(read(24), 0xAAu) << "no such pin: nothing is stored";
}

TEST_F(Bt878IoTest, TraceAndRefusals) {
  Plug({.tunerType = 0, .ioLibrary = true});
  Listen();
  const IoClient io(kPioGate);
  io.Init();
  io.IsInitOk();
  io.InitSwMode();
  io.ReadAt(0xA0, 0x41);
  io.Start();
  io.Write(0x96);
  io.Stop();
  io.Decoder(0);
  io.Call<void, int, int>("SETGPIEBIT", 15, 0);
  std::uint32_t pins = 0;
  io.Call<void, int, int, std::uint32_t*, int>("GETGPDATABITS", 15, 23, &pins, 0);
  io.Free();
  EXPECT_THAT(
      trace_.Take(),
      ElementsAre("io INIT_IO -> 1", "io I2CISINITOK -> 1", "io I2CINITSWMODE 100000",
                  "io I2CSWSTART", "io I2CSWWRITE A0 -> 1", "io I2CSWWRITE 41 -> 1",
                  "io I2CSWSTART", "io I2CSWWRITE A1 -> 1", "io I2CSWREAD -> 02", "io I2CSWSTOP",
                  "io I2CSWSTART", "io I2CSWWRITE 96 -> 0", "io I2CSWSTOP", "io READDECODER 0 -> 0",
                  "io SETGPIEBIT 15 0", "io GETGPDATABITS 15-23 -> 0", "io FREE_IO"));

  card_->Refuse("io INIT_IO", E_FAIL);
  EXPECT_EQ(io.Init(), 0);
  EXPECT_EQ(trace_.Take(), std::vector<std::string>{"io INIT_IO -> 80004005"});
  card_->ClearRefusals();
  io.Init();
  io.InitSwMode();
  card_->Refuse("io I2CSWWRITE 62", E_FAIL);
  EXPECT_EQ(io.Transfer({0xC2, 0x0D, 0x62, 0xCE, 0x90}), 2);
  EXPECT_EQ(card_->TunedKHz(), 0);
}

TEST_F(Bt878IoTest, ALibraryOutlivesItsCard) {
  Plug({.ioLibrary = true});
  const IoClient io(kPioGate);
  EXPECT_EQ(io.Init(), 1);
  card_.reset();
  EXPECT_FALSE(IoClient(kPioGate).Loaded());
  EXPECT_EQ(io.Init(), 0);
  EXPECT_EQ(io.Write(0xC2), 0);
  EXPECT_EQ(io.Read(), 0x55);
  EXPECT_EQ(io.Decoder(0), 0);
  io.Call<void, int, int>("SETGPIEBIT", 15, 0);
  io.Start();
  io.Stop();
  io.Free();
}

TEST_F(Bt878IoTest, TheInstallerWroteTheBoardDown) {
  EXPECT_EQ(ProfileValue("0x41"), "");
  Plug({.tunerType = 15, .ioLibrary = true, .eepromState = EepromState::kMissing});
  EXPECT_EQ(ProfileValue("0x41"), "104");
  EXPECT_EQ(ProfileValue("0x42"), "160");
  EXPECT_EQ(ProfileValue("0xFD"), "1");
  Plug({.ioLibrary = true, .eepromState = EepromState::kBlank});
  EXPECT_EQ(ProfileValue("0x41"), "");
  std::array<std::uint8_t, 256> image{};
  image[0xFD] = 7;
  Plug({.ioLibrary = true, .eeprom = image});
  EXPECT_EQ(ProfileValue("0x41"), "0");
  EXPECT_EQ(ProfileValue("0xFD"), "7");
  card_.reset();
  EXPECT_EQ(ProfileValue("0xFD"), "");
  Plug({.tunerType = 15});
  EXPECT_EQ(ProfileValue("0x41"), "") << "only for cards that have an I/O library";
}

}  // namespace
}  // namespace zelk::virtual_cards
