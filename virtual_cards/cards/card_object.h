// Base of a virtual card's COM objects: a ComObject whose references are counted for the whole
// card.
#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "platform/com_object.h"

namespace zelk::virtual_cards {

using ReferenceCount = std::atomic<int>;

template <class... Interfaces>
class CardObject : public ComObject<Interfaces...> {
 public:
  ULONG STDMETHODCALLTYPE AddRef() override {
    ++*references_;
    return ComObject<Interfaces...>::AddRef();
  }
  ULONG STDMETHODCALLTYPE Release() override {
    --*references_;
    return ComObject<Interfaces...>::Release();
  }

 protected:
  explicit CardObject(std::shared_ptr<ReferenceCount> references)
      : references_(std::move(references)) {
    ++*references_;  // the one that every object starts with
  }

 private:
  std::shared_ptr<ReferenceCount> references_;
};

}  // namespace zelk::virtual_cards
