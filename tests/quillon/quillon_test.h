// A test with a virtual MPEG-encoder card.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "api/library.h"
#include "platform/control.h"
#include "tests/support/card_test.h"
#include "virtual_cards/cards/ql2_card.h"

namespace zelk::test {

class QuillonTest : public CardTestOf<virtual_cards::Ql2Card, virtual_cards::Ql2Options> {
 protected:
  // An accepted name that no other family accepts, so that only this one is tried to the end.
  static constexpr char kName[] = "Korvane Telmora Video Capture (P260)";

  using CardTestOf::Plug;
  // Plugs and initialises a card, and forgets what that wrote.
  virtual_cards::Ql2Card& PlugReady(std::uint32_t tunerCode = 11, virtual_cards::Air air = {}) {
    Plug({.tunerCode = tunerCode, .friendlyName = kName}, std::move(air));
    EXPECT_EQ(Init(), S_OK);
    Forget();
    return *card;
  }
  virtual_cards::Ql2Card& PlugTv(std::uint32_t tunerCode = 11, virtual_cards::Air air = {}) {
    PlugReady(tunerCode, std::move(air));
    EXPECT_EQ(ZELK_TVInit(), S_OK);
    Forget();
    return *card;
  }
  virtual_cards::Ql2Card& PlugFm(std::uint32_t tunerCode = 11, virtual_cards::Air air = {}) {
    PlugReady(tunerCode, std::move(air));
    EXPECT_EQ(ZELK_FMInit(), S_OK);
    Forget();
    return *card;
  }
  void Forget() {
    TakeLog();
    TakeTrace();
    host::TakeDebugOutput();
  }

  Lines TakeLog() { return CardFixture::TakeLog("zelkapi_Quillon.log"); }

  static void UserCountry(const std::string& country) {
    std::ofstream("locale.ini") << "[locale]\ncountry=" << country << "\n";
  }
  static void ShowGraph() { std::ofstream("Telmora.ini") << "[AP_INFO]\nDebugAPI=1\n"; }
};

}  // namespace zelk::test
