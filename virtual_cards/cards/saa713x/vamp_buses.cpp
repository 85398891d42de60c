// The Vamp server's I2C and GPIO interfaces.
#include "virtual_cards/cards/saa713x/unused_slots.h"
#include "virtual_cards/cards/saa713x/vamp_server.h"

namespace zelk::virtual_cards {

namespace {

using SharedHardware = std::shared_ptr<Saa713xHardware>;

class VampI2c final : public CardObject<IVampI2c> {
 public:
  explicit VampI2c(const SharedHardware& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE SelectDevice(ULONG address) override {
    return hardware_->Gate().Pass(
        [=](TraceLine& line) { line.Text("i2c select ").Byte(static_cast<std::uint8_t>(address)); },
        [=, this] {
          selected_ = static_cast<std::uint8_t>(address);
          return S_OK;
        });
  }

  // A chip that does not acknowledge fails a plain read by its status alone, but a transfer that
  // begins with a write by its code too.
  HRESULT STDMETHODCALLTYPE Read(BYTE* buffer, ULONG count, ULONG* status) override {
    return Transfer([=, this](TraceLine& line) { line.Text("i2c read ").Byte(selected_); }, S_OK,
                    buffer, count, status,
                    [=, this] {
                      return hardware_->Bus().Read(selected_, {buffer, count});
                    },
                    [=](TraceLine& line) {
                      line.Answer().Bytes({buffer, count});
                    });
  }

  HRESULT STDMETHODCALLTYPE ReadAt(BYTE subaddress, BYTE* buffer, ULONG count,
                                   ULONG* status) override {
    return Transfer(
        [=, this](TraceLine& line) {
          line.Text("i2c read ").Byte(selected_).Text("[").Byte(subaddress).Text("]");
        },
        E_FAIL, buffer, count, status,
        [=, this] {
          return hardware_->Bus().ReadAt(selected_, subaddress, {buffer, count});
        },
        [=](TraceLine& line) {
          line.Answer().Bytes({buffer, count});
        });
  }

  HRESULT STDMETHODCALLTYPE Write(const BYTE* buffer, ULONG count, ULONG* status) override {
    return Transfer(
        [=, this](TraceLine& line) {
          line.Text("i2c write ").Byte(selected_).Text(": ").Bytes({buffer, count});
        },
        E_FAIL, buffer, count, status,
        [=, this] {
          return hardware_->Bus().Write(selected_, {buffer, count});
        },
        [](TraceLine&) {});
  }

  ZELK_UNUSED_SLOT(3)
  ZELK_UNUSED_SLOT(4)
  ZELK_UNUSED_SLOT(5)
  ZELK_UNUSED_SLOT(6)
  ZELK_UNUSED_SLOT(7)
  ZELK_UNUSED_SLOT(9)
  ZELK_UNUSED_SLOT(10)
  ZELK_UNUSED_SLOT(11)
  ZELK_UNUSED_SLOT(12)
  ZELK_UNUSED_SLOT(13)
  ZELK_UNUSED_SLOT(16)

 private:
  // `failure` is what the call answers when the chip does not acknowledge.
  template <class Describe, class Act, class Answer>
  HRESULT Transfer(Describe describe, HRESULT failure, const BYTE* buffer, ULONG count,
                   ULONG* status, Act act, Answer answer) {
    if (!status || (!buffer && count > 0)) return E_POINTER;
    bool acknowledged = true;
    const HRESULT code = hardware_->Gate().PassTransfer(
        describe,
        [&] {
          acknowledged = act();
          return acknowledged ? S_OK : kNotAcknowledged;
        },
        answer);
    *status = code == S_OK ? 0 : kVampBusFailed;
    if (!acknowledged) return failure;
    // A refusal that is no code is a failure by the status alone.
    return FAILED(code) ? code : S_OK;
  }

  const SharedHardware hardware_;
  std::uint8_t selected_ = 0;
};

class VampGpio final : public CardObject<IVampGpio> {
 public:
  explicit VampGpio(const SharedHardware& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE ReadLine(ULONG line, ULONG* value) override {
    return hardware_->Gate().Pass([=](TraceLine& text) { text.Text("gpio ").Number(line); },
                                  [=, this] {
                                    if (!value) return E_POINTER;
                                    if (line >= GpioLines::kCount) return E_INVALIDARG;
                                    *value = hardware_->Gpio().Read(line) ? 1 : 0;
                                    return S_OK;
                                  },
                                  [=](TraceLine& text) { text.Answer().Number(*value); });
  }

  HRESULT STDMETHODCALLTYPE SetLine(ULONG line, ULONG value) override {
    return hardware_->Gate().Pass(
        [=](TraceLine& text) { text.Text("gpio ").Number(line).Text(" := ").Number(value); },
        [=, this] {
          if (line >= GpioLines::kCount || value > 1) return E_INVALIDARG;
          hardware_->Gpio().Set(line, value == 1);
          return S_OK;
        });
  }

  ZELK_UNUSED_SLOT(3)
  ZELK_UNUSED_SLOT(4)
  ZELK_UNUSED_SLOT(5)
  ZELK_UNUSED_SLOT(6)
  ZELK_UNUSED_SLOT(7)
  ZELK_UNUSED_SLOT(8)
  ZELK_UNUSED_SLOT(9)
  ZELK_UNUSED_SLOT(10)

 private:
  const SharedHardware hardware_;
};

}  // namespace

IVampI2c* MakeVampI2c(const SharedHardware& hardware) { return new VampI2c(hardware); }

IVampGpio* MakeVampGpio(const SharedHardware& hardware) { return new VampGpio(hardware); }

}  // namespace zelk::virtual_cards
