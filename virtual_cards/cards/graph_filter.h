// What makes a virtual card's filter a member of a filter graph: its seat in the graph, and its
// pins.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/com_ptr.h"
#include "platform/dshow.h"
#include "platform/enumerator.h"
#include "virtual_cards/cards/filter_pin.h"
#include "virtual_cards/cards/request_gate.h"

namespace zelk::virtual_cards {

// What a filter keeps for the graph that it is in.
class FilterSeat {
 public:
  // Null leaves the graph.
  HRESULT Join(IFilterGraph* graph, LPCWSTR name);
  HRESULT Describe(FILTER_INFO* info) const;
  HRESULT SetClock(IReferenceClock* clock);
  HRESULT GetClock(IReferenceClock** clock) const;
  HRESULT SetState(FILTER_STATE state);
  HRESULT GetState(FILTER_STATE* state) const;

 private:
  IFilterGraph* graph_ = nullptr;  // not counted: the graph holds its filters
  std::wstring name_;
  ComPtr<IReferenceClock> clock_;
  FILTER_STATE state_ = State_Stopped;
};

// Carries out IBaseFilter. `Base` is a card's object with that interface.
template <class Base>
class GraphFilter : public Base {
 public:
  // --- IPersist, IMediaFilter ---
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override {
    if (!classId) return E_POINTER;
    *classId = kClsidKsProxy;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Stop() override { return seat_.SetState(State_Stopped); }
  HRESULT STDMETHODCALLTYPE Pause() override { return seat_.SetState(State_Paused); }
  HRESULT STDMETHODCALLTYPE Run(REFERENCE_TIME) override { return seat_.SetState(State_Running); }
  HRESULT STDMETHODCALLTYPE GetState(DWORD, FILTER_STATE* state) override {
    return seat_.GetState(state);
  }
  HRESULT STDMETHODCALLTYPE SetSyncSource(IReferenceClock* clock) override {
    return seat_.SetClock(clock);
  }
  HRESULT STDMETHODCALLTYPE GetSyncSource(IReferenceClock** clock) override {
    return seat_.GetClock(clock);
  }

  // --- IBaseFilter ---
  HRESULT STDMETHODCALLTYPE EnumPins(IEnumPins** pins) override {
    return graphGate_.Pass([this](TraceLine& line) { line.Text(filter_).Text(" enum-pins"); },
                           [&] {
                             if (!pins) return E_POINTER;
                             *pins = new Enumerator<IEnumPins, ComPtr<IPin>>(SharedPins());
                             return S_OK;
                           });
  }
  HRESULT STDMETHODCALLTYPE FindPin(LPCWSTR id, IPin** pin) override {
    if (!id || !pin) return E_POINTER;
    *pin = nullptr;
    for (const auto& own : pins_) {
      if (own->Name() == id) *pin = ComPtr<IPin>(own.get()).Detach();
    }
    return *pin ? S_OK : VFW_E_NOT_FOUND;
  }
  HRESULT STDMETHODCALLTYPE QueryFilterInfo(FILTER_INFO* info) override {
    return seat_.Describe(info);
  }
  HRESULT STDMETHODCALLTYPE JoinFilterGraph(IFilterGraph* graph, LPCWSTR name) override {
    return seat_.Join(graph, name);
  }
  // These drivers name no vendor.
  HRESULT STDMETHODCALLTYPE QueryVendorInfo(LPWSTR* vendor) override {
    if (vendor) *vendor = nullptr;
    return E_NOTIMPL;
  }

 protected:
  // `filter` names the filter in the trace; it and the gate must outlive the object.
  template <class... Arguments>
  GraphFilter(RequestGate& gate, std::string_view filter, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), graphGate_(gate), filter_(filter) {}

  // Adds a pin behind those already there.
  template <class Pin, class... Arguments>
  Pin& AddPin(Arguments&&... arguments) {
    auto pin = std::make_unique<Pin>(PinOwner{*this, graphGate_, filter_},
                                     std::forward<Arguments>(arguments)...);
    Pin& added = *pin;
    pins_.push_back(std::move(pin));
    return added;
  }

 private:
  std::vector<ComPtr<IPin>> SharedPins() const {
    std::vector<ComPtr<IPin>> shared;
    for (const auto& pin : pins_) shared.emplace_back(pin.get());
    return shared;
  }

  RequestGate& graphGate_;
  const std::string_view filter_;
  FilterSeat seat_;
  std::vector<std::unique_ptr<FilterPin>> pins_;
};

}  // namespace zelk::virtual_cards
