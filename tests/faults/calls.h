// The calls that the library makes to what it does not own: drivers, COM, the system, I/O
// libraries. Each of them passes here and may be made to fail, to succeed oddly, to lie, or to let
// an application in.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <string>

#include "platform/com.h"

namespace zelk::faults {

// What happens to a call.
enum class Fate {
  Done,     // it is carried out
  Refused,  // it fails, and leaves rubbish where an answer belongs
  Odd,      // it is carried out, and succeeds with another code than S_OK
  Lied,     // it answers anything
};

// What is to happen to the calls of a run.
struct Plan {
  Fate fate = Fate::Done;
  int first = 0;        // the first call that it happens to, from 1; 0 for none
  bool onward = false;  // and to all behind it
  int oneIn = 0;        // with `first` 0: to one call in so many, by chance
  std::uint32_t seed = 1;
  int refusedAllocation = 0;  // the allocation that fails, from 1
  // Done from inside the call `first`.
  std::function<void()> visit = nullptr;
};

// Begins a run. Calls are counted, and meet their fate, while the library is at work.
void Begin(Plan plan);
// Takes the plan away; the counts stay.
void End();

struct Counts {
  int calls = 0;
  int allocations = 0;
  int faults = 0;               // calls that were not simply done, and visits
  std::set<std::string> names;  // of those calls
};
const Counts& CountsOfRun();

// The library is at work while the object lives, or (false) somebody else whom it has called.
class AtWork {
 public:
  explicit AtWork(bool library = true);
  ~AtWork();
  AtWork(const AtWork&) = delete;
  AtWork& operator=(const AtWork&) = delete;

 private:
  const bool before_;
};
bool LibraryIsAtWork();

// Counts a call of the library and says what happens to it.
Fate FateOf(const char* name);
// Counts an allocation of the library; false for one that fails.
bool MayAllocate();

// What lies are made of, the same for the same seed.
std::mt19937& Chance();
inline std::uint32_t ChanceBelow(std::uint32_t count) { return Chance()() % count; }
void FillByChance(void* bytes, std::size_t count);
// S_OK more often than not.
HRESULT CodeByChance();

inline constexpr HRESULT kRefusal = static_cast<HRESULT>(0x8007001F);

}  // namespace zelk::faults
