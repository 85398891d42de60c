#include "api/library.h"

#include <new>
#include <utility>

namespace zelk {

constinit Library library = {};

namespace {

template <class Backend>
void Destroy() {
  delete std::exchange(Slot<Backend>(), nullptr);
}

void DestroyCard() {
  library.freeing = true;
  Destroy<Saa713xDevice>();
  // The reverse of their order of trial.
  Destroy<Bt88xDevice>();
  Destroy<Bt878Device>();
  if (QuillonDevice* quillon = Slot<QuillonDevice>()) quillon->ReleaseInterfaces();
  Destroy<QuillonDevice>();
  library.freeing = false;
}

// Makes the family's object, lets it stand in its slot while it initialises, and keeps it if it
// accepts the card. Memory that cannot be had counts as a refusal.
template <class Backend, class... Arguments>
HRESULT Try(Arguments... arguments) {
  Backend*& slot = Slot<Backend>();
  slot = new (std::nothrow) Backend;
  HRESULT result = E_FAIL;
  if (slot) {
    const CardCall call;
    result = slot->HWInit(arguments...);
  }
  // Freed meanwhile, the object is gone already.
  if (FAILED(result)) Destroy<Backend>();
  return result;
}

}  // namespace

void DestroyFreedCard() {
  DestroyCard();
  library.freed = false;
}

}  // namespace zelk

using namespace zelk;

void ZELK_CALL ZELK_Free(void) {
  if (library.freeing) return;
  if (library.trial == Library::Trial::Running) library.trial = Library::Trial::Ended;
  library.ScanRunning = false;
  library.FmScanCallback = nullptr;
  if (library.cardCalls > 0) {
    library.freed = true;
  } else {
    DestroyCard();
  }
}

HRESULT ZELK_CALL ZELK_HWInit(IUnknown* videoCaptureFilter, const char* friendlyName,
                              IUnknown* tunerFilter, uint32_t russiaFlag) {
  using Trial = Library::Trial;
  if (library.freeing) return E_FAIL;
  const bool nested = library.trial != Trial::None;
  ZELK_Free();
  // The I/O libraries and what they know of a card are one for the whole process: no card is tried
  // while another still uses them.
  if (nested || library.freed) return E_FAIL;

  library.trial = Trial::Running;
  const auto failed = [](HRESULT code) { return FAILED(code) && library.trial == Trial::Running; };
  HRESULT result = Try<Saa713xDevice>(videoCaptureFilter, friendlyName, tunerFilter,
                                      static_cast<std::uint8_t>(russiaFlag));
  if (failed(result)) result = Try<Bt878Device>(videoCaptureFilter, friendlyName, tunerFilter);
  if (failed(result)) result = Try<Bt88xDevice>(videoCaptureFilter, friendlyName, tunerFilter);
  if (failed(result)) result = Try<QuillonDevice>(videoCaptureFilter, friendlyName, tunerFilter);
  const bool kept = SUCCEEDED(result) && library.trial == Trial::Running;
  library.trial = Trial::None;
  if (const Saa713xDevice* const card = Live<Saa713xDevice>(); card && kept) {
    library.AlpsTsehTsej = card->GetAlpsTsehTsej();
    library.AlpsTsez = card->GetAlpsTsez();
  }
  return kept ? result : E_FAIL;
}
