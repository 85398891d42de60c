// The MPEG-encoder card family. Unlike the other backends it has an explicit release operation.
#pragma once

#include "backends/unavailable_backend.h"

namespace zelk {

class QuillonDevice : public UnavailableBackend {
 public:
  void ReleaseInterfaces() {}
  HRESULT IsSignalPresent_DECODER(std::uint32_t*) { return E_FAIL; }
  void ReadFmReceiverStatus() {}
  HRESULT PutTVSystem(std::uint32_t, std::uint32_t) { return E_FAIL; }
  HRESULT GetMPEGParam(ZELK_MpegParams*) { return E_FAIL; }
  HRESULT SetMPEGParam(const ZELK_MpegParams&) { return E_FAIL; }
  bool ReadI2C(std::uint8_t, std::uint8_t*, std::uint32_t) { return false; }
  bool WriteI2C(std::uint8_t, const std::uint8_t*, std::uint32_t) { return false; }
  HRESULT SetAdcVolume() { return E_FAIL; }
};

}  // namespace zelk
