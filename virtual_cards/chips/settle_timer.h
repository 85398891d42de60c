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
// The same in FM when the station frequency has moved by a small step alone: the loop stays in
// lock, and an FM discriminator follows faster than a picture's AFC voltage.
inline constexpr std::uint32_t kFmStepSettleMs = 10;
inline constexpr double kFmSmallStepKHz = 1000;
// Until a video decoder (or a demodulator with its own sync detector) has locked to the line sync.
inline constexpr std::uint32_t kSyncSettleMs = 60;

}  // namespace zelk::virtual_cards
