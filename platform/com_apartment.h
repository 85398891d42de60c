// COM on the calling thread, for as long as the object lives. Windows refuses every COM call on a
// thread that has none.
#pragma once

#include <stdexcept>

#include "platform/com.h"

namespace zelk {

class ComApartment {
 public:
  ComApartment() {
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
      throw std::runtime_error("COM cannot be initialised");
  }
  ~ComApartment() { CoUninitialize(); }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
};

}  // namespace zelk
