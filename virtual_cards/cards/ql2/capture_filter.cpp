#include <algorithm>
#include <cstring>

#include "virtual_cards/cards/analog_decoder.h"
#include "virtual_cards/cards/graph_filter.h"
#include "virtual_cards/cards/property_filter.h"
#include "virtual_cards/cards/ql2/filters.h"
#include "virtual_cards/cards/ql2/property_sets.h"
#include "virtual_cards/cards/ql2/video_pin.h"

namespace zelk::virtual_cards {

namespace {

constexpr DWORD kGet = KSPROPERTY_SUPPORT_GET;
constexpr DWORD kSet = KSPROPERTY_SUPPORT_SET;
constexpr std::size_t kPayload = offsetof(Ql2BoardRequest, payload);

// The driver leaves the rest of the record alone.
void DescribeByte(TraceLine& line, std::span<const BYTE> content) { line.Byte(content[kPayload]); }
void DescribePayload(TraceLine& line, std::span<const BYTE> content) {
  line.Words(content.subspan(kPayload));
}
void DescribeBytes(TraceLine& line, std::span<const BYTE> content) { line.Bytes(content); }

using Describe = void (*)(TraceLine&, std::span<const BYTE>);

constexpr PropertyRow Board(DWORD id, DWORD support, Describe describe) {
  return {.set = &kPropsetQl2Board,
          .setName = "QL2_BOARD",
          .id = id,
          .bytes = sizeof(Ql2BoardRequest),
          .support = support,
          .describe = describe,
          .decimalId = true};
}

constexpr PropertyRow I2c(DWORD id, DWORD support) {
  return {.set = &kPropsetQl2I2c,
          .setName = "QL2_I2C",
          .id = id,
          .bytes = sizeof(Ql2I2cRequest),
          .support = support,
          .describe = DescribeBytes,
          .decimalId = true};
}

constexpr PropertyRow kRows[] = {
    Board(kQl2Lock0, kGet | kSet, DescribeByte),
    Board(kQl2Lock1, kGet | kSet, DescribeByte),
    Board(kQl2BoardOption, kSet, DescribeByte),
    I2c(kQl2I2cWrite, kSet),
    I2c(kQl2I2cRead, kGet),
    Board(kQl2TunerInformation, kGet, DescribePayload),
};

// Drivers that do not know their tuner do without the last row.
std::span<const PropertyRow> RowsFor(const Ql2Hardware& hardware) {
  const std::span<const PropertyRow> rows = kRows;
  return hardware.KnowsTuner() ? rows : rows.first(rows.size() - 1);
}

constexpr FilterNames kNames = {"capture", "capture query IKsPropertySet",
                                "capture query IAMAnalogVideoDecoder", "capture query IBaseFilter"};

// A transfer that nobody acknowledged, told apart from one that was refused on demand.
constexpr HRESULT kNotAcknowledged = S_FALSE;

using Filter = GraphFilter<PropertyFilter<IAMAnalogVideoDecoder, IBaseFilter>>;

class CaptureFilter final : public AnalogDecoder<Filter, Ql2Hardware> {
 public:
  explicit CaptureFilter(const std::shared_ptr<Ql2Hardware>& hardware)
      : AnalogDecoder(hardware, hardware->Gate(), kNames.filter, Ql2Hardware::References(hardware),
                      hardware->Gate(), kNames, RowsFor(*hardware)) {
    AddPin<FilterPin>("Analog Video In", PINDIR_INPUT);
    AddPin<FilterPin>("VBI", PINDIR_OUTPUT);
    AddPin<Ql2VideoPin>("656", *hardware);
  }

  // Transfers on the bus have lines of their own in the trace.
  HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                                LPVOID data, DWORD dataBytes) override {
    const bool transfer = set == kPropsetQl2I2c && id == kQl2I2cWrite &&
                          IsTransfer(instance, instanceBytes, data, dataBytes);
    return transfer ? WriteI2c(*static_cast<const Ql2I2cRequest*>(data))
                    : AnalogDecoder::Set(set, id, instance, instanceBytes, data, dataBytes);
  }
  HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                                LPVOID data, DWORD dataBytes, DWORD* returned) override {
    const bool transfer = set == kPropsetQl2I2c && id == kQl2I2cRead && returned &&
                          IsTransfer(instance, instanceBytes, data, dataBytes);
    if (!transfer)
      return AnalogDecoder::Get(set, id, instance, instanceBytes, data, dataBytes, returned);
    const HRESULT code = ReadI2c(*static_cast<Ql2I2cRequest*>(data));
    if (SUCCEEDED(code)) *returned = sizeof(Ql2I2cRequest);
    return code;
  }

 private:
  static bool IsTransfer(const void* instance, DWORD instanceBytes, const void* data,
                         DWORD dataBytes) {
    return instance && data && instanceBytes == sizeof(Ql2I2cRequest) &&
           dataBytes == sizeof(Ql2I2cRequest) &&
           static_cast<const Ql2I2cRequest*>(data)->count <= sizeof(Ql2I2cRequest::data);
  }

  HRESULT WriteI2c(const Ql2I2cRequest& request) {
    const std::span<const BYTE> bytes(request.data, request.count);
    return Transfer(
        [&](TraceLine& line) {
          line.Text("i2c write ").Byte(request.address).Text(": ").Bytes(bytes);
        },
        [&] { return hardware_->Bus().Write(request.address, bytes); }, [](TraceLine&) {});
  }

  HRESULT ReadI2c(Ql2I2cRequest& request) {
    const std::span<BYTE> bytes(request.data, request.count);
    return Transfer([&](TraceLine& line) { line.Text("i2c read ").Byte(request.address); },
                    [&] { return hardware_->Bus().Read(request.address, bytes); },
                    [&](TraceLine& line) { line.Answer().Bytes(bytes); });
  }

  template <class Describe, class Act, class Answer>
  HRESULT Transfer(Describe describe, Act act, Answer answer) {
    const HRESULT code = Gate().PassAny(
        describe, [&] { return act() ? S_OK : kNotAcknowledged; },
        [&](TraceLine& line, HRESULT result) {
          if (result == S_OK) {
            answer(line);
          } else if (result == kNotAcknowledged) {
            line.Answer().Text("nak");
          } else {
            line.Answer().Word(static_cast<std::uint32_t>(result));
          }
        });
    return code == kNotAcknowledged ? E_FAIL : code;
  }

  HRESULT SetProperty(const PropertyRow& row, std::span<const BYTE> content) override {
    switch (row.id) {
      case kQl2Lock0:
      case kQl2Lock1:
        hardware_->SetLock(row.id == kQl2Lock1, content[kPayload]);
        return S_OK;
      case kQl2BoardOption:
        hardware_->SetBoardOption(content[kPayload]);
        return S_OK;
      default:
        return E_INVALIDARG;  // a transfer longer than the record
    }
  }

  HRESULT GetProperty(const PropertyRow& row, std::span<BYTE> content) override {
    ULONG payload[2] = {};
    switch (row.id) {
      case kQl2Lock0:
      case kQl2Lock1:
        payload[0] = hardware_->Lock(row.id == kQl2Lock1);
        break;
      case kQl2TunerInformation:
        payload[1] = hardware_->TunerCode();
        break;
      default:
        return E_INVALIDARG;
    }
    std::memcpy(&content[kPayload], payload, sizeof payload);
    return S_OK;
  }
};

}  // namespace

ComPtr<IUnknown> MakeQl2CaptureFilter(const std::shared_ptr<Ql2Hardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new CaptureFilter(hardware)));
}

}  // namespace zelk::virtual_cards
