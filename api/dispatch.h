// How an export reaches the live card.
#pragma once

#include "api/library.h"

namespace zelk {

// Calls `operation` with the first live card among `Backends`, in their order, and answers its
// result; `none` when none of them is live.
template <class... Backends, class Operation>
HRESULT Dispatch(HRESULT none, Operation&& operation) {
  HRESULT result = none;
  const auto tryOne = [&](auto* card) {
    if (card) result = operation(*card);
    return card != nullptr;
  };
  static_cast<void>((tryOne(Slot<Backends>()) || ...));
  return result;
}

}  // namespace zelk
