// What the tests of the chip models share: a hand-made air, the virtual clock, bytes on a bus.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "platform/control.h"
#include "platform/dshow.h"
#include "virtual_cards/air.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {

inline Air AirWith(double pictureKHz, std::uint32_t standard = AnalogVideo_PAL_B,
                   double levelDbuV = 70) {
  TvCarrier carrier;
  carrier.pictureKHz = pictureKHz;
  carrier.levelDbuV = levelDbuV;
  carrier.standard = standard;
  Air air;
  air.tv = {carrier};
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

  bool Write(std::uint8_t address, std::initializer_list<std::uint8_t> bytes) {
    return bus_.Write(address, std::vector<std::uint8_t>(bytes));
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
  void Fit(std::uint32_t tunerType, Air air) {
    bus_ = {};
    air_ = std::move(air);
    can_ = std::make_unique<TunerCan>(tunerType, air_);
    can_->AttachTo(bus_);
    Read(0xC2);  // ends the power-on state
  }

  Air air_;
  std::unique_ptr<TunerCan> can_;
};

}  // namespace zelk::virtual_cards
