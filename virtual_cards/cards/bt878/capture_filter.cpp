#include "virtual_cards/cards/bt878/capture_filter.h"

#include "virtual_cards/cards/bt_family/capture_filter.h"

namespace zelk::virtual_cards {

namespace {

constexpr DWORD kGpioProperty = 2;
constexpr DWORD kFirstLockProperty = 6;  // of kind 0; kind 1 follows

constexpr DWORD kBoth = KSPROPERTY_SUPPORT_GET | KSPROPERTY_SUPPORT_SET;

constexpr PropertyRow kRows[] = {
    BtPropertyRow(kGpioProperty, sizeof(GpioBlock), kBoth),
    BtPropertyRow(kBtI2cProperty, sizeof(I2cBlock), kBoth),
    BtPropertyRow(kFirstLockProperty, sizeof(LockBlock), kBoth),
    BtPropertyRow(kFirstLockProperty + 1, sizeof(LockBlock), kBoth),
};

// A chip that does not acknowledge fails the request.
constexpr HRESULT FailedWhenUnheard(HRESULT transfer) {
  return transfer == kNotAcknowledged ? E_FAIL : transfer;
}

// The driver carries a write out when it is set and tells the outcome when it is asked for. A read
// is ordered by a Set and carried out by the Get that fetches it.
class CaptureFilter final : public BtCaptureFilter {
 public:
  explicit CaptureFilter(const std::shared_ptr<Bt878Hardware>& hardware)
      : BtCaptureFilter(hardware, kRows), board_(hardware) {}

 private:
  HRESULT SetCommand(const PropertyRow& row, std::span<BYTE> content) override {
    if (row.id == kBtI2cProperty) return SetI2c(LoadBlock<I2cBlock>(content));
    if (row.id == kGpioProperty) return SetGpio(LoadBlock<GpioBlock>(content));
    return SetLock(row.id - kFirstLockProperty, LoadBlock<LockBlock>(content));
  }

  HRESULT GetCommand(const PropertyRow& row, std::span<BYTE> content) override {
    if (row.id == kBtI2cProperty) return GetI2c(content);
    if (row.id == kGpioProperty) return GetGpio(content);
    return GetLock(row.id - kFirstLockProperty, content);
  }

  // --- I2C ---
  HRESULT SetI2c(const I2cBlock& block) {
    switch (block.command) {
      case kI2cSetUpHardware:
        return SetUpI2c(block, I2cMode::kHardware);
      case kI2cSetUpSoftware:
        return SetUpI2c(block, I2cMode::kSoftware);
      case kI2cStart:
        return Step("i2c start", [this] { board_->Steps().Start(); });
      case kI2cStop:
        return Step("i2c stop", [this] { board_->Steps().Stop(); });
      case kI2cWriteByte:
        return WriteByte(block.data);
      case kI2cWriteByHardware:
        written_ = FailedWhenUnheard(WriteByHardware(block));
        return written_;
      case kI2cReadByte:
        return Gate().PassText("i2c order read-byte", [] { return S_OK; });
      case kI2cReadByHardware:
        return Gate().Pass(
            [&](TraceLine& line) { line.Text("i2c order read ").Byte(block.address); },
            [] { return S_OK; });
      default:
        return RejectCommand("i2c", block.command);
    }
  }

  HRESULT GetI2c(std::span<BYTE> content) {
    auto block = LoadBlock<I2cBlock>(content);
    HRESULT code = S_OK;
    switch (block.command) {
      case kI2cReadByte:
        code = ReadByte(block.data);
        break;
      case kI2cReadByHardware:
        code = FailedWhenUnheard(ReadByHardware(block.address, block.data));
        break;
      case kI2cWriteByHardware:
        return Gate().PassText("i2c result", [this] { return written_; });
      default:
        return RejectCommand("i2c", block.command);
    }
    if (SUCCEEDED(code)) StoreBlock(block, content);
    return code;
  }

  // The steps take the bus lines over from the engine, however that was set up.
  HRESULT ReadyForSteps() const { return SetUpMode() == I2cMode::kNotSetUp ? kNotReady : S_OK; }

  template <class Act>
  HRESULT Step(std::string_view name, Act act) {
    return Gate().PassText(name, [&] {
      if (ReadyForSteps() == S_OK) act();
      return ReadyForSteps();
    });
  }

  HRESULT WriteByte(std::uint8_t byte) {
    const HRESULT code =
        Gate().PassTransfer([=](TraceLine& line) { line.Text("i2c write-byte ").Byte(byte); },
                            [&] {
                              if (ReadyForSteps() != S_OK) return ReadyForSteps();
                              return board_->Steps().Write(byte) ? S_OK : kNotAcknowledged;
                            },
                            [](TraceLine& line) { line.Answer().Text("ack"); });
    if (code != S_OK) board_->Steps().Lose();
    return FailedWhenUnheard(code);
  }

  HRESULT ReadByte(std::uint8_t& byte) {
    return Gate().Pass([](TraceLine& line) { line.Text("i2c read-byte"); },
                       [&] {
                         if (ReadyForSteps() == S_OK) byte = board_->Steps().Read();
                         return ReadyForSteps();
                       },
                       [&](TraceLine& line) { line.Answer().Byte(byte); });
  }

  // --- GPIO ---
  HRESULT SetGpio(const GpioBlock& block) {
    switch (block.command) {
      case kGpioSetOutputEnable:
        configured_ = Gate().Pass(
            [&](TraceLine& line) {
              line.Text("gpio ").Number(block.bit);
              line.Text(block.value == 0 ? " input" : " output");
            },
            [&] {
              if (block.bit >= GpioPins::kCount || block.value > 1) return E_INVALIDARG;
              board_->Gpio().SetOutputEnable(block.bit, block.value == 1);
              return S_OK;
            });
        return configured_;
      case kGpioReadData:
        return Gate().Pass([&](TraceLine& line) { DescribePins(line.Text("gpio order "), block); },
                           [] { return S_OK; });
      default:
        return RejectCommand("gpio", block.command);
    }
  }

  HRESULT GetGpio(std::span<BYTE> content) {
    auto block = LoadBlock<GpioBlock>(content);
    switch (block.command) {
      case kGpioSetOutputEnable:
        return Gate().PassText("gpio result", [this] { return configured_; });
      case kGpioReadData:
        break;
      default:
        return RejectCommand("gpio", block.command);
    }
    const HRESULT code =
        Gate().Pass([&](TraceLine& line) { DescribePins(line.Text("gpio "), block); },
                    [&] {
                      if (block.firstBit > block.lastBit || block.lastBit >= GpioPins::kCount)
                        return E_INVALIDARG;
                      block.data = board_->Gpio().Read(block.firstBit, block.lastBit);
                      return S_OK;
                    },
                    [&](TraceLine& line) { line.Answer().Hex(block.data); });
    if (SUCCEEDED(code)) StoreBlock(block, content);
    return code;
  }

  static void DescribePins(TraceLine& line, const GpioBlock& block) {
    line.Number(block.firstBit).Text("-").Number(block.lastBit);
  }

  const std::shared_ptr<Bt878Hardware> board_;
  HRESULT written_ = S_OK;     // outcome of the last write by hardware
  HRESULT configured_ = S_OK;  // and of the last change of a GPIO pin
};

}  // namespace

ComPtr<IUnknown> MakeBt878CaptureFilter(const std::shared_ptr<Bt878Hardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new CaptureFilter(hardware)));
}

}  // namespace zelk::virtual_cards
