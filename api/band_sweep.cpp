#include "api/band_sweep.h"

#include "platform/win32.h"

namespace zelk {

std::uint32_t ProgressPercent(const BandSweep& sweep) {
  const auto covered = static_cast<std::uint64_t>(sweep.frequency - sweep.low);
  const auto width = static_cast<std::int32_t>(sweep.high - sweep.low);
  // A band without width is covered by its first probe.
  if (width == 0) return 100;
  const double percent = static_cast<double>(covered) * 100.0 / width;
  return static_cast<std::uint32_t>(static_cast<std::int64_t>(percent));
}

void PumpMessages() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

}  // namespace zelk
