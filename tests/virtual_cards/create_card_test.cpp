// Cards from their descriptions.
#include "bt_client.h"
#include "plugged_card.h"
#include "plugged_ql2.h"
#include "tests/support/temp_folder.h"

namespace zelk::virtual_cards {
namespace {

using ::testing::HasSubstr;

TEST(CreateCard, ChipsOfTheKinds) {
  for (const CardKind& kind : CardKinds()) {
    if (!kind.name.starts_with("saa")) continue;
    const auto card = CreateCard(kind.name, {});
    ULONG chip = 0;
    Interfaces(*card).device->GetChipId(&chip);
    EXPECT_EQ(std::stoul(kind.name.substr(3), nullptr, 16), chip);
    EXPECT_THAT(card->FriendlyName(), HasSubstr(kind.name.substr(3)));
  }
}

// What of the options of Bt878 and CX2388x cards can be seen from outside.
TEST(CreateCard, OptionsOfBtCards) {
  const auto eepromByte = [](const std::string& description) {
    const auto card = CreateCard(description, {});
    const BtClient on(*card);
    Block block = Block(32).Byte(24, 6);
    on.Set(104, block);
    return on.Get(105, block) == S_OK ? block.ByteAt(24) : -1;
  };
  EXPECT_EQ(eepromByte("cx2388x,tuner=14"), 0x0A);
  EXPECT_EQ(eepromByte("cx2388x,eeprom=blank"), 0xFF);
  EXPECT_EQ(eepromByte("cx2388x,eeprom=none"), -1);
  EXPECT_EQ(eepromByte("cx2388x,eeprom=dying"), 1);
  EXPECT_TRUE(CreateCard("bt878", {})->TunerFilter());
  EXPECT_FALSE(CreateCard("bt878,tunerfilter=0", {})->TunerFilter());
  EXPECT_FALSE(CreateCard("cx2388x", {})->TunerFilter());
  EXPECT_TRUE(CreateCard("cx2388x,tunerfilter=1", {})->TunerFilter());
  EXPECT_FALSE(CreateCard("bt878-io,tunerfilter=1", {})->TunerFilter());
  const auto card = CreateCard("cx2388x,key=0x8F", {});
  const BtClient on(*card);
  on.Set(6, Block(40).Word(24, 0x30000001).Word(28, 0x350018));
  Block gpio = Block(40).Word(24, 0x30000003).Word(28, 0x350018);
  EXPECT_EQ(on.Get(6, gpio), S_OK);
  EXPECT_EQ(gpio.WordAt(32), 0x1Fu);
}

TEST(CreateCard, BoardAndTunerGoTogether) {
  // The board's word, and the frequency of 0D 62 with the band byte 02 at steps of 62.5 kHz.
  const std::tuple<const char*, ULONG, double> cases[] = {
      {"saa7134,board=0xE1", 0xE1, 0},
      {"saa7130,board=0x40B1A", 0x40B1A, 175225},
      {"saa7134,board=0x12,tuner=25", 0x12, 175225}};
  for (const auto& [description, boardConfig, tunedKHz] : cases) {
    const auto card = CreateCard(description, {});
    Interfaces on(*card);
    ULONG word = 0xFFFFFFFF;
    EXPECT_EQ(on.device->GetBoardConfig(&word), S_OK);
    EXPECT_EQ(word, boardConfig) << description;
    on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x02});
    EXPECT_EQ(dynamic_cast<Saa713xCard&>(*card).TunedKHz(), tunedKHz) << description;
  }
}

TEST(CreateCard, OtherOptions) {
  EXPECT_EQ(Interfaces(*CreateCard("saa7134,remote=gpio,key=2:0x10", {})).Line(6), 1);
  EXPECT_EQ(Interfaces(*CreateCard("saa7134,key=3:2", {})).ReadAt(0x80, 0x0B), 3);
  EXPECT_EQ(Interfaces(*CreateCard("saa7134,eeprom=none", {})).ReadAt(0xA0, 0x20), -1);

  const zelk::testing::TempFolder folder;
  folder.Write("image", std::string(255, 'E') + 'F');
  const std::string description = "saa7134,eeprom=" + (folder / "image");
  EXPECT_EQ(Interfaces(*CreateCard(description, {})).ReadAt(0xA0, 0xFF), 'F');
  folder.Write("image", std::string(257, 'E'));
  EXPECT_THROW(CreateCard(description, {}), std::invalid_argument);
}

TEST(CreateCard, Ql2Options) {
  const auto knowsTuner = [](VirtualCard& card) {
    DWORD support = 0;
    return CardClient(card).capture->QuerySupported(kBoardSet, 112, &support) == S_OK;
  };
  EXPECT_EQ(CreateCard("ql2,name=Mine", {})->FriendlyName(), "Mine");
  EXPECT_TRUE(knowsTuner(*CreateCard("ql2,pin=videoinfo2", {})));
  EXPECT_FALSE(knowsTuner(*CreateCard("ql2,tuner=0x11,tunerinfo=0", {})));
  // The module's home standard gives the picture's size.
  const auto card = CreateCard("ql2,tuner=0x11", {});
  EXPECT_EQ(dynamic_cast<Ql2Card&>(*card).Picture(), (PictureSize{720, 480}));
}

TEST(CreateCard, MistakesAreNamed) {
  const auto expect = [](const std::string& description, const std::string& named) {
    try {
      CreateCard(description, {});
      ADD_FAILURE() << description;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr(named));
    }
  };
  // By the words in which they were made.
  for (const std::string mistake :
       {"SAA7134", "saa7135b", "saa7134,tuner=22", "saa7134,tuner=-1", "saa7134,tuner=1x",
        "saa7134,tuner=", "saa7134,board=0x100000000", "saa7134,tunerfilter=yes",
        "saa7134,remote=radio", "saa7134,key=2", "saa7134,key=2:256", "ql2,tuner=256",
        "ql2,pin=videoinfo3", "bt878-io,eeprom=good", "cx2388x-io,key=2:3"})
    expect(mistake, mistake.substr(mistake.rfind(',') + 1));
  expect("", "unknown card \"\"");
  expect("saa7134,tuner", "\"tuner\"");
  expect("saa7134,tunr=1", "tunr");
  expect("saa7134,eeprom=/nowhere/at/all", "/nowhere/at/all");
  expect("ql2,board=1", "board");
  expect("bt878,tuner=2", "tuner type 2");
  expect("bt878,board=2", "board");
  expect("cx2388x,tuner=40", "tuner type 40");
}

}  // namespace
}  // namespace zelk::virtual_cards
