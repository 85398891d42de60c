// A lock for what may be reached from several threads. The Windows compiler in use has no threads
// in its standard library and therefore no std::mutex.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <mutex>
#endif

namespace zelk {

#ifdef _WIN32
class Mutex {
 public:
  Mutex() { InitializeCriticalSection(&section_); }
  ~Mutex() { DeleteCriticalSection(&section_); }
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void lock() { EnterCriticalSection(&section_); }
  void unlock() { LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_;
};
#else
using Mutex = std::mutex;
#endif

}  // namespace zelk
