// What the tests of the chip models share: a hand-made air, the virtual clock, bytes on a bus.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/control.h"
#include "platform/dshow.h"
#include "virtual_cards/air.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {

using Bytes = std::vector<std::uint8_t>;

inline Air AirWith(double pictureKHz, std::uint32_t standard = AnalogVideo_PAL_B,
                   double levelDbuV = 70) {
  Air air;
  air.tv.emplace_back();
  air.tv[0].pictureKHz = pictureKHz;
  air.tv[0].levelDbuV = levelDbuV;
  air.tv[0].standard = standard;
  return air;
}

inline Air FmAirWith(double carrierKHz, bool stereo = true, double levelDbuV = 70) {
  Air air;
  air.fm = {{.station = "", .carrierKHz = carrierKHz, .levelDbuV = levelDbuV, .stereo = stereo}};
  return air;
}

class ModelTest : public testing::Test {
 protected:
  ModelTest() { host::UseVirtualClock(); }
  ~ModelTest() override { host::UseRealClock(); }

  bool Write(std::uint8_t address, const Bytes& bytes) { return bus_.Write(address, bytes); }
  // The same, and then the time for everything to settle.
  void WriteAndWait(std::uint8_t address, const Bytes& bytes) {
    EXPECT_TRUE(Write(address, bytes));
    Sleep(60);
  }
  // What `read` answers a millisecond before the time has passed, and when it has.
  template <class Read>
  static auto Around(DWORD milliseconds, Read read) {
    Sleep(milliseconds - 1);
    const auto before = read();
    Sleep(1);
    return std::pair(before, read());
  }
  // One byte, or -1 when nobody acknowledges.
  int Read(std::uint8_t address) {
    std::uint8_t byte = 0;
    return bus_.Read(address, {&byte, 1}) ? byte : -1;
  }
  int ReadAt(std::uint8_t address, std::uint8_t subaddress) {
    std::uint8_t byte = 0;
    return bus_.ReadAt(address, subaddress, {&byte, 1}) ? byte : -1;
  }

  I2cBus bus_;
};

// A test of one tuner module, alone on its bus and past its power-on state.
class TunerModuleTest : public ModelTest {
 protected:
  void Fit(std::uint32_t tunerType, Air air, std::uint8_t address = PllTuner::kAddress) {
    bus_ = {};
    air_ = std::move(air);
    can_ = std::make_unique<TunerCan>(tunerType, air_, address);
    can_->AttachTo(bus_);
    Read(address);  // both end the power-on state
    Read(0x86);
  }
  // What the PLL of a module reads that has just been fitted, once it has settled on these bytes.
  int Tuned(std::uint32_t tunerType, Air air, const Bytes& bytes) {
    Fit(tunerType, std::move(air));
    WriteAndWait(PllTuner::kAddress, bytes);
    return Read(PllTuner::kAddress);
  }
  bool ShowsAPicture() const { return can_->Picture() != nullptr; }

  Air air_;
  std::unique_ptr<TunerCan> can_;
};

}  // namespace zelk::virtual_cards
