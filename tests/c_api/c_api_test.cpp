// The C interface to the virtual cards, used as an application does: by its exports and those of
// the library, without a look inside.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ZElkVirtual.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class CApi : public testing::Test {
 protected:
  CApi() { EXPECT_EQ(ZELKV_UseVirtualClock(), 1); }
  ~CApi() override { PullOut(); }

  void Plug(const char* description, const char* air = nullptr) {
    card = ZELKV_PlugIn(description, air);
    EXPECT_NE(card, nullptr) << ZELKV_LastError();
  }
  void PullOut() {
    ZELK_Free();
    EXPECT_EQ(ZELKV_LiveReferences(card), 0);
    ZELKV_Unplug(card);
    card = nullptr;
  }
  HRESULT Init() {
    return ZELK_HWInit(ZELKV_CaptureFilter(card), ZELKV_FriendlyName(card), ZELKV_TunerFilter(card),
                       0);
  }

  ZELKV_Card* card = nullptr;
};

TEST_F(CApi, EveryKindCanBePluggedIn) {
  ASSERT_GT(ZELKV_KindCount(), 0U);
  for (uint32_t index = 0; index < ZELKV_KindCount(); ++index) {
    Plug(ZELKV_KindName(index));
    EXPECT_STRNE(ZELKV_KindDescription(index), "");
    EXPECT_EQ(Init(), ZELK_S_OK) << ZELKV_KindName(index);
    PullOut();
  }
  EXPECT_EQ(ZELKV_KindName(ZELKV_KindCount()), nullptr);
  EXPECT_EQ(ZELKV_KindDescription(ZELKV_KindCount()), nullptr);
}

TEST_F(CApi, PlaysWhatTheAirSays) {
  Plug("saa7134,tuner=5", "us-city");
  ASSERT_EQ(Init(), ZELK_S_OK);
  EXPECT_EQ(ZELK_TVInit(), ZELK_S_OK);
  EXPECT_EQ(ZELK_put_TVFormat(0x1, 1), ZELK_S_OK);
  uint32_t present = 0;
  const uint64_t before = ZELKV_ClockMilliseconds();
  EXPECT_EQ(ZELK_SetFreq(175250, &present), ZELK_S_OK);
  EXPECT_EQ(present, 1U);
  EXPECT_GE(ZELKV_ClockMilliseconds() - before, 80U) << "the card and the library share one clock";
  EXPECT_EQ(ZELK_SetFreq(181250, &present), ZELK_S_OK);
  EXPECT_EQ(present, 0U);
}

void ZELK_CALL Collect(const char* line, void* lines) {
  static_cast<std::vector<std::string>*>(lines)->emplace_back(line);
}

TEST_F(CApi, TraceAndRefusals) {
  Plug("saa7134,tunerfilter=0");
  EXPECT_EQ(ZELKV_TunerFilter(card), nullptr);
  std::vector<std::string> lines;
  ZELKV_Trace(card, Collect, &lines);
  ZELKV_Refuse(card, "vamp gpio", ZELK_E_FAIL);
  EXPECT_LT(Init(), 0);
  EXPECT_THAT(lines, Contains("vamp gpio -> 80004005"));

  ZELKV_ClearRefusals(card);
  ZELKV_Trace(card, nullptr, nullptr);
  lines.clear();
  EXPECT_EQ(Init(), ZELK_S_OK);
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(CApi, MistakesAreNamed) {
  EXPECT_EQ(ZELKV_PlugIn("saa7134,tuner=22", nullptr), nullptr);
  EXPECT_THAT(ZELKV_LastError(), HasSubstr("tuner=22"));
  EXPECT_EQ(ZELKV_PlugIn(nullptr, "atlantis"), nullptr);
  EXPECT_THAT(ZELKV_LastError(), HasSubstr("atlantis"));
  EXPECT_EQ(ZELKV_PlugIn(nullptr, std::string(2000, 'x').c_str()), nullptr);
  EXPECT_THAT(ZELKV_LastError(), HasSubstr("xxx"));

  Plug(nullptr);
  EXPECT_STREQ(ZELKV_LastError(), "");
  EXPECT_EQ(ZELKV_PlugIn(nullptr, nullptr), nullptr) << "one card at a time";
  EXPECT_STRNE(ZELKV_LastError(), "");
  EXPECT_EQ(Init(), ZELK_S_OK) << "the first one is unharmed";
}

TEST_F(CApi, NullCard) {
  EXPECT_EQ(ZELKV_CaptureFilter(nullptr), nullptr);
  EXPECT_EQ(ZELKV_TunerFilter(nullptr), nullptr);
  EXPECT_EQ(ZELKV_FriendlyName(nullptr), nullptr);
  ZELKV_Trace(nullptr, Collect, nullptr);
  ZELKV_Refuse(nullptr, "vamp", ZELK_E_FAIL);
  ZELKV_ClearRefusals(nullptr);
  ZELKV_Unplug(nullptr);
}

}  // namespace
