#include "virtual_cards/cards/cx2388x/capture_filter.h"

#include <algorithm>

#include "virtual_cards/cards/bt_family/capture_filter.h"
#include "virtual_cards/chips/eeprom.h"

namespace zelk::virtual_cards {

namespace {

constexpr DWORD kRegisterProperty = 6;
constexpr DWORD kEepromAddressProperty = 104;
constexpr DWORD kEepromDataProperty = 105;

struct LockProperty {
  DWORD id;
  unsigned kind;
};
constexpr LockProperty kLocks[] = {{103, 1}, {106, 0}};

constexpr DWORD kGet = KSPROPERTY_SUPPORT_GET;
constexpr DWORD kSet = KSPROPERTY_SUPPORT_SET;

constexpr PropertyRow kRows[] = {
    BtPropertyRow(kBtI2cProperty, sizeof(I2cBlock), kGet | kSet),
    BtPropertyRow(kRegisterProperty, sizeof(RegisterBlock), kGet | kSet),
    BtPropertyRow(kLocks[0].id, sizeof(LockBlock), kGet | kSet),
    BtPropertyRow(kEepromAddressProperty, sizeof(EepromBlock), kSet),
    BtPropertyRow(kEepromDataProperty, sizeof(EepromBlock), kGet),
    BtPropertyRow(kLocks[1].id, sizeof(LockBlock), kGet | kSet),
};

// The GPIO ports' registers; a client of the property set has no use for the others.
constexpr ULONG kGpioRegisters[Cx2388xHardware::kGpioPorts] = {0x350010, 0x350014, 0x350018};

class CaptureFilter final : public BtCaptureFilter {
 public:
  explicit CaptureFilter(const std::shared_ptr<Cx2388xHardware>& hardware)
      : BtCaptureFilter(hardware, kRows), board_(hardware) {}

 private:
  HRESULT SetCommand(const PropertyRow& row, std::span<BYTE> content) override {
    switch (row.id) {
      case kBtI2cProperty:
        return SetI2c(content);
      case kRegisterProperty:
        return SelectRegister(LoadBlock<RegisterBlock>(content));
      case kEepromAddressProperty:
        return SelectEepromByte(LoadBlock<EepromBlock>(content).byte);
      default:
        return SetLock(LockKind(row.id), LoadBlock<LockBlock>(content));
    }
  }

  HRESULT GetCommand(const PropertyRow& row, std::span<BYTE> content) override {
    switch (row.id) {
      case kBtI2cProperty:
        return GetI2c(content);
      case kRegisterProperty:
        return ReadRegister(content);
      case kEepromDataProperty:
        return ReadEeprom(content);
      default:
        return GetLock(LockKind(row.id), content);
    }
  }

  static unsigned LockKind(DWORD id) {
    return std::find_if(std::begin(kLocks), std::end(kLocks),
                        [id](const LockProperty& lock) { return lock.id == id; })
        ->kind;
  }

  // --- I2C: the driver reports the bus's own failures in the block, not by its code ---
  HRESULT SetI2c(std::span<BYTE> content) {
    auto block = LoadBlock<I2cBlock>(content);
    switch (block.command) {
      case kI2cSetUpHardware:
        return SetUpI2c(block, I2cMode::kHardware);
      case kI2cWriteByHardware:
        return Report(WriteByHardware(block), block, content);
      case kI2cSelect:
        return Report(SelectDevice(block.address), block, content);
      default:
        return RejectCommand("i2c", block.command);
    }
  }

  HRESULT GetI2c(std::span<BYTE> content) {
    auto block = LoadBlock<I2cBlock>(content);
    if (block.command != kI2cReadByHardware) return RejectCommand("i2c", block.command);
    return Report(ReadByHardware(selectedDevice_, block.data), block, content);
  }

  HRESULT SelectDevice(std::uint8_t address) {
    return Gate().PassTransfer([=](TraceLine& line) { line.Text("i2c select ").Byte(address); },
                               [&] {
                                 selectedDevice_ = address;
                                 return S_OK;
                               },
                               [](TraceLine&) {});
  }

  static HRESULT Report(HRESULT transfer, I2cBlock& block, std::span<BYTE> content) {
    if (FAILED(transfer)) return transfer;
    block.status = transfer == kNotAcknowledged ? 1 : 0;
    StoreBlock(block, content);
    return S_OK;
  }

  // --- Registers ---
  HRESULT SelectRegister(const RegisterBlock& block) {
    if (block.command != kRegisterSelect) return RejectCommand("register", block.command);
    return Gate().Pass([&](TraceLine& line) { line.Text("register select ").Hex(block.address); },
                       [&] {
                         selectedRegister_ = block.address;
                         return S_OK;
                       });
  }

  HRESULT ReadRegister(std::span<BYTE> content) {
    auto block = LoadBlock<RegisterBlock>(content);
    if (block.command != kRegisterRead) return RejectCommand("register", block.command);
    const HRESULT code =
        Gate().Pass([&](TraceLine& line) { line.Text("register read ").Hex(block.address); },
                    [&] {
                      const auto* const known = std::find(
                          std::begin(kGpioRegisters), std::end(kGpioRegisters), selectedRegister_);
                      if (block.address != selectedRegister_ || known == std::end(kGpioRegisters))
                        return E_INVALIDARG;
                      block.value = board_->GpioPort(static_cast<unsigned>(known - kGpioRegisters));
                      return S_OK;
                    },
                    [&](TraceLine& line) { line.Answer().Hex(block.value); });
    if (SUCCEEDED(code)) StoreBlock(block, content);
    return code;
  }

  // --- EEPROM: the driver talks to the chip itself ---
  HRESULT SelectEepromByte(std::uint8_t address) {
    return Gate().Pass([=](TraceLine& line) { line.Text("eeprom select ").Byte(address); },
                       [&] {
                         eepromAddress_ = address;
                         return S_OK;
                       });
  }

  HRESULT ReadEeprom(std::span<BYTE> content) {
    auto block = LoadBlock<EepromBlock>(content);
    const HRESULT code = Gate().PassTransfer(
        [this](TraceLine& line) { line.Text("eeprom read ").Byte(eepromAddress_); },
        [&] {
          const bool heard =
              board_->Bus().ReadAt(Eeprom::kAddress, eepromAddress_, {&block.byte, 1});
          return heard ? S_OK : kNotAcknowledged;
        },
        [&](TraceLine& line) { line.Answer().Byte(block.byte); });
    if (code == kNotAcknowledged) return E_FAIL;
    if (SUCCEEDED(code)) StoreBlock(block, content);
    return code;
  }

  const std::shared_ptr<Cx2388xHardware> board_;
  std::uint8_t selectedDevice_ = 0;
  ULONG selectedRegister_ = 0;
  std::uint8_t eepromAddress_ = 0;
};

}  // namespace

ComPtr<IUnknown> MakeCx2388xCaptureFilter(const std::shared_ptr<Cx2388xHardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new CaptureFilter(hardware)));
}

}  // namespace zelk::virtual_cards
