// EEPROM, remote-control receiver and the bus itself.
#include <array>

#include "model_test.h"
#include "virtual_cards/chips/eeprom.h"
#include "virtual_cards/chips/remote_receiver.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

using SmallChips = ModelTest;

TEST_F(SmallChips, EepromReadsOnFromItsPointer) {
  Eeprom::Image image;
  for (unsigned i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(255 - i);
  Eeprom eeprom(image);
  bus_.Attach(0xA0, &eeprom);
  EXPECT_EQ(ReadAt(0xA0, 0x20), 0xDF);
  EXPECT_EQ(Read(0xA1), 0xDE) << "the read bit of the address does not matter";
  std::array<std::uint8_t, 3> bytes{};
  EXPECT_TRUE(bus_.ReadAt(0xA0, 0xFE, bytes));
  EXPECT_THAT(bytes, ElementsAre(0x01, 0x00, 0xFF)) << "the pointer wraps";
}

TEST_F(SmallChips, EepromWritesWithinAPage) {
  Eeprom eeprom(Eeprom::Image{});
  bus_.Attach(0xA0, &eeprom);
  Write(0xA0, {0x1E, 0x11, 0x22, 0x33});
  EXPECT_EQ(ReadAt(0xA0, 0x1E), 0x11);
  EXPECT_EQ(ReadAt(0xA0, 0x1F), 0x22);
  EXPECT_EQ(ReadAt(0xA0, 0x20), 0x00);
  EXPECT_EQ(ReadAt(0xA0, 0x18), 0x33);
}

TEST_F(SmallChips, RemoteReceiverShowsTheLastKey) {
  RemoteReceiver remote;
  bus_.Attach(0x80, &remote);
  EXPECT_EQ(ReadAt(0x80, 0x0D), 0);
  remote.PressKey(2, 0x15);
  EXPECT_EQ(ReadAt(0x80, 0x0D), 0x15);
  EXPECT_EQ(ReadAt(0x80, 0x0B), 2);
  EXPECT_EQ(Read(0x80), 2) << "the register stays selected";
  EXPECT_EQ(ReadAt(0x80, 0x0C), 0);
}

TEST_F(SmallChips, EmptySeatsDoNotAcknowledge) {
  RemoteReceiver remote;
  EXPECT_EQ(bus_.Attach(0x80, &remote), nullptr);
  EXPECT_FALSE(Write(0x82, {0x00}));
  EXPECT_EQ(ReadAt(0x82, 0x00), -1);
  EXPECT_EQ(bus_.Attach(0x81, nullptr), &remote) << "read and write address are one seat";
  EXPECT_EQ(Read(0x80), -1);
}

}  // namespace
}  // namespace zelk::virtual_cards
