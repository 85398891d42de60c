// A plugged-in QL2 card, spoken to as a driver library does.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "model_test.h"
#include "platform/com_ptr.h"
#include "platform/property_request.h"
#include "virtual_cards/cards/ql2_card.h"

namespace zelk::virtual_cards {

inline constexpr GUID kBoardSet = {
    0x2D255A72, 0x849D, 0x4185, {0xA3, 0x9B, 0xA4, 0xF9, 0xF4, 0x50, 0x0C, 0xB9}};
inline constexpr GUID kI2cSet = {
    0x3D23B637, 0x97FE, 0x422A, {0x9D, 0xB1, 0x24, 0x42, 0x10, 0xBD, 0x72, 0xF6}};
inline constexpr GUID kEncoderSet = {
    0x9D12BF07, 0x3548, 0x4EAC, {0x93, 0x44, 0x83, 0x0C, 0xFA, 0x79, 0xB9, 0x2F}};

// The device of a category with a friendly name, bound to `Interface`; null when there is none.
template <class Interface>
ComPtr<Interface> FindDevice(REFCLSID category, const std::wstring& name) {
  ComPtr<ICreateDevEnum> system;
  EXPECT_EQ(CoCreateInstance(kClsidSystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER,
                             IidOf<ICreateDevEnum>(), system.ReceiveVoid()),
            S_OK);
  ComPtr<IEnumMoniker> devices;
  ComPtr<Interface> found;
  if (system->CreateClassEnumerator(category, devices.Receive(), 0) != S_OK) return found;
  ComPtr<IMoniker> device;
  while (!found && devices->Next(1, device.Receive(), nullptr) == S_OK) {
    ComPtr<IPropertyBag> bag;
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(device->BindToStorage(nullptr, nullptr, IidOf<IPropertyBag>(), bag.ReceiveVoid()),
              S_OK);
    EXPECT_EQ(bag->Read(L"FriendlyName", &value, nullptr), S_OK);
    if (value.bstrVal == name)
      device->BindToObject(nullptr, nullptr, IidOf<Interface>(), found.ReceiveVoid());
    VariantClear(&value);
  }
  return found;
}

// The interfaces that a driver library takes. All are released with the object.
struct Ql2Interfaces {
  ComPtr<IKsPropertySet> capture;
  ComPtr<IAMAnalogVideoDecoder> decoder;
  ComPtr<IKsPropertySet> tuner;
  ComPtr<IAMTVTuner> tvTuner;
  ComPtr<IKsPropertySet> encoder;

  explicit Ql2Interfaces(VirtualCard& card) {
    Query(card.CaptureFilter().Get(), capture);
    Query(card.CaptureFilter().Get(), decoder);
    Query(card.TunerFilter().Get(), tuner);
    Query(card.TunerFilter().Get(), tvTuner);
    encoder = FindDevice<IKsPropertySet>(kCategoryEncoder, kQl2EncoderName);
  }

  struct I2cRequest {
    BYTE address, count;
    BYTE data[16];
  };

  bool Write(BYTE address, const std::vector<BYTE>& bytes) {
    I2cRequest request{address, static_cast<BYTE>(bytes.size()), {}};
    std::copy(bytes.begin(), bytes.end(), request.data);
    return SetProperty(capture.Get(), kI2cSet, 0, request) == S_OK;
  }
  // Empty when nobody acknowledged.
  std::vector<BYTE> Read(BYTE address, BYTE count) {
    I2cRequest request{address, count, {}};
    if (GetProperty(capture.Get(), kI2cSet, 1, request) != S_OK) return {};
    return {request.data, request.data + count};
  }

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
  bool Locked() {
    LONG locked = -1;
    EXPECT_EQ(decoder->get_HorizontalLocked(&locked), S_OK);
    return locked == 1;
  }
};

// It is a failure when a test holds something of the card when it ends or plugs in another.
class Ql2CardTest : public ModelTest {
 protected:
  ~Ql2CardTest() override { Unplug(); }

  void Unplug() {
    if (card_) {
      EXPECT_EQ(card_->LiveReferences(), 0);
    }
    card_.reset();
  }
  Ql2Card& Plug(const Ql2Options& options, Air air = {}) {
    Unplug();
    card_ = Ql2Card::Create(options, std::move(air));
    return *card_;
  }
  Ql2Card& PlugTuner(std::uint32_t tunerCode, Air air = {}) {
    return Plug({.tunerCode = tunerCode}, std::move(air));
  }

  std::unique_ptr<Ql2Card> card_;
};

}  // namespace zelk::virtual_cards
