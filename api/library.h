// The library's state: one live card at most, in the slot of its family, and the scan that may be
// running on it. Nothing is created when the library is loaded and nothing is freed when it is
// unloaded.
//
// A driver's call may pump messages, and so an application may call ZELK_Free or ZELK_HWInit from
// inside one. The card's object then lives on until the operation that made the call has returned.
#pragma once

#include <atomic>
#include <cstdint>
#include <tuple>

#include "ZElkAPI.h"
#include "backends/bt878/bt878_device.h"
#include "backends/bt88x/bt88x_device.h"
#include "backends/quillon/quillon_device.h"
#include "backends/saa713x/saa713x_device.h"

namespace zelk {

struct Library {
  // A slot owns its object; ZELK_HWInit and ZELK_Free alone write it. The objects are destroyed by
  // ZELK_Free, never by a destructor at process exit, where their drivers may be gone.
  std::tuple<Saa713xDevice*, Bt878Device*, Bt88xDevice*, QuillonDevice*> slots;

  // Copies of the SAA713x backend's flags from the last time such a card was kept. They choose the
  // TV scan's strategy and outlive the card.
  std::uint8_t AlpsTsehTsej;
  std::uint8_t AlpsTsez;

  // True while a scan loop runs; the TV scan and the FM scan share it. Atomic, because another
  // thread may stop either.
  std::atomic<bool> ScanRunning;
  // The callback of the FM scan, library-wide so that ZELK_Free can silence it.
  ZELK_ScanCallback FmScanCallback;

  // Operations of the card in the slots that have not returned.
  std::uint32_t cardCalls;
  // The application has freed that card meanwhile: it is live no more and goes with the last of
  // them.
  bool freed;
  // A card is being destroyed, at once or late.
  bool freeing;
  // Whether ZELK_HWInit is trying families, and whether a later call has ended that.
  enum class Trial : std::uint8_t { None, Running, Ended } trial;
};

extern constinit Library library;

template <class Backend>
Backend*& Slot() {
  return std::get<Backend*>(library.slots);
}

// Null when the live card, if there is one, is of another family.
template <class Backend>
Backend* Live() {
  return library.freed ? nullptr : Slot<Backend>();
}

// Destroys the card that was freed while its operations ran.
void DestroyFreedCard();

// To be held while an operation of the card runs.
class CardCall {
 public:
  CardCall() { ++library.cardCalls; }
  ~CardCall() {
    if (--library.cardCalls == 0 && library.freed) DestroyFreedCard();
  }
  CardCall(const CardCall&) = delete;
  CardCall& operator=(const CardCall&) = delete;
};

}  // namespace zelk
