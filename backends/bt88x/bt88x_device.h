// Cards built on the Conexant CX2388x.
#pragma once

#include "backends/unavailable_backend.h"

namespace zelk {

class Bt88xDevice : public UnavailableBackend {
 public:
  virtual ~Bt88xDevice() = default;
};

}  // namespace zelk
