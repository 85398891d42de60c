// How a card is chosen, kept and freed, and what the exports add to the backend's answers.
#include <cstring>
#include <map>
#include <sstream>

#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;

class CardLife : public CardTest {};

constexpr char kNotOurs[] = "SAA713x: Device is not SAA713x series product from Korvane";

TEST_F(CardLife, NullArgumentsAreRefusedByName) {
  PlugTuner(1);
  const auto capture = card->CaptureFilter();
  EXPECT_EQ(ZELK_HWInit(nullptr, nullptr, nullptr, 0), E_FAIL);
  EXPECT_EQ(ZELK_HWInit(capture.Get(), nullptr, nullptr, 0), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre(kNotOurs, kNotOurs));
  EXPECT_EQ(ZELK_HWInit(nullptr, card->FriendlyName().c_str(), nullptr, 0), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x: Get Video Capture IKsPropertySet interface fail"));
}

TEST_F(CardLife, NamesAreComparedExactly) {
  PlugTuner(1);
  const auto capture = card->CaptureFilter();
  for (const char* name :
       {"korvane, Telmora WDM Video Capture (7134)", "Korvane, Telmora WDM Video Capture (7134) ",
        "Korvane, Telmora WDM Video Capture", "Grab7134", ""}) {
    EXPECT_EQ(ZELK_HWInit(capture.Get(), name, nullptr, 0), E_FAIL) << name;
    EXPECT_THAT(TakeLog(), ElementsAre(kNotOurs)) << name;
  }
  for (const char* name :
       {"Grab7134 Capture", "Korvane, Telmora WDM Video Capture (7130)",
        "Korvane, Telmora WDM Video Capture (7133/7135)",
        "Korvane, Telmora WDM Video Capture (7133)", "Korvane, Telmora WDM Video Capture (7134)",
        "Dravik Pelion (7130) WDM Video Capture", "Dravik Pelion (7134) WDM Video Capture",
        "Unknown Boardconfiguration (EEPROM not programmed or missing)",
        "ZElk Q44 WDM Video Capture", "HXA 218 WDM Video Capture", "HXA 219 WDM Video Capture",
        "Korvane, Telmora WDM Video Capture (Silicon)", "Grab7134 Capture Device",
        "Korvane, Telmora WDM Video Capture (K21)", "Korvane, Telmora WDM Video Capture (K22)"}) {
    EXPECT_EQ(ZELK_HWInit(capture.Get(), name, nullptr, 0), S_OK) << name;
  }
}

TEST_F(CardLife, SecondInitReleasesTheFirstCard) {
  PlugTuner(1);
  ASSERT_EQ(Init(), S_OK);
  const int held = card->LiveReferences();
  EXPECT_GT(held, 0);
  ASSERT_EQ(Init(), S_OK);
  EXPECT_EQ(card->LiveReferences(), held);
  // A refused card leaves none.
  EXPECT_EQ(ZELK_HWInit(nullptr, "another card", nullptr, 0), E_FAIL);
  EXPECT_EQ(card->LiveReferences(), 0);
  EXPECT_EQ(ZELK_TVInit(), E_FAIL);
}

// By tuner type.
constexpr char kTunerNames[] =
    "FI1216MK2|FM1216MK2|FI1216MF|FM1216MF|FI1236MK2|FM1236MK2|FI1246MK2|FM1246MK2|FI1256MK2|"
    "FM1256MK2|FI1286MK2|FM1286MK2|FI1236MK3|FM1236MK3|FI1216MEMK3|FM1216MEMK3|FI1286MK3|"
    "FM1286MK3|FI1256MK3|FM1256MK3|FQ1216MEMK5|FM1216MEMK5|FQ1236MK5|FM1236MK5|VP2XSR|"
    "TCL2002MI_3|TCL2002MI_3F|TCL2002MB_3|TCL2002MB_3F|TCL2002N_5|TCL2002N_5F|TNF_5831_MFI|"
    "TNF_5831_MFF|TNF_9531_BDF|TNF_9531_BDFF|VP13 - 45.75MHz for USA|VP13 - 58.75MHz for Japan|"
    "VP27 No SAP - 58.75MHz|Double Tuners (K38)|ALPS|Silicon|Silicon|TNF_5533_MF|TNF_9533_BDF|"
    "TNF_5833_MFF|TNF_9833_BDFF|ALPS_TSEH1|ALPS_TSEZ1|ALPS_TSEJ1|PARTSNIC_NTSC|PARTSNIC_NTSC_J|"
    "PARTSNIC_PAL";

TEST_F(CardLife, TunerNames) {
  // The codes of those that MPEG-encoder cards alone carry. No card has type 39.
  const std::map<int, int> codes = {{22, 24}, {23, 25}, {49, 52}, {50, 48}, {51, 50}};
  char buffer[64];
  std::istringstream names(kTunerNames);
  std::string name;
  for (int type = 0; std::getline(names, name, '|'); ++type) {
    if (type == 39) continue;
    Unplug();
    plugged = virtual_cards::CreateCard(codes.contains(type)
                                            ? "ql2,tuner=" + std::to_string(codes.at(type))
                                            : "saa7134,tuner=" + std::to_string(type),
                                        {});
    ASSERT_EQ(Init(), S_OK) << type;
    std::memset(buffer, 'x', sizeof(buffer));
    EXPECT_EQ(ZELK_GetTunerName(buffer, sizeof(buffer)), S_OK);
    name.resize(sizeof(buffer));
    EXPECT_EQ(std::string(buffer, sizeof(buffer)), name) << type;
  }
  // Size 0 zeroes nothing and the name is copied all the same.
  std::memset(buffer, 'x', sizeof(buffer));
  EXPECT_EQ(ZELK_GetTunerName(buffer, 0), S_OK);
  EXPECT_STREQ(buffer, "PARTSNIC_PAL");
  EXPECT_EQ(buffer[13], 'x');
}

TEST_F(CardLife, SearchLevelRange) {
  PlugTv(1);
  for (const int level : {-1, 0, 9, 10}) {
    EXPECT_EQ(ZELK_FM_SetSearchLevel(level), level == 0 || level == 9 ? 1 : 0) << level;
  }
}

TEST_F(CardLife, DecoderKinds) {
  const std::pair<std::uint32_t, std::uint32_t> kinds[] = {
      {0x7133, 3}, {0x7135, 3}, {0x7134, 4}, {0x7130, 0}, {0x7131, 1}, {0x7146, 0xFFFFFFFF}};
  for (const auto& [chip, kind] : kinds) {
    Plug({.chipId = chip});
    ASSERT_EQ(Init(), S_OK);
    std::uint32_t answer = 77;
    EXPECT_EQ(ZELK_GetDecoder(&answer), S_OK);
    EXPECT_EQ(answer, kind) << std::hex << chip;
    card->Refuse("capture get ZELK_SAA.74", E_FAIL);
    EXPECT_EQ(ZELK_GetDecoder(&answer), S_OK);
    EXPECT_EQ(answer, 0xFFFFFFFF);
  }
}

TEST_F(CardLife, TuningWithoutAPresencePlaceAsksForNoSignal) {
  PlugTv(1, MakeAir({175250}));
  TakeTrace();
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
  EXPECT_THAT(TakeTrace(), ::testing::Not(::testing::Contains(::testing::StartsWith("i2c read"))));
  std::uint32_t present = 0;
  EXPECT_EQ(ZELK_SetFreq(175250, &present), S_OK);
  EXPECT_EQ(present, 1u);
  // A tuning that fails is not followed by a query either.
  card->Refuse("capture set VAMP_TUNE.3 00000002", E_FAIL);
  present = 77;
  EXPECT_EQ(ZELK_SetFreq(182250, &present), E_FAIL);
  EXPECT_EQ(present, 77u);
}

}  // namespace
}  // namespace zelk::test
