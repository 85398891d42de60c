#include "virtual_cards/cards/saa713x/vamp_server.h"

#include "virtual_cards/cards/saa713x/unused_slots.h"

namespace zelk::virtual_cards {

namespace {

using SharedHardware = std::shared_ptr<Saa713xHardware>;

// A request for one word of the chip.
HRESULT AnswerWord(RequestGate& gate, std::string_view request, ULONG* place, ULONG value) {
  return gate.Pass([=](TraceLine& line) { line.Text(request); },
                   [=] {
                     if (!place) return E_POINTER;
                     *place = value;
                     return S_OK;
                   },
                   [=](TraceLine& line) { line.Answer().Word(value); });
}

// A request for an interface: `make()` answers a new object with its first reference.
template <class Interface, class Make>
HRESULT AnswerInterface(RequestGate& gate, std::string_view request, Interface** place, Make make) {
  if (!place) return E_POINTER;
  *place = nullptr;
  return gate.PassText(request, [&] {
    *place = make();
    return S_OK;
  });
}

class VampDecoder final : public CardObject<IVampDecoder> {
 public:
  explicit VampDecoder(const SharedHardware& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE GetStatus(ULONG* status) override {
    return AnswerWord(hardware_->Gate(), "vamp decoder-status", status, hardware_->DecoderStatus());
  }

  ZELK_UNUSED_SLOT(3)
  ZELK_UNUSED_SLOT(4)
  ZELK_UNUSED_SLOT(5)
  ZELK_UNUSED_SLOT(6)

 private:
  const SharedHardware hardware_;
};

class VampDevice final : public CardObject<IVampDevice> {
 public:
  explicit VampDevice(const SharedHardware& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const std::string_view request = iid == IidOf<IVampDevice>() ? "vamp query-device" : "";
    return Gate().PassQuery(request, object,
                            [&] { return CardObject::QueryInterface(iid, object); });
  }

  HRESULT STDMETHODCALLTYPE GetChipId(ULONG* chipId) override {
    return AnswerWord(Gate(), "vamp chip-id", chipId, hardware_->ChipId());
  }
  HRESULT STDMETHODCALLTYPE GetBoardConfig(ULONG* boardConfig) override {
    return AnswerWord(Gate(), "vamp board-config", boardConfig, hardware_->BoardConfig());
  }
  HRESULT STDMETHODCALLTYPE GetDecoder(IVampDecoder** decoder) override {
    return AnswerInterface(Gate(), "vamp decoder", decoder,
                           [this] { return new VampDecoder(hardware_); });
  }
  HRESULT STDMETHODCALLTYPE GetGpio(IVampGpio** gpio) override {
    return AnswerInterface(Gate(), "vamp gpio", gpio, [this] { return MakeVampGpio(hardware_); });
  }
  HRESULT STDMETHODCALLTYPE GetI2c(IVampI2c** i2c) override {
    return AnswerInterface(Gate(), "vamp i2c", i2c, [this] { return MakeVampI2c(hardware_); });
  }

  ZELK_UNUSED_SLOT(3)
  ZELK_UNUSED_SLOT(4)
  ZELK_UNUSED_SLOT(5)
  ZELK_UNUSED_SLOT(6)
  ZELK_UNUSED_SLOT(7)
  ZELK_UNUSED_SLOT(8)
  ZELK_UNUSED_SLOT(10)
  ZELK_UNUSED_SLOT(12)
  ZELK_UNUSED_SLOT(13)
  ZELK_UNUSED_SLOT(14)
  ZELK_UNUSED_SLOT(15)
  ZELK_UNUSED_SLOT(16)
  ZELK_UNUSED_SLOT(17)
  ZELK_UNUSED_SLOT(18)
  ZELK_UNUSED_SLOT(19)

 private:
  RequestGate& Gate() { return hardware_->Gate(); }

  const SharedHardware hardware_;
};

class VampService final : public CardObject<IVampService> {
 public:
  explicit VampService(const SharedHardware& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE GetDeviceCount(ULONG* count) override {
    return hardware_->Gate().Pass([](TraceLine& line) { line.Text("vamp count"); },
                                  [=] {
                                    if (!count) return E_POINTER;
                                    *count = 1;
                                    return S_OK;
                                  },
                                  [](TraceLine& line) { line.Answer().Number(1); });
  }
  HRESULT STDMETHODCALLTYPE GetDevice(ULONG index, IUnknown** device) override {
    if (!device) return E_POINTER;
    *device = nullptr;
    return hardware_->Gate().Pass([=](TraceLine& line) { line.Text("vamp device ").Number(index); },
                                  [&] {
                                    if (index != 0) return E_INVALIDARG;
                                    *device = new VampDevice(hardware_);
                                    return S_OK;
                                  });
  }

  ZELK_UNUSED_SLOT(3)
  ZELK_UNUSED_SLOT(4)
  ZELK_UNUSED_SLOT(5)
  ZELK_UNUSED_SLOT(6)

 private:
  const SharedHardware hardware_;
};

class VampClass final : public CardObject<IClassFactory> {
 public:
  explicit VampClass(const SharedHardware& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return hardware_->Gate().PassText("vamp service", [&] {
      const auto service = ComPtr<IVampService>::Adopt(new VampService(hardware_));
      return service->QueryInterface(iid, object);
    });
  }
  // The server lives in the process of its card and is never unloaded before it.
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  const SharedHardware hardware_;
};

}  // namespace

ComPtr<IUnknown> MakeVampClass(const SharedHardware& hardware) {
  return ComPtr<IUnknown>::Adopt(new VampClass(hardware));
}

}  // namespace zelk::virtual_cards
