// Base of the virtual cards: filters, trace and refusals as every card has them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/dshow.h"
#include "virtual_cards/cards/card_object.h"
#include "virtual_cards/cards/registration.h"
#include "virtual_cards/cards/request_gate.h"
#include "virtual_cards/cards/virtual_card.h"

namespace zelk::virtual_cards {

// `Card` is the interface that the card offers, a VirtualCard. `Hardware` is what sits on it: it
// has a Gate(), and References(shared_ptr) answers the card's count of COM references.
template <class Card, class Hardware>
class PluggedCard : public Card {
 public:
  // The trace may be gone when the last of the application's objects goes.
  ~PluggedCard() override { hardware_->Gate().AttachTrace(nullptr); }

  const std::string& FriendlyName() const override { return friendlyName_; }
  ComPtr<IUnknown> CaptureFilter() override { return captureFilter_; }
  ComPtr<IUnknown> TunerFilter() override { return tunerFilter_; }
  void AttachTrace(BusTrace* trace) override { hardware_->Gate().AttachTrace(trace); }
  void Refuse(std::string_view request, HRESULT code) override {
    hardware_->Gate().Refuse(request, code);
  }
  void ClearRefusals() override { hardware_->Gate().ClearRefusals(); }
  int LiveReferences() const override { return *references_ - ownReferences_; }

 protected:
  PluggedCard(std::string friendlyName, std::shared_ptr<Hardware> hardware,
              ComPtr<IUnknown> captureFilter, ComPtr<IUnknown> tunerFilter)
      : hardware_(std::move(hardware)),
        references_(Hardware::References(hardware_)),
        friendlyName_(std::move(friendlyName)),
        captureFilter_(std::move(captureFilter)),
        tunerFilter_(std::move(tunerFilter)) {}

  // Puts the filters among the system's devices, where applications look for them.
  void RegisterFilters() {
    if (captureFilter_)
      captureDevice_.emplace(kCategoryVideoInput, WideName(friendlyName_), captureFilter_.Get());
    if (tunerFilter_)
      tunerDevice_.emplace(kCategoryTvTuner, WideName(TunerNameBeside(friendlyName_)),
                           tunerFilter_.Get());
  }
  // To be called when everything is made and registered: what the card itself and its registrations
  // hold is nobody else's.
  void CountOwnReferences() { ownReferences_ = *references_; }

  const std::shared_ptr<Hardware> hardware_;

 private:
  const std::shared_ptr<ReferenceCount> references_;
  const std::string friendlyName_;
  const ComPtr<IUnknown> captureFilter_;
  const ComPtr<IUnknown> tunerFilter_;
  std::optional<DeviceRegistration> captureDevice_;
  std::optional<DeviceRegistration> tunerDevice_;
  int ownReferences_ = 0;
};

}  // namespace zelk::virtual_cards
