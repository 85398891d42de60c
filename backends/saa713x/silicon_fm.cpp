// FM on the silicon tuners, which this library programs itself: the tuner behind the demodulator's
// gate, and on the TDA8275 the demodulator too.
#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "common/wait.h"

namespace zelk {
namespace {

// Both dividers count 250 kHz of the oscillator's frequency (16 MHz / 64) and drop two bits below.
constexpr std::uint64_t kCrystalHz = 16000000;
constexpr std::uint64_t kDividerScale = 64;

// Registers have 8 bits; their subaddresses count in steps of 0x10, and one write runs through
// them.
struct DividerBytes {
  std::uint8_t high;
  std::uint8_t low;
};

constexpr DividerBytes DividerFor(std::uint64_t oscillatorHz, std::uint32_t multiplier) {
  const std::uint64_t steps = oscillatorHz * multiplier * kDividerScale / kCrystalHz;
  return {static_cast<std::uint8_t>(steps >> 6), static_cast<std::uint8_t>(steps * 4)};
}

// --- TDA8275A ---

struct BandRowB {
  std::uint32_t limitHz;  // of the oscillator
  std::uint8_t svco, spd, scr, sbs, gc3;
};

constexpr BandRowB kBandsB[] = {
    {48750000, 2, 4, 0, 0, 3},  {56875000, 3, 4, 0, 0, 3},  {67250000, 0, 3, 0, 0, 3},
    {81250000, 1, 3, 0, 0, 3},  {97500000, 2, 3, 0, 0, 3},  {113750000, 3, 3, 0, 1, 1},
    {134500000, 0, 2, 0, 1, 1}, {154000000, 1, 2, 0, 1, 1}, {162500000, 1, 2, 0, 1, 1},
    {181000000, 2, 2, 0, 1, 1}, {195000000, 2, 2, 0, 2, 1}, {227500000, 3, 2, 0, 2, 3},
    {269000000, 0, 1, 0, 2, 3}, {325000000, 1, 1, 0, 2, 1}, {390000000, 2, 1, 0, 3, 3},
    {455000000, 3, 1, 0, 3, 3}, {520000000, 0, 0, 0, 3, 1}, {538000000, 0, 0, 1, 3, 1},
    {554000000, 1, 0, 0, 3, 1}, {620000000, 1, 0, 0, 4, 0}, {650000000, 1, 0, 1, 4, 0},
    {700000000, 2, 0, 0, 4, 0}, {780000000, 2, 0, 1, 4, 0}, {820000000, 3, 0, 0, 4, 0},
    {870000000, 3, 0, 1, 4, 0}, {911000000, 3, 0, 2, 4, 0},
};

// FM sits 3.9 MHz below the station, 5.5 MHz below the oscillator.
constexpr std::uint32_t kStationToFmHz = 3900000;
constexpr std::uint32_t kFmToOscillatorHz = 5500000;
// The chip's input filter changes over here.
constexpr std::uint32_t kInputFilterBreak = 471251;

constexpr std::uint8_t kChargePumpRestart = 0x14;
constexpr std::uint8_t kChargePumpRunning = 0x10;
constexpr std::uint8_t kGainBaseB = 0x8B;
constexpr std::uint8_t kIfLevel = 0x28;

// --- TDA8275 ---

struct BandRowA {
  std::uint32_t limitMHz;  // of the oscillator
  std::uint8_t spd, bs, bp, gc3, div1p5;
};

constexpr BandRowA kBandsA[] = {
    {62, 3, 2, 0, 3, 1},  {66, 3, 3, 0, 3, 1},  {76, 3, 1, 0, 3, 0},  {84, 3, 2, 0, 3, 0},
    {93, 3, 2, 0, 1, 0},  {98, 3, 3, 0, 1, 0},  {109, 3, 3, 1, 1, 0}, {123, 2, 2, 1, 1, 1},
    {133, 2, 3, 1, 1, 1}, {151, 2, 1, 1, 1, 0}, {154, 2, 2, 1, 1, 0}, {181, 2, 2, 1, 0, 0},
};

constexpr std::int32_t kIfOffsetA = -4150000;
constexpr std::int32_t kOscillatorOffsetA = 5750000;

constexpr std::uint8_t kGainBaseA = 0x8F;
constexpr std::uint8_t kAgcSettling = 0xBF;
constexpr std::uint8_t kAgcSettled = 0x3F;
constexpr std::uint8_t kLoopRunning = 0x52;

// Registers of the TDA8290.
constexpr std::uint8_t kModeRegister = 0x01;
constexpr std::uint8_t kAgcResetRegister = 0x0E;
constexpr std::uint8_t kAgcReset = 0x02;
constexpr std::uint8_t kLevelRegister = 0x1A;  // and the AFC behind it
constexpr std::uint8_t kHighestLevel = 20;
constexpr std::uint8_t kLocked = 0x80;

// Modes in which the demodulator's AGC is to be watched.
constexpr bool WatchesAgc(std::uint8_t mode) {
  return mode == 0x20 || mode == 0x40 || mode == 0xA0 || mode == 0xC0;
}

// Settling of the tuner's loop.
constexpr std::uint32_t kLoopMs = 16;
constexpr std::uint32_t kFmAgcMs = 112;

// The first row that reaches the frequency, the last one when none does.
template <class Row, std::size_t Count, class Limit>
const Row& FindBand(const Row (&rows)[Count], std::uint64_t frequency, Limit Row::*limit,
                    std::uint64_t unit) {
  for (const Row& row : rows) {
    if (frequency <= row.*limit * unit) return row;
  }
  return rows[Count - 1];
}

}  // namespace

void Saa713xDevice::WriteSiliconTuner(std::uint8_t subaddress, std::uint8_t value) {
  const std::uint8_t bytes[] = {subaddress, value};
  I2CWriteSequence(kTunerAddress, bytes, sizeof(bytes));
}

void Saa713xDevice::WriteSiliconDemodulator(std::uint8_t subaddress, std::uint8_t value) {
  const std::uint8_t bytes[] = {subaddress, value};
  I2CWriteSequence(kSiliconDemodulatorAddress, bytes, sizeof(bytes));
}

HRESULT Saa713xDevice::TuneSiliconFmB(std::uint32_t stationHz) {
  const std::uint32_t fmHz = stationHz - kStationToFmHz;
  SetTunerI2CGate(true);
  const std::uint8_t inputFilter = fmHz < kInputFilterBreak ? 0x22 : 0x26;
  WriteSiliconTuner(0x07, inputFilter);
  TunerImageB[9] = inputFilter;

  const std::uint32_t oscillatorHz = fmHz + kFmToOscillatorHz;
  const BandRowB& band = FindBand(kBandsB, oscillatorHz, &BandRowB::limitHz, 1);
  const DividerBytes divider = DividerFor(oscillatorHz, 1U << band.spd);
  const auto restart = static_cast<std::uint8_t>(kChargePumpRestart | band.scr);
  const auto running = static_cast<std::uint8_t>(kChargePumpRunning | band.scr);
  const std::uint8_t image[] = {
      0x00,  // subaddress of the first register
      divider.high,
      divider.low,
      0x00,
      running,
      static_cast<std::uint8_t>(band.spd << 5 | band.svco << 3 | band.sbs),
      static_cast<std::uint8_t>(kGainBaseB | band.gc3 << 4),
      TunerImageB[6],
      TunerImageB[7],
      kIfLevel,
      TunerImageB[10],
      TunerImageB[11],
      TunerImageB[12],
      TunerImageB[13],
  };
  I2CWriteSequence(kTunerAddress, image, sizeof(image));
  WriteSiliconTuner(0x80, kIfLevel);
  WriteSiliconTuner(0x30, restart);
  WaitMs(kLoopMs);
  WriteSiliconTuner(0x30, running);
  WaitMs(kFmAgcMs);
  WriteSiliconTuner(0x80, kIfLevel);
  SetTunerI2CGate(false);
  return S_FALSE;
}

HRESULT Saa713xDevice::TuneSiliconFmA(std::uint32_t stationHz) {
  std::uint8_t mode = 0;
  ReadBusAt(kSiliconDemodulatorAddress, kModeRegister, &mode, 1);
  WriteSiliconDemodulator(kModeRegister, mode | 0x80);
  WriteSiliconDemodulator(0x0F, 0x88);
  WriteSiliconDemodulator(0x28, 0x14);
  WriteSiliconDemodulator(0x05, WatchesAgc(mode) ? 0x02 : 0x04);
  WriteSiliconDemodulator(0x0D, 0x47);

  const std::uint64_t oscillatorHz =
      static_cast<std::uint64_t>(std::int64_t{stationHz} + kIfOffsetA + kOscillatorOffsetA);
  const BandRowA& band = FindBand(kBandsA, oscillatorHz, &BandRowA::limitMHz, 1000000);
  const DividerBytes divider = DividerFor(oscillatorHz, 1U << band.spd);
  const std::uint8_t image[] = {
      0x00,  // subaddress of the first register
      divider.high,
      divider.low,
      0x40,
      kLoopRunning,
      static_cast<std::uint8_t>(band.spd << 6 | band.div1p5 << 5 | band.bs << 3 | band.bp),
      static_cast<std::uint8_t>(kGainBaseA | band.gc3 << 4),
      kAgcSettling,
      TunerImageA[7],
      TunerImageA[8],
      TunerImageA[9],
      TunerImageA[10],
      TunerImageA[11],
      TunerImageA[12],
  };
  SetTunerI2CGate(true);
  I2CWriteSequence(kTunerAddress, image, sizeof(image));
  WaitMs(kLoopMs);
  WriteSiliconTuner(0x60, kAgcSettled);
  SetTunerI2CGate(false);

  if (WatchesAgc(mode)) {
    std::uint8_t levelAndAfc[2] = {};
    std::uint8_t reset = 0;
    ReadBusAt(kSiliconDemodulatorAddress, kLevelRegister, levelAndAfc, sizeof(levelAndAfc));
    ReadBusAt(kSiliconDemodulatorAddress, kAgcResetRegister, &reset, 1);
    if (levelAndAfc[0] > kHighestLevel || (levelAndAfc[1] & kLocked) == 0) {
      WriteSiliconDemodulator(kAgcResetRegister, reset | kAgcReset);
      WriteSiliconDemodulator(kAgcResetRegister, static_cast<std::uint8_t>(reset & ~kAgcReset));
    }
  }
  WriteSiliconDemodulator(0x0F, 0x81);
  return S_FALSE;
}

}  // namespace zelk
