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

// Makes one call of the card that is live now, if it is one of `Backends`; answers whether it is. A
// scan asks anew at each call: a callback or a window procedure may free the card between two of
// them, or put another in its place.
template <class... Backends, class Operation>
bool Ask(Operation&& operation) {
  bool asked = false;
  Dispatch<Backends...>(S_OK, [&](auto& card) {
    operation(card);
    asked = true;
    return S_OK;
  });
  return asked;
}

// The same for a card of any family.
template <class Operation>
bool AskAny(Operation&& operation) {
  return Ask<Saa713xDevice, Bt878Device, Bt88xDevice, QuillonDevice>(operation);
}

}  // namespace zelk
