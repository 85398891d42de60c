// A card's video decoder as IAMAnalogVideoDecoder shows it.
#pragma once

#include <memory>
#include <utility>

#include "platform/dshow.h"
#include "virtual_cards/cards/request_gate.h"
#include "virtual_cards/chips/tv_standard.h"

namespace zelk::virtual_cards {

// `Base` is a filter with the interface and a Gate(). `Hardware` has HorizontalLocked(),
// VideoStandard() and SetVideoStandard(bit), which answers a code.
template <class Base, class Hardware>
class AnalogDecoder : public Base {
 public:
  HRESULT STDMETHODCALLTYPE get_HorizontalLocked(LONG* locked) override {
    return this->Gate().PassNumber("capture horizontal-locked", locked,
                                   [this] { return hardware_->HorizontalLocked() ? 1 : 0; });
  }
  HRESULT STDMETHODCALLTYPE get_TVFormat(LONG* standard) override {
    return this->Gate().PassNumber("capture get-format", standard,
                                   [this] { return hardware_->VideoStandard(); });
  }
  HRESULT STDMETHODCALLTYPE put_TVFormat(LONG standard) override {
    return this->Gate().Pass(
        [=](TraceLine& line) {
          line.Text("capture put-format ").Word(static_cast<ULONG>(standard));
        },
        [=, this] { return hardware_->SetVideoStandard(static_cast<std::uint32_t>(standard)); });
  }
  HRESULT STDMETHODCALLTYPE get_NumberOfLines(LONG* lines) override {
    return this->Gate().PassNumber("capture number-of-lines", lines, [this] {
      return DescribeStandard(hardware_->VideoStandard()).lines;
    });
  }
  // What these drivers leave out.
  HRESULT STDMETHODCALLTYPE get_AvailableTVFormats(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_VCRHorizontalLocking(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VCRHorizontalLocking(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_OutputEnable(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_OutputEnable(LONG*) override { return E_NOTIMPL; }

 protected:
  template <class... Arguments>
  explicit AnalogDecoder(std::shared_ptr<Hardware> hardware, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), hardware_(std::move(hardware)) {}

  const std::shared_ptr<Hardware> hardware_;
};

}  // namespace zelk::virtual_cards
