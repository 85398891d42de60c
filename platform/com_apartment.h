// COM on the calling thread, for as long as the object lives. Windows refuses every COM call on a
// thread that has none.
#pragma once

#include <stdexcept>

#include "platform/com.h"

namespace zelk {

class ComApartment {
 public:
  // A thread whose COM was initialised for several threads keeps it as it is.
  ComApartment() : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {
    constexpr HRESULT kChangedMode = static_cast<HRESULT>(0x80010106);
    if (FAILED(result_) && result_ != kChangedMode)
      throw std::runtime_error("COM cannot be initialised");
  }
  ~ComApartment() {
    if (SUCCEEDED(result_)) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  const HRESULT result_;
};

}  // namespace zelk
