// The enumerator that COM asks of every collection: Next, Skip, Reset, Clone over a snapshot.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "platform/com_object.h"
#include "platform/com_ptr.h"

namespace zelk {

template <class EnumInterface, class Item>
class Enumerator : public ComObject<EnumInterface> {
 public:
  explicit Enumerator(std::vector<ComPtr<Item>> items, std::size_t position = 0)
      : items_(std::move(items)), position_(position) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, Item** items, ULONG* fetched) override {
    if (fetched) *fetched = 0;
    if (!items) return E_POINTER;
    if (count > 1 && !fetched) return E_INVALIDARG;
    const ULONG given = AtMost(count);
    for (ULONG i = 0; i < given; ++i) items[i] = ComPtr<Item>(items_[position_++]).Detach();
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const ULONG skipped = AtMost(count);
    position_ += skipped;
    return skipped == count ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Clone(EnumInterface** clone) override {
    if (!clone) return E_POINTER;
    *clone = new Enumerator(items_, position_);
    return S_OK;
  }

 private:
  ULONG AtMost(ULONG count) const {
    return static_cast<ULONG>(std::min<std::size_t>(count, items_.size() - position_));
  }

  const std::vector<ComPtr<Item>> items_;
  std::size_t position_;
};

}  // namespace zelk
