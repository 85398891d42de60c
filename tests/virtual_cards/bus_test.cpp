// The bus, also when it is driven step by step, and the EEPROM on it.
#include <sstream>
#include <string>

#include "model_test.h"
#include "virtual_cards/chips/dying_chip.h"
#include "virtual_cards/chips/eeprom.h"
#include "virtual_cards/chips/i2c_steps.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Notes down what it hears, and sends 1, 2, 3, …
class Witness final : public I2cDevice {
 public:
  bool Acknowledges(I2cDirection) override { return present; }
  bool Write(std::span<const std::uint8_t> bytes) override {
    transfers.emplace_back(bytes.begin(), bytes.end());
    return true;
  }
  bool Read(std::span<std::uint8_t> bytes) override {
    for (std::uint8_t& byte : bytes) byte = ++sent;
    return true;
  }

  bool present = true;
  std::uint8_t sent = 0;
  std::vector<std::vector<int>> transfers;
};

class I2cStepsTest : public ModelTest {
 protected:
  I2cStepsTest() { bus_.Attach(0xC2, &chip_); }

  // Plays S for a start, P for a stop, L for a byte that goes astray, R for a read, and bytes to be
  // written. What came of it: + or - for each byte written, and what was read.
  std::string Play(const std::string& script) {
    std::istringstream steps(script);
    std::ostringstream heard;
    for (std::string step; steps >> step;) {
      if (step == "S") {
        steps_.Start();
      } else if (step == "P") {
        steps_.Stop();
      } else if (step == "L") {
        steps_.Lose();
      } else if (step == "R") {
        heard << int{steps_.Read()};
      } else {
        heard << (steps_.Write(static_cast<std::uint8_t>(std::stoi(step, nullptr, 16))) ? '+'
                                                                                        : '-');
      }
    }
    return heard.str();
  }

  Witness chip_;
  I2cSteps steps_{bus_};
};

TEST_F(I2cStepsTest, WritesArriveAsOneTransferAtItsEnd) {
  EXPECT_EQ(Play("S C2 0B 2C"), "+++");
  EXPECT_THAT(chip_.transfers, IsEmpty());
  // An address alone is no transfer.
  EXPECT_EQ(Play("S C3 R R P S C2 P P"), "+12+");
  EXPECT_THAT(chip_.transfers, ElementsAre(ElementsAre(0x0B, 0x2C)));
  EXPECT_EQ(chip_.sent, 2);
}

TEST_F(I2cStepsTest, NobodyHearsWhatIsOutOfOrder) {
  // Without a start; before an address; an empty seat, and an address that is not the first byte;
  // while the chip is sending.
  EXPECT_EQ(Play("C2 R S R 86 C2 R S C3 00"), "-255255--255+-");
  chip_.present = false;
  EXPECT_EQ(Play("S C2 P"), "-");
  EXPECT_THAT(chip_.transfers, IsEmpty());
}

TEST_F(I2cStepsTest, AByteThatGoesAstrayEndsTheTransfer) {
  EXPECT_EQ(Play("L S C2 0B L 2C S C2"), "++-+");
  EXPECT_THAT(chip_.transfers, ElementsAre(ElementsAre(0x0B)));
}

TEST_F(I2cStepsTest, EmptySeatsDoNotAcknowledge) {
  EXPECT_FALSE(Write(0x82, {0x00}));
  EXPECT_EQ(ReadAt(0x82, 0x00), -1);
  EXPECT_EQ(bus_.Attach(0xC3, nullptr), &chip_) << "read and write address are one seat";
  EXPECT_EQ(Read(0xC2), -1);
}

TEST_F(I2cStepsTest, DyingChipsCountTransfers) {
  DyingChip dying(chip_, 3);
  bus_.Attach(0xC2, &dying);
  EXPECT_EQ(Play("S C2 41 S C3 R"), "+++1");
  EXPECT_TRUE(Write(0xC2, {1, 2}));
  EXPECT_EQ(Read(0xC2), -1);
  EXPECT_EQ(Play("S C2"), "-");
}

using EepromTest = ModelTest;

TEST_F(EepromTest, ReadsOnFromItsPointer) {
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

TEST_F(EepromTest, WritesWithinAPage) {
  Eeprom eeprom(Eeprom::Image{});
  bus_.Attach(0xA0, &eeprom);
  Write(0xA0, {0x1E, 0x11, 0x22, 0x33});
  EXPECT_EQ(ReadAt(0xA0, 0x1E), 0x11);
  EXPECT_EQ(ReadAt(0xA0, 0x1F), 0x22);
  EXPECT_EQ(ReadAt(0xA0, 0x20), 0x00);
  EXPECT_EQ(ReadAt(0xA0, 0x18), 0x33);
}

}  // namespace
}  // namespace zelk::virtual_cards
