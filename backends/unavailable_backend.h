// A card family that this build does not drive yet: it refuses every card. Its class already stands
// in its slot, so that selection, teardown and dispatch are those of the finished library.
#pragma once

#include <cstdint>

#include "ZElkAPI.h"
#include "platform/dshow.h"

namespace zelk {

class UnavailableBackend {
 public:
  HRESULT HWInit(IUnknown*, const char*, IUnknown*) { return E_FAIL; }
  HRESULT InitialTV() { return E_FAIL; }
  HRESULT InitialFM(std::uint32_t) { return E_FAIL; }
  HRESULT SetTVFormat(std::uint32_t, std::uint32_t) { return E_FAIL; }
  HRESULT GetHWInfo(ZELK_HWInfo*) { return E_FAIL; }
  HRESULT SetTVFreq(std::uint32_t) { return E_FAIL; }
  HRESULT IsSignalPresent_TUNER(std::uint32_t*, std::uint32_t*, double*) { return E_FAIL; }
  HRESULT IsSignalPresent_DECODER(std::uint32_t*, std::uint32_t*) { return E_FAIL; }
  HRESULT SetFMFreq(std::uint32_t) { return E_FAIL; }
  HRESULT IsFMSignalPresent(std::uint32_t*, std::uint32_t*, double*) { return E_FAIL; }
  HRESULT SetFMAudioMode(std::uint32_t) { return E_FAIL; }
  HRESULT GetFMAudioMode(std::uint32_t*) { return E_FAIL; }
  HRESULT GetFMStatusByte(std::uint8_t*, std::uint8_t*) { return E_FAIL; }
  void SetFMTuneFlag(std::uint32_t) {}
  HRESULT GetRemoteData(std::uint32_t*) { return E_FAIL; }
  HRESULT GetTunerType(std::uint32_t*) { return E_FAIL; }
  HRESULT SetHWLock(std::uint32_t, std::uint32_t) { return E_FAIL; }
  HRESULT GetHWLock(std::uint32_t, std::uint32_t*) { return E_FAIL; }
  HRESULT ReadEEPROM(std::uint8_t, std::uint8_t*) { return E_FAIL; }
};

}  // namespace zelk
