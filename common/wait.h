// The one wait that hardware settling uses.
#pragma once

#include <cstdint>

namespace zelk {

// Blocks until at least `milliseconds` of system time have passed, in slices of 5 ms at a timer
// resolution of 1 ms.
void WaitMs(std::uint32_t milliseconds);

}  // namespace zelk
