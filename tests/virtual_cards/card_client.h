// A plugged-in card of any family, and the interfaces of its filters that a driver library takes.
#pragma once

#include "model_test.h"
#include "platform/com_ptr.h"
#include "platform/property_request.h"
#include "virtual_cards/cards/virtual_card.h"

namespace zelk::virtual_cards {

// All interfaces are released with the object.
struct CardClient {
  ComPtr<IKsPropertySet> capture, tuner;
  ComPtr<IAMAnalogVideoDecoder> videoDecoder;
  ComPtr<IAMTVTuner> tvTuner;

  explicit CardClient(VirtualCard& card) {
    EXPECT_EQ(Query(card.CaptureFilter().Get(), capture), S_OK);
    EXPECT_EQ(Query(card.CaptureFilter().Get(), videoDecoder), S_OK);
    Query(card.TunerFilter().Get(), tuner);
    Query(card.TunerFilter().Get(), tvTuner);
  }

  HRESULT Tune(ULONG hertz, ULONG country) const {
    KSPROPERTY_TUNER_FREQUENCY_S request{};
    request.Frequency = hertz;
    request.Country = country;
    return SetProperty(tuner.Get(), kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, request);
  }
  bool Locked() const {
    LONG locked = -1;
    EXPECT_EQ(videoDecoder->get_HorizontalLocked(&locked), S_OK);
    return locked == 1;
  }
};

// `Card` is the family's card, `Options` what one is made from. It is a failure when a test holds
// something of the card when it ends or plugs in another.
template <class Card, class Options>
class CardModelTest : public ModelTest {
 protected:
  ~CardModelTest() override { Unplug(); }

  void Unplug() {
    if (card_) {
      EXPECT_EQ(card_->LiveReferences(), 0);
    }
    card_.reset();
  }
  Card& Plug(const Options& options, Air air = {}) {
    Unplug();
    card_ = Card::Create(options, std::move(air));
    return *card_;
  }
  void Listen() { card_->AttachTrace(&trace_); }

  std::unique_ptr<Card> card_;
  RecordedTrace trace_;
};

}  // namespace zelk::virtual_cards
