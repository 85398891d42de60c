#include <array>
#include <cstring>

#include "virtual_cards/cards/graph_filter.h"
#include "virtual_cards/cards/property_filter.h"
#include "virtual_cards/cards/ql2/filters.h"
#include "virtual_cards/cards/ql2/property_sets.h"

namespace zelk::virtual_cards {

namespace {

// Parameters of one byte show as a byte.
constexpr PropertyRow Parameter(MpegEncoder::Parameter number, DWORD bytes) {
  return {.set = &kPropsetQl2Encoder,
          .setName = "QL2_ENCODER",
          .id = number,
          .bytes = bytes,
          .support = KSPROPERTY_SUPPORT_GET | KSPROPERTY_SUPPORT_SET,
          .describe = DescribeWords,
          .decimalId = true};
}

constexpr PropertyRow kRows[] = {
    Parameter(MpegEncoder::kRate, 12),       Parameter(MpegEncoder::kGroupFlag, 4),
    Parameter(MpegEncoder::kGroupLength, 1), Parameter(MpegEncoder::kAudioBitRate, 1),
    Parameter(MpegEncoder::kAudioMode, 4),   Parameter(MpegEncoder::kAudioSampleRate, 4),
    Parameter(MpegEncoder::kStreamType, 4),
};

constexpr FilterNames kNames = {"encoder", "encoder query IKsPropertySet",
                                "encoder query IBaseFilter"};

class EncoderFilter final : public GraphFilter<PropertyFilter<IBaseFilter>> {
 public:
  explicit EncoderFilter(const std::shared_ptr<Ql2Hardware>& hardware)
      : GraphFilter(hardware->Gate(), kNames.filter, Ql2Hardware::References(hardware),
                    hardware->Gate(), kNames, kRows),
        hardware_(hardware) {
    AddPin<FilterPin>("656 In", PINDIR_INPUT);
    AddPin<FilterPin>("I2S In", PINDIR_INPUT);
    AddPin<FilterPin>("MPEG", PINDIR_OUTPUT);
  }

 private:
  HRESULT SetProperty(const PropertyRow& row, std::span<const BYTE> content) override {
    std::array<std::uint32_t, 3> words{};
    std::memcpy(words.data(), content.data(), content.size());
    const std::size_t count = hardware_->Encoder().Words(row.id).size();
    return hardware_->Encoder().Write(row.id, std::span(words).first(count)) ? S_OK : E_INVALIDARG;
  }

  // Little-endian: a parameter of one byte is its word's first.
  HRESULT GetProperty(const PropertyRow& row, std::span<BYTE> content) override {
    std::memcpy(content.data(), hardware_->Encoder().Words(row.id).data(), content.size());
    return S_OK;
  }

  const std::shared_ptr<Ql2Hardware> hardware_;
};

}  // namespace

ComPtr<IUnknown> MakeQl2EncoderFilter(const std::shared_ptr<Ql2Hardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new EncoderFilter(hardware)));
}

}  // namespace zelk::virtual_cards
