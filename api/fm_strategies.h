// How the FM scan recognises a station: from the shape of successive readings, in a way of its own
// for each kind of tuner.
#pragma once

#include <cstdint>

#include "api/band_sweep.h"
#include "api/scan_line.h"

namespace zelk {

// The frequency that will be reported when a station is confirmed.
struct FmCandidate {
  std::uint32_t frequency = 0;
  bool stereo = true;
};

// One probe, tuned already.
struct FmProbe {
  std::uint32_t frequency;
  FmCandidate& candidate;  // kept from probe to probe
  ScanLine& line;          // the diagnostic line of this probe

  void MakeCandidate(bool stereo) const { candidate = {frequency, stereo}; }
};

// A strategy sees the probes of one scan in order. It is made anew for every scan.
class FmStrategy {
 public:
  // True when the candidate is now confirmed as a station.
  virtual bool FindsStation(const FmProbe& probe) = 0;

 protected:
  ~FmStrategy() = default;
};

// What bits of a tuner's status byte say stereo.
struct StereoTest {
  std::uint8_t mask;
  std::uint8_t value;
  bool operator()(std::uint8_t status) const { return (status & mask) == value; }
};

// Three AFC readings of the IF demodulator, summed: positive below a station, negative above it.
class ThreeReadings final : public FmStrategy {
 public:
  explicit ThreeReadings(StereoTest isStereo) : isStereo_(isStereo) {}
  bool FindsStation(const FmProbe& probe) override;

 private:
  static constexpr std::uint8_t kNone = 0xFF;

  bool Forget();
  bool Remember(const FmProbe& probe, int sum);
  void ReadStatus();

  const StereoTest isStereo_;
  std::uint8_t previousSum_ = kNone;
  std::uint8_t status_ = 0;
};

// Four AFC readings of the IF demodulator with the opposite sign.
class FourReadings final : public FmStrategy {
 public:
  bool FindsStation(const FmProbe& probe) override;

 private:
  static constexpr std::uint8_t kNone = 0xFF;

  std::uint8_t previousSum_ = kNone;
};

// The separate FM receiver's status: the AFC crosses from above its middle to below it.
class ReceiverCrossing final : public FmStrategy {
 public:
  // On an SAA713x card, or else on a Quillon card.
  explicit ReceiverCrossing(bool onSaa713x) : onSaa713x_(onSaa713x) {}
  bool FindsStation(const FmProbe& probe) override;

 private:
  static constexpr int kNone = 0xFF;

  bool ReadStatus() const;

  const bool onSaa713x_;
  int previousAfc_ = kNone;
  std::uint8_t previousLevel_ = 0;
};

// The silicon tuners' lock appears.
class SiliconLock final : public FmStrategy {
 public:
  bool FindsStation(const FmProbe& probe) override;

 private:
  std::uint8_t previousStatus_ = 0xFF;
};

// The PLL tuner's lock status, with a second look at the candidate.
class LockStatus final : public FmStrategy {
 public:
  bool FindsStation(const FmProbe& probe) override;

 private:
  static bool SecondLook(const FmProbe& probe);

  std::uint8_t previous_ = 0xFF;
};

// All of them, and the one that fits a tuner.
class FmStrategies {
 public:
  FmStrategy& For(std::uint32_t tunerType);

 private:
  ThreeReadings mk3_{{0x07, 0x04}};
  ThreeReadings mk5_{{0x02, 0x02}};
  FourReadings easternMk3_;
  ReceiverCrossing alps_{true};
  ReceiverCrossing partsnic_{false};
  SiliconLock silicon_;
  LockStatus other_;
};

}  // namespace zelk
