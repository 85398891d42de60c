// A plugged-in SAA713x card, spoken to as a driver library does.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "card_client.h"
#include "tests/support/com.h"
#include "virtual_cards/cards/saa713x_card.h"

namespace zelk::virtual_cards {

inline constexpr GUID kOwnSet = {
    0x42D300A6, 0x1CC7, 0x4B6C, {0x88, 0xDA, 0xCD, 0x0B, 0x04, 0x60, 0x3D, 0x55}};
inline constexpr GUID kTuneSet = {
    0x50468AC0, 0xD014, 0x11D3, {0xA4, 0xD9, 0x00, 0x60, 0x08, 0x0B, 0xA6, 0x34}};

struct Interfaces : CardClient {
  ComPtr<IVampI2c> i2c;
  ComPtr<IVampGpio> gpio;
  ComPtr<IVampDecoder> decoder;
  ComPtr<IVampDevice> device;

  explicit Interfaces(VirtualCard& card) : CardClient(card) {
    ComPtr<IVampService> service;
    ComPtr<IUnknown> object;
    EXPECT_EQ(test::Create(kClsidVampService, service), S_OK);
    EXPECT_EQ(service->GetDevice(0, object.Receive()), S_OK);
    EXPECT_EQ(Query(object.Get(), device), S_OK);
    EXPECT_EQ(device->GetI2c(i2c.Receive()), S_OK);
    EXPECT_EQ(device->GetGpio(gpio.Receive()), S_OK);
    EXPECT_EQ(device->GetDecoder(decoder.Receive()), S_OK);
  }

  HRESULT Write(ULONG address, std::vector<BYTE> bytes) {
    i2c->SelectDevice(address);
    return i2c->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &status);
  }
  // One byte, or -1 when the transfer failed by its code or its status.
  int Read(ULONG address) {
    BYTE byte = 0;
    i2c->SelectDevice(address);
    return i2c->Read(&byte, 1, &status) == S_OK && status != kVampBusFailed ? byte : -1;
  }
  int ReadAt(ULONG address, BYTE subaddress) {
    BYTE byte = 0;
    i2c->SelectDevice(address);
    return i2c->ReadAt(subaddress, &byte, 1, &status) == S_OK ? byte : -1;
  }

  HRESULT SetOwn(DWORD id, ULONG value) { return SetProperty(capture.Get(), kOwnSet, id, value); }
  HRESULT GetOwn(DWORD id, ULONG& value) { return GetProperty(capture.Get(), kOwnSet, id, value); }
  HRESULT Notify(ULONG phase) {
    ULONG words[] = {phase, 49, AnalogVideo_PAL_B, phase};
    return SetProperty(capture.Get(), kTuneSet, 3, words);
  }
  int Line(ULONG line) {
    ULONG value = 2;
    return gpio->ReadLine(line, &value) == S_OK ? static_cast<int>(value) : -1;
  }

  ULONG status = 0;
};

using PluggedCardTest = CardModelTest<Saa713xCard, Saa713xOptions>;

}  // namespace zelk::virtual_cards
