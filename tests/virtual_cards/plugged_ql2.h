// A plugged-in QL2 card, spoken to as a driver library does.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "card_client.h"
#include "tests/support/com.h"
#include "virtual_cards/cards/ql2_card.h"

namespace zelk::virtual_cards {

inline constexpr GUID kBoardSet = {
    0x2D255A72, 0x849D, 0x4185, {0xA3, 0x9B, 0xA4, 0xF9, 0xF4, 0x50, 0x0C, 0xB9}};
inline constexpr GUID kI2cSet = {
    0x3D23B637, 0x97FE, 0x422A, {0x9D, 0xB1, 0x24, 0x42, 0x10, 0xBD, 0x72, 0xF6}};
inline constexpr GUID kEncoderSet = {
    0x9D12BF07, 0x3548, 0x4EAC, {0x93, 0x44, 0x83, 0x0C, 0xFA, 0x79, 0xB9, 0x2F}};

struct Ql2Interfaces : CardClient {
  ComPtr<IKsPropertySet> encoder =
      test::FindDevice<IKsPropertySet>(kCategoryEncoder, kQl2EncoderName);

  using CardClient::CardClient;

  struct I2cRequest {
    BYTE address, count;
    BYTE data[16];
  };

  // As a driver library does it: the driver's own record with another frequency in it.
  HRESULT Tune(double kHz) {
    KSPROPERTY_TUNER_FREQUENCY_S content{};
    GetProperty(tuner.Get(), kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, content);
    content.Frequency = static_cast<ULONG>(kHz * 1000);
    return SetProperty(tuner.Get(), kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, content);
  }
  // The status 60 ms later.
  KSPROPERTY_TUNER_STATUS_S Status() {
    Sleep(60);
    KSPROPERTY_TUNER_STATUS_S status{};
    EXPECT_EQ(GetProperty(tuner.Get(), kPropsetTuner, KSPROPERTY_TUNER_STATUS, status), S_OK);
    return status;
  }
};

using Ql2CardTest = CardModelTest<Ql2Card, Ql2Options>;

}  // namespace zelk::virtual_cards
