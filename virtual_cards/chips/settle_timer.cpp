#include "virtual_cards/chips/settle_timer.h"

#include "platform/win32.h"

namespace zelk::virtual_cards {

namespace {

std::uint32_t NowMs() {
  MMTIME time{};
  time.wType = TIME_MS;
  timeGetSystemTime(&time, sizeof time);
  return time.u.ms;
}

}  // namespace

void SettleTimer::Restart() {
  running_ = true;
  startMs_ = NowMs();
}

bool SettleTimer::Passed(std::uint32_t milliseconds) const {
  return running_ && NowMs() - startMs_ >= milliseconds;
}

}  // namespace zelk::virtual_cards
