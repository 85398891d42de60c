// FM radio. The tuning of FM stations is not part of this build yet: every operation refuses.
#include <algorithm>
#include <array>

#include "backends/saa713x/saa713x_device.h"

namespace zelk {
namespace {

// One copy for all cards, last byte first, the order in which the receiver takes them.
std::array<std::uint8_t, 8> FmSearchLevels;

}  // namespace

HRESULT Saa713xDevice::InitialFM(std::uint32_t) { return E_FAIL; }

HRESULT Saa713xDevice::SetFMFreq(std::uint32_t) { return E_FAIL; }

HRESULT Saa713xDevice::IsFMSignalPresent(std::uint32_t*, std::uint32_t*, double*) { return E_FAIL; }

HRESULT Saa713xDevice::SetFMAudioMode(std::uint32_t) { return E_FAIL; }

std::uint32_t Saa713xDevice::FM_SetSearchLevel(const std::uint8_t* levels) {
  std::reverse_copy(levels, levels + FmSearchLevels.size(), FmSearchLevels.begin());
  return 1;
}

}  // namespace zelk
