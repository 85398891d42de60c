#pragma once

#include "tests/record/cards.h"

namespace zelk::record {

// Both scans, each time with one thing done at one moment: at an event, or by a window procedure
// while a probe looks at the thread's messages.
void InterruptedScans(const SetUp& setUp);

}  // namespace zelk::record
