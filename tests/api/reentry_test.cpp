// The library called from where it is at work: from a window procedure in the middle of a probe,
// and from inside a driver's call.
#include "api/library.h"
#include "platform/control.h"
#include "tests/support/card_test.h"
#include "tests/support/message_window.h"

namespace zelk::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Strings = std::vector<std::string>;

class Reentry : public CardFixture {
 protected:
  // Plugs a card in, in place of the one that was there, and initialises it.
  void PlugReady(const char* description, virtual_cards::Air air = {}) {
    Unplug();
    plugged = virtual_cards::CreateCard(description, std::move(air));
    EXPECT_EQ(Init(), S_OK) << description;
  }

  // What the library holds of the card.
  int Held() const {
    return plugged->LiveReferences() + host::ModuleLoadCount("PioGate.dll") +
           host::ModuleLoadCount("PioGate880.dll");
  }

  static Strings Found() {
    Strings found;
    for (const std::string& event : scanEvents) {
      if (event.starts_with("1003")) found.push_back(event);
    }
    return found;
  }
};

// --- From a window procedure ---

TEST_F(Reentry, StopFinishesTheCurrentProbe) {
  MessageWindow window;
  PlugReady("saa7134,tuner=1", MakeAir({48250}));
  ZELK_TVInit();
  window.AtNextMessage([] { EXPECT_EQ(ZELK_AllFreqScan(nullptr, ZELK_SCAN_STOP), S_OK); });
  EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), S_FALSE);
  EXPECT_THAT(scanEvents, ElementsAre("1001 0", "1003 48250", "1002 0", "1004 53500", "1005 0"));
}

// The carrier is seen, and then the card goes: there is no decoder to confirm it.
TEST_F(Reentry, CardFreedInTheMiddleOfATvProbe) {
  MessageWindow window;
  for (const char* card : {"saa7134,tuner=1", "saa7134,tuner=46", "saa7134,tuner=47", "bt878",
                           "cx2388x", "ql2,tuner=11"}) {
    PlugReady(card, MakeAir({48250, 55250}));
    ZELK_TVInit();
    ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
    scanEvents.clear();
    window.AtNextMessage(ZELK_Free);
    EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), S_FALSE);
    EXPECT_THAT(Found(), IsEmpty()) << card;
    EXPECT_EQ(scanEvents.back(), "1005 0");
    EXPECT_EQ(scanEvents.size(), 4u);
    EXPECT_EQ(Held(), 0);
  }
}

// Whoever is live when the decoder is asked answers for it, on whatever it is tuned to.
TEST_F(Reentry, CardExchangedInTheMiddleOfATvProbe) {
  MessageWindow window;
  for (const bool tunes : {false, true}) {
    for (const char* next : {"saa7134,tuner=1", "bt878", "cx2388x", "ql2,tuner=11"}) {
      PlugReady("saa7134,tuner=1", MakeAir({48250}));
      ZELK_TVInit();
      scanEvents.clear();
      window.AtNextMessage([&] {
        PlugReady(next, MakeAir({183250}));
        ZELK_TVInit();
        ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
        if (tunes) ZELK_SetFreq(183250, nullptr);
        TakeTrace();
      });
      EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), S_FALSE);
      EXPECT_EQ(Found(), tunes ? Strings{"1003 48250"} : Strings{}) << next;
      EXPECT_THAT(TakeTrace(), Contains(StartsWith("capture horizontal-locked"))) << next;
    }
  }
}

// An FM scan goes on reading the card that took the place of its own, and gives it the audio mode
// that its own had.
TEST_F(Reentry, CardExchangedInTheMiddleOfAnFmProbe) {
  MessageWindow window;
  PlugReady("saa7134,tuner=1");
  ZELK_FMInit();
  ZELK_FMSetAudioMode(0);
  window.AtNextMessage([&] {
    PlugReady("bt878", {});
    ZELK_FMInit();
    TakeTrace();
  });
  EXPECT_EQ(ZELK_FMAllFreqScan(RecordScanEvent, ZELK_SCAN_START, 0, 0, 98000, 99000), S_OK);
  // Freeing the first card silences the scan.
  EXPECT_THAT(scanEvents, ElementsAre("1001 0"));
  const Strings trace = TakeTrace();
  EXPECT_THAT(trace, Contains(StartsWith("i2c read-byte")));
  EXPECT_THAT(trace, Contains("i2c write-byte A7 -> ack")) << "forced mono";
}

// --- From inside a driver's call ---

// While the object lives: does something when the card is busy with its nth request.
class Visit final : public virtual_cards::BusTrace {
 public:
  Visit(virtual_cards::VirtualCard& card, int request, std::function<void()> action)
      : card_(card), left_(request), action_(std::move(action)) {
    card_.AttachTrace(this);
  }
  ~Visit() { card_.AttachTrace(nullptr); }
  void Line(std::string_view) override {
    if (--left_ == 0) action_();
  }
  bool HasBeen() const { return left_ <= 0; }

 private:
  virtual_cards::VirtualCard& card_;
  int left_;
  const std::function<void()> action_;
};

// A tuning whose card goes meanwhile answers for itself and is not followed by a query. The object
// lives until it has returned, and so long there is no other card.
TEST_F(Reentry, AFreedCardIsAskedNothingMore) {
  PlugReady("saa7134,tuner=1", MakeAir({175250}));
  ZELK_TVInit();
  const Visit visit(*plugged, 1, [&] {
    ZELK_Free();
    EXPECT_EQ(Init(), E_FAIL);
    EXPECT_NE(Held(), 0);
  });
  std::uint32_t present = 77;
  EXPECT_EQ(ZELK_SetFreq(182250, &present), S_OK);
  EXPECT_TRUE(visit.HasBeen());
  EXPECT_EQ(present, 77u);
  EXPECT_EQ(Held(), 0);
  EXPECT_EQ(ZELK_SetFreq(182250, &present), E_FAIL);
}

// ZELK_Free and ZELK_HWInit end a ZELK_HWInit that is under way: no other family is tried.
TEST_F(Reentry, FreeOrInitFromInsideInit) {
  const auto init = [&] { EXPECT_EQ(Init(), E_FAIL); };
  for (const std::function<void()>& action : {std::function<void()>(ZELK_Free), {init}}) {
    for (const char* const description : {"saa7134,tuner=47", "bt878", "cx2388x", "ql2"}) {
      for (int request = 1;; ++request) {
        Unplug();
        plugged = virtual_cards::CreateCard(description, {});
        library.AlpsTsez = 7;
        const Visit visit(*plugged, request, action);
        const HRESULT result = Init();
        if (!visit.HasBeen()) break;
        EXPECT_EQ(result, E_FAIL) << description << " request " << request;
        EXPECT_EQ(Held(), 0) << description << " request " << request;
        EXPECT_EQ(library.AlpsTsez, 7);
      }
    }
  }
}

TEST_F(Reentry, FreeAndInitFromInsideFreeDoNothing) {
  for (const char* const description : {"bt878-io", "cx2388x-io,tuner=1"}) {
    PlugReady(description);
    const Visit visit(*plugged, 1, [&] {
      ZELK_Free();
      EXPECT_EQ(Init(), E_FAIL);
    });
    ZELK_Free();
    EXPECT_TRUE(visit.HasBeen());
    EXPECT_EQ(Held(), 0);
  }
}

}  // namespace
}  // namespace zelk::test
