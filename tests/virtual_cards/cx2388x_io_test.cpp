// PioGate880.dll from outside, where it differs from PioGate.dll.
#include "bt_client.h"
#include "virtual_cards/cards/cx2388x_card.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr IoClient::Names kPioGate880 = {
    "PioGate880.dll", "InitIO",     "FreeIO",    "I2CIsInitOK", "I2CInitSWMode",
    "I2CSWStart",     "I2CSWWrite", "I2CSWRead", "I2CSWStop",   "ReadDecoder"};

using Cx2388xIoTest = BtCardTest<Cx2388xCard, Cx2388xOptions>;

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
    EXPECT_THAT(trace_.Take(), ElementsAre("io GetGPData -> 1F", "io SetGPData", "io SetGPIEBit",
                                           "io GetGPDataBits"));
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
