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
    if (!card) return false;
    const CardCall call;
    result = operation(*card);
    return true;
  };
  static_cast<void>((tryOne(Live<Backends>()) || ...));
  return result;
}

}  // namespace zelk
