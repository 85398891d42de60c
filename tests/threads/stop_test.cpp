// The one call that may come from another thread: the TV scan's stop, which stops either scan.
// Built with the thread sanitizer (preset native-thread) this program shows that nothing else is
// shared.
#include <atomic>
#include <thread>

#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

class StopFromAnotherThread : public CardTest {};

// Relaxed: the threads are not to be ordered by anything but the library.
std::atomic<int> positions;
std::atomic<bool> stopped;
constexpr int kUnderWay = 3;
constexpr int kLongEnough = 50;

void ZELK_CALL CountPositions(uint32_t event, uint32_t, uint32_t) {
  if (event != ZELK_EVENT_POSITION) return;
  const int now = positions.fetch_add(1, std::memory_order_relaxed) + 1;
  while (now >= kLongEnough && !stopped.load(std::memory_order_relaxed)) std::this_thread::yield();
}

// Runs the scan, and from another thread the stop once it is under way.
template <class Scan>
void ExpectStopped(Scan scan) {
  positions = 0;
  stopped = false;
  std::thread other([] {
    while (positions.load(std::memory_order_relaxed) < kUnderWay) std::this_thread::yield();
    EXPECT_EQ(ZELK_AllFreqScan(nullptr, ZELK_SCAN_STOP), S_OK);
    stopped.store(true, std::memory_order_relaxed);
  });
  scan();
  other.join();
  EXPECT_LE(positions, kLongEnough);
}

TEST_F(StopFromAnotherThread, EitherScan) {
  for (const std::uint32_t type : {1u, 15u, 40u, 46u}) {
    PlugTv(type);
    ExpectStopped([] { EXPECT_EQ(ZELK_AllFreqScan(CountPositions, ZELK_SCAN_START), S_FALSE); });
    ZELK_FMInit();
    ExpectStopped([] {
      EXPECT_EQ(ZELK_FMAllFreqScan(CountPositions, ZELK_SCAN_START, 0, 0, 87500, 108000), S_OK);
    });
  }
}

std::thread::id endedOn;

TEST_F(StopFromAnotherThread, WithNothingRunningItsOwnCallbackHearsTheEnd) {
  PlugTv(1);
  std::thread other([] {
    const auto note = [](uint32_t event, uint32_t, uint32_t) {
      if (event == ZELK_EVENT_ENDED) endedOn = std::this_thread::get_id();
    };
    EXPECT_EQ(ZELK_AllFreqScan(note, ZELK_SCAN_STOP), S_FALSE);
    EXPECT_EQ(endedOn, std::this_thread::get_id());
  });
  other.join();
}

}  // namespace
}  // namespace zelk::test
