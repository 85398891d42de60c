// Cards built on the Bt878.
#pragma once

#include "backends/unavailable_backend.h"

namespace zelk {

class Bt878Device : public UnavailableBackend {
 public:
  virtual ~Bt878Device() = default;
};

}  // namespace zelk
