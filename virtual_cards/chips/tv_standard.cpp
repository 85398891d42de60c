#include "virtual_cards/chips/tv_standard.h"

#include "platform/dshow.h"

namespace zelk::virtual_cards {

namespace {

// The transmission systems of ITU-R BT.470 with the colour systems they carry. In L' the sound lies
// below the picture carrier; the receiver's oscillator then lies above it so that the IF looks
// alike.
constexpr TvStandard kStandards[] = {
    {AnalogVideo_PAL_B | AnalogVideo_PAL_G | AnalogVideo_PAL_H | AnalogVideo_PAL_60, 5500, false,
     625, ColourSystem::kPal},
    {AnalogVideo_NTSC_M | AnalogVideo_NTSC_M_J | AnalogVideo_NTSC_433, 4500, false, 525,
     ColourSystem::kNtsc},
    {AnalogVideo_PAL_D, 6500, false, 625, ColourSystem::kPal},
    {AnalogVideo_PAL_I, 6000, false, 625, ColourSystem::kPal},
    {AnalogVideo_PAL_M, 4500, false, 525, ColourSystem::kPal},
    {AnalogVideo_PAL_N, 4500, false, 625, ColourSystem::kPal},
    {AnalogVideo_SECAM_B | AnalogVideo_SECAM_G | AnalogVideo_SECAM_H, 5500, false, 625,
     ColourSystem::kSecam},
    {AnalogVideo_SECAM_D | AnalogVideo_SECAM_K | AnalogVideo_SECAM_K1, 6500, false, 625,
     ColourSystem::kSecam},
    {AnalogVideo_SECAM_L | AnalogVideo_SECAM_L1, 6500, true, 625, ColourSystem::kSecam},
};

}  // namespace

const TvStandard& DescribeStandard(std::uint32_t standard) {
  for (const TvStandard& row : kStandards) {
    if (row.bits & standard) return row;
  }
  return kStandards[0];
}

}  // namespace zelk::virtual_cards
