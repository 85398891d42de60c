// A scan of the whole band allocates nothing from probe to probe: it runs for minutes on a real
// card.
#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/support/card_test.h"

namespace {

std::atomic<long> allocations;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* block = std::malloc(size ? size : 1)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++allocations;
  return std::malloc(size ? size : 1);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace zelk::test {
namespace {

class ScanHeap : public CardTest {};

long atSecondProbe;
long atLastProbe;
int probes;

TEST_F(ScanHeap, NothingIsAllocatedFromProbeToProbe) {
  for (const std::uint32_t type : {1u, 15u, 40u, 41u, 46u}) {
    PlugTv(type, MakeAir({175250, 471250}));
    ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
    probes = 0;
    ZELK_AllFreqScan(
        [](uint32_t event, uint32_t, uint32_t) {
          if (event != ZELK_EVENT_POSITION) return;
          ++probes;
          (probes < 3 ? atSecondProbe : atLastProbe) = allocations;
        },
        ZELK_SCAN_START);
    EXPECT_GT(probes, 2500);
    EXPECT_EQ(atLastProbe - atSecondProbe, 0) << "tuner type " << type;
  }
  EXPECT_GT(allocations, 0);
}

}  // namespace
}  // namespace zelk::test
