#include "tests/faults/calls.h"

#include <cstring>
#include <utility>

namespace zelk::faults {
namespace {

Plan plan;
Counts counts;
bool running = false;
bool libraryAtWork = false;
std::mt19937 chance;

}  // namespace

void Begin(Plan wanted) {
  plan = std::move(wanted);
  counts = {};
  chance.seed(plan.seed);
  running = true;
}

void End() {
  plan = {};
  running = false;
}

const Counts& CountsOfRun() { return counts; }

AtWork::AtWork(bool library) : before_(std::exchange(libraryAtWork, library)) {}
AtWork::~AtWork() { libraryAtWork = before_; }
bool LibraryIsAtWork() { return libraryAtWork; }

Fate FateOf(const char* name) {
  if (!running) return Fate::Done;
  const int call = ++counts.calls;
  const bool meant = plan.first > 0 ? call == plan.first || (plan.onward && call > plan.first)
                                    : plan.oneIn > 0 && ChanceBelow(plan.oneIn) == 0;
  if (!meant) return Fate::Done;
  ++counts.faults;
  counts.names.insert(name);
  if (const auto visit = std::exchange(plan.visit, nullptr)) {
    const AtWork outside(false);
    visit();
  }
  return plan.fate;
}

bool MayAllocate() {
  if (!running || ++counts.allocations != plan.refusedAllocation) return true;
  ++counts.faults;
  counts.names.insert("operator new");
  return false;
}

std::mt19937& Chance() { return chance; }

// Drivers that answer nothing answer zeros or ones.
void FillByChance(void* bytes, std::size_t count) {
  const std::uint32_t kind = ChanceBelow(4);
  if (kind == 0) std::memset(bytes, 0xFF, count);
  if (kind == 1) std::memset(bytes, 0, count);
  if (kind < 2) return;
  for (std::size_t i = 0; i < count; ++i) {
    static_cast<std::uint8_t*>(bytes)[i] = static_cast<std::uint8_t>(Chance()());
  }
}

HRESULT CodeByChance() {
  constexpr HRESULT kCodes[] = {S_OK,   S_OK,          S_OK,      S_OK,       S_FALSE,
                                E_FAIL, E_OUTOFMEMORY, E_NOTIMPL, 0x7FFFFFFF, kRefusal};
  return kCodes[ChanceBelow(std::size(kCodes))];
}

}  // namespace zelk::faults
