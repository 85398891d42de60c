// The time since a chip was last written to. Loops and detectors need some milliseconds before
// their readings mean anything; a driver that does not wait for them reads noise.
#pragma once

#include <cstdint>

namespace zelk::virtual_cards {

class SettleTimer {
 public:
  void Restart();
  // False before the first Restart: a chip that was never written to never settles.
  bool Passed(std::uint32_t milliseconds) const;

 private:
  bool running_ = false;
  std::uint32_t startMs_ = 0;
};

// From the last tuning write until the AFC voltage of a tuner module or an IF demodulator is valid.
inline constexpr std::uint32_t kAfcSettleMs = 50;
// Until a video decoder (or a demodulator with its own sync detector) has locked to the line sync.
inline constexpr std::uint32_t kSyncSettleMs = 60;

}  // namespace zelk::virtual_cards
