// PioGate.dll from outside, the installer's profile file, and PioGate880.dll where it differs.
#include "bt_client.h"
#include "virtual_cards/cards/bt878_card.h"
#include "virtual_cards/cards/cx2388x_card.h"

namespace zelk::virtual_cards {
namespace {

constexpr IoClient::Names kPioGate = {"PioGate.dll",   "INIT_IO",    "FREE_IO",    "I2CISINITOK",
                                      "I2CINITSWMODE", "I2CSWSTART", "I2CSWWRITE", "I2CSWREAD",
                                      "I2CSWSTOP",     "READDECODER"};

constexpr IoClient::Names kPioGate880 = {
    "PioGate880.dll", "InitIO",     "FreeIO",    "I2CIsInitOK", "I2CInitSWMode",
    "I2CSWStart",     "I2CSWWrite", "I2CSWRead", "I2CSWStop",   "ReadDecoder"};

using Bt878IoTest = CardModelTest<Bt878Card, Bt878Options>;
using Cx2388xIoTest = CardModelTest<Cx2388xCard, Cx2388xOptions>;

std::string ProfileValue(const char* key) {
  char text[16];
  GetPrivateProfileStringA("PRODUCTINFO", key, "", text, sizeof text, "Telmora2k.ini");
  return text;
}

TEST_F(Bt878IoTest, CallsOutOfOrderDoNothing) {
  Plug({.tunerType = 0, .ioLibrary = true});
  const IoClient io(kPioGate);
  EXPECT_EQ(io.IsInitOk(), 0);
  EXPECT_EQ(io.Transfer({0xC2}), 0);
  EXPECT_EQ(io.Decoder(0), 0);
  card_->Refuse("io INIT_IO", E_FAIL);
  EXPECT_EQ(io.Init(), 0);
  card_->ClearRefusals();
  EXPECT_EQ(io.Init(), 1);
  EXPECT_EQ(io.IsInitOk(), 1);
  EXPECT_EQ(io.Transfer({0xC2}), 0) << "the bus is not in software mode";
  EXPECT_EQ(io.Read(), 0x55);
  io.InitSwMode(0);
  EXPECT_EQ(io.Transfer({0xC2}), 0);
  io.InitSwMode();
  card_->Refuse("io I2CSWWRITE 62", E_FAIL);
  EXPECT_EQ(io.Transfer({0xC2, 0x0D, 0x62, 0xCE, 0x90}), 2);
  EXPECT_EQ(card_->TunedKHz(), 0);
  std::uint32_t pins = 7;
  io.Call<void, int, int, std::uint32_t*, int>("GETGPDATABITS", 15, 24, &pins, 0);
  EXPECT_EQ(pins, 7u) << "no such pin: nothing is stored";
  io.Free();
  EXPECT_EQ(io.IsInitOk(), 0);
  io.Init();
  EXPECT_EQ(io.Transfer({0xC2}), 0) << "the mode has to be set anew";
}

TEST_F(Bt878IoTest, ALibraryOutlivesItsCard) {
  Plug({});
  EXPECT_FALSE(IoClient(kPioGate).Loaded()) << "a card with filters has none";
  Plug({.ioLibrary = true});
  const IoClient io(kPioGate);
  EXPECT_EQ(io.Init(), 1);
  card_.reset();
  EXPECT_FALSE(IoClient(kPioGate).Loaded());
  EXPECT_EQ(io.Init(), 0);
  EXPECT_EQ(io.Transfer({0xC2}), 0);
  EXPECT_EQ(io.Read(), 0x55);
  EXPECT_EQ(io.Decoder(0), 0);
  io.Call<void, int, int>("SETGPIEBIT", 15, 0);
  io.Free();
}

TEST_F(Bt878IoTest, TheInstallerWroteTheBoardDown) {
  Plug({.tunerType = 15, .ioLibrary = true, .eepromState = EepromState::kMissing});
  EXPECT_EQ(ProfileValue("0x41"), "104");
  EXPECT_EQ(ProfileValue("0x42"), "160");
  EXPECT_EQ(ProfileValue("0xFD"), "1");
  Plug({.ioLibrary = true, .eepromState = EepromState::kBlank});
  EXPECT_EQ(ProfileValue("0x41"), "");
  Plug({.ioLibrary = true, .eeprom = std::array<std::uint8_t, 256>{}});
  EXPECT_EQ(ProfileValue("0x41"), "0");
  Plug({.tunerType = 15});
  EXPECT_EQ(ProfileValue("0x41"), "") << "only for cards that have an I/O library";
}

TEST_F(Cx2388xIoTest, PortsAndUnusedEntryPoints) {
  Plug({.ioLibrary = true});
  Listen();
  {
    const IoClient io(kPioGate880);
    std::uint32_t data = 7;
    const auto read = [&] {
      return io.Call<int, std::uint32_t*, int, int>("GetGPData", &data, 0, 0);
    };
    EXPECT_EQ(read(), 0);
    io.Init();
    card_->PressKey(0x8F);
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(data, 0u) << "not the receiver's port";
    io.Call<void, int>("SetGPIOPort", 2);
    io.Call<void, int>("SetGPIOPort", 3);
    trace_.Take();
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(data, 0x1Fu) << "a port that is not there leaves the last one selected";
    for (const char* name : {"SetGPData", "SetGPIEBit", "GetGPDataBits"}) io.Call<void>(name);
    EXPECT_THAT(trace_.Take(), testing::ElementsAre("io GetGPData -> 1F", "io SetGPData",
                                                    "io SetGPIEBit", "io GetGPDataBits"));
    card_.reset();
    EXPECT_EQ(io.Init(), 0);
    EXPECT_EQ(read(), 0);
    io.Call<void>("SetGPIEBit");
    io.Call<void, int>("SetGPIOPort", 2);
  }
  EXPECT_EQ(host::ModuleLoadCount("PioGate880.dll"), 0);
}

}  // namespace
}  // namespace zelk::virtual_cards
