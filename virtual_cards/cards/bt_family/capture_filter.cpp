#include "virtual_cards/cards/bt_family/capture_filter.h"

#include <algorithm>

namespace zelk::virtual_cards {

namespace {

// The I2C bus's fast mode.
constexpr ULONG kHighestClockHz = 400000;

bool WellFilled(const I2cBlock& block) {
  return block.header.set == kPropsetZelkCapture && block.header.id == kBtI2cProperty &&
         block.clockHz > 0 && block.clockHz <= kHighestClockHz;
}

}  // namespace

HRESULT BtCaptureFilter::SetUpI2c(const I2cBlock& block, I2cMode mode) {
  return Gate().Pass(
      [&](TraceLine& line) {
        line.Text("i2c setup ").Text(mode == I2cMode::kSoftware ? "software " : "hardware ");
        line.Number(block.clockHz);
      },
      [&] {
        if (!WellFilled(block)) return E_INVALIDARG;
        mode_ = mode;
        return S_OK;
      });
}

HRESULT BtCaptureFilter::WriteByHardware(const I2cBlock& block) {
  const std::span<const std::uint8_t> bytes(
      block.bytes, std::min<std::size_t>(block.count, std::size(block.bytes)));
  return Gate().PassTransfer(
      [&](TraceLine& line) {
        line.Text("i2c write ").Byte(block.address).Text(bytes.empty() ? ":" : ": ").Bytes(bytes);
      },
      [&] {
        if (mode_ != I2cMode::kHardware) return kNotReady;
        if (block.count > std::size(block.bytes)) return E_INVALIDARG;
        return hardware_->Bus().Write(block.address, bytes) ? S_OK : kNotAcknowledged;
      },
      [](TraceLine&) {});
}

HRESULT BtCaptureFilter::ReadByHardware(std::uint8_t address, std::uint8_t& data) {
  return Gate().PassTransfer([=](TraceLine& line) { line.Text("i2c read ").Byte(address); },
                             [&] {
                               if (mode_ != I2cMode::kHardware) return kNotReady;
                               const bool heard = hardware_->Bus().Read(address, {&data, 1});
                               return heard ? S_OK : kNotAcknowledged;
                             },
                             [&](TraceLine& line) { line.Answer().Byte(data); });
}

HRESULT BtCaptureFilter::RejectCommand(std::string_view kind, ULONG command) {
  return Gate().Pass([=](TraceLine& line) { line.Text(kind).Text(" command ").Word(command); },
                     [] { return E_INVALIDARG; });
}

HRESULT BtCaptureFilter::SetLock(unsigned kind, const LockBlock& block) {
  return Gate().Pass(
      [&](TraceLine& line) { line.Text("lock ").Number(kind).Text(" := ").Number(block.on); },
      [&] {
        hardware_->SetLock(kind, block.on == 1);
        return S_OK;
      });
}

HRESULT BtCaptureFilter::GetLock(unsigned kind, std::span<BYTE> content) {
  auto block = LoadBlock<LockBlock>(content);
  const HRESULT code = Gate().Pass([=](TraceLine& line) { line.Text("lock ").Number(kind); },
                                   [&] {
                                     block.on = hardware_->Lock(kind) ? 1 : 0;
                                     return S_OK;
                                   },
                                   [&](TraceLine& line) { line.Answer().Number(block.on); });
  if (SUCCEEDED(code)) StoreBlock(block, content);
  return code;
}

}  // namespace zelk::virtual_cards
