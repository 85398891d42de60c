// PioGate880.dll from outside.
#include "bt_client.h"
#include "virtual_cards/cards/cx2388x_card.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr IoClient::Names kPioGate880 = {
    "PioGate880.dll", "InitIO",     "FreeIO",    "I2CIsInitOK", "I2CInitSWMode",
    "I2CSWStart",     "I2CSWWrite", "I2CSWRead", "I2CSWStop",   "ReadDecoder"};

using Cx2388xIoTest = BtCardTest<Cx2388xCard, Cx2388xOptions>;

TEST_F(Cx2388xIoTest, EveryEntryPointIsThereUnlessItIsMissing) {
  constexpr const char* kNames[] = {"InitIO",      "FreeIO",     "I2CIsInitOK",   "I2CInitSWMode",
                                    "I2CSWStart",  "I2CSWWrite", "I2CSWRead",     "I2CSWStop",
                                    "ReadDecoder", "SetGPIEBit", "GetGPDataBits", "SetGPIOPort",
                                    "GetGPData",   "SetGPData"};
  for (const char* missing : kNames) {
    Plug({.ioLibrary = true, .missingEntryPoints = {missing}});
    const IoClient io(kPioGate880);
    for (const char* name : kNames)
      EXPECT_EQ(io.Has(name), name != missing) << name << " without " << missing;
  }
  EXPECT_EQ(LoadLibraryA("PioGate.dll"), nullptr);
}

TEST_F(Cx2388xIoTest, TunesAndReads) {
  Plug({.tunerType = 24, .ioLibrary = true}, AirWith(175250, AnalogVideo_NTSC_M));
  EXPECT_FALSE(card_->CaptureFilter());
  EXPECT_EQ(card_->FriendlyName(), "");
  const IoClient io(kPioGate880);
  EXPECT_EQ(io.Init(), 1);
  EXPECT_EQ(io.IsInitOk(), 1);
  io.InitSwMode();
  EXPECT_EQ(io.ReadAt(0xA0, 6), 0x20);
  EXPECT_EQ(io.Transfer({0xC0, 0x0D, 0xD0, 0xCE, 0x02}), 5);
  Sleep(60);
  EXPECT_EQ(card_->TunedKHz(), 175250);
  EXPECT_EQ(io.Decoder(0x100), 0x20);
  EXPECT_EQ(io.Decoder(0), 0);
  io.Start();
  EXPECT_EQ(io.Write(0x87), 1);
  EXPECT_EQ(io.Read() >> 1, 0x70);
  io.Stop();
}

TEST_F(Cx2388xIoTest, RemoteControl) {
  Plug({.ioLibrary = true});
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
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(data, 0x1Fu);
  io.Call<void, int>("SetGPIOPort", 3);
  EXPECT_EQ(read(), 1);
  EXPECT_EQ(data, 0x1Fu);
}

TEST_F(Cx2388xIoTest, TraceAndRefusals) {
  Plug({.ioLibrary = true});
  Listen();
  {
    const IoClient io(kPioGate880);
    std::uint32_t data = 0;
    io.Init();
    io.IsInitOk();
    io.InitSwMode();
    io.Start();
    io.Write(0xC1);
    io.Read();
    io.Stop();
    io.Decoder(0x100);
    io.Call<void, int>("SetGPIOPort", 2);
    io.Call<int, std::uint32_t*, int, int>("GetGPData", &data, 0, 0);
    io.Call<void>("SetGPData");
    io.Free();
    EXPECT_THAT(trace_.Take(),
                ElementsAre("io InitIO -> 1", "io I2CIsInitOK -> 1", "io I2CInitSWMode 100000",
                            "io I2CSWStart", "io I2CSWWrite C1 -> 1", "io I2CSWRead -> 84",
                            "io I2CSWStop", "io ReadDecoder 100 -> 0", "io SetGPIOPort 2",
                            "io GetGPData -> 0", "io SetGPData", "io FreeIO"));
    io.Init();
    card_->Refuse("io GetGPData", E_FAIL);
    EXPECT_EQ((io.Call<int, std::uint32_t*, int, int>("GetGPData", &data, 0, 0)), 0);
    card_.reset();
    EXPECT_EQ(io.Init(), 0);
    EXPECT_EQ((io.Call<int, std::uint32_t*, int, int>("GetGPData", &data, 0, 0)), 0);
    io.Call<void>("SetGPIEBit");
    io.Call<void, int>("SetGPIOPort", 2);
  }
  EXPECT_EQ(host::ModuleLoadCount("PioGate880.dll"), 0);
}

}  // namespace
}  // namespace zelk::virtual_cards
