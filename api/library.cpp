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

// Makes the family's object, lets it stand in its slot while it initialises, and keeps it if it
// accepts the card. Memory that cannot be had counts as a refusal.
template <class Backend, class... Arguments>
HRESULT Try(Arguments... arguments) {
  Backend*& slot = Slot<Backend>();
  slot = new (std::nothrow) Backend;
  const HRESULT result = slot ? slot->HWInit(arguments...) : E_FAIL;
  if (FAILED(result)) Destroy<Backend>();
  return result;
}

}  // namespace
}  // namespace zelk

using namespace zelk;

void ZELK_CALL ZELK_Free(void) {
  ++library.freeCount;
  library.ScanRunning = false;
  library.FmScanCallback = nullptr;
  Destroy<Saa713xDevice>();
  // The reverse of their order of trial.
  Destroy<Bt88xDevice>();
  Destroy<Bt878Device>();
  if (QuillonDevice* quillon = Slot<QuillonDevice>()) quillon->ReleaseInterfaces();
  Destroy<QuillonDevice>();
}

HRESULT ZELK_CALL ZELK_HWInit(IUnknown* videoCaptureFilter, const char* friendlyName,
                              IUnknown* tunerFilter, uint32_t russiaFlag) {
  ZELK_Free();
  HRESULT result = Try<Saa713xDevice>(videoCaptureFilter, friendlyName, tunerFilter,
                                      static_cast<std::uint8_t>(russiaFlag));
  if (SUCCEEDED(result)) {
    library.AlpsTsehTsej = Slot<Saa713xDevice>()->GetAlpsTsehTsej();
    library.AlpsTsez = Slot<Saa713xDevice>()->GetAlpsTsez();
    return result;
  }
  result = Try<Bt878Device>(videoCaptureFilter, friendlyName, tunerFilter);
  if (FAILED(result)) result = Try<Bt88xDevice>(videoCaptureFilter, friendlyName, tunerFilter);
  if (FAILED(result)) result = Try<QuillonDevice>(videoCaptureFilter, friendlyName, tunerFilter);
  return SUCCEEDED(result) ? result : E_FAIL;
}
