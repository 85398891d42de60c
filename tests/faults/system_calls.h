// What the library holds of the system.
#pragma once

#include <functional>

namespace zelk::faults {

// Files and registry keys that are open.
int OpenHandles();

// Called as the library opens a log file.
extern std::function<void()> atLog;

}  // namespace zelk::faults
