#include "virtual_cards/cards/saa713x/capture_filter.h"

#include <cstring>

#include "virtual_cards/cards/analog_decoder.h"
#include "virtual_cards/cards/property_filter.h"
#include "virtual_cards/cards/saa713x/property_sets.h"

namespace zelk::virtual_cards {

namespace {

constexpr DWORD kGet = KSPROPERTY_SUPPORT_GET;
constexpr DWORD kSet = KSPROPERTY_SUPPORT_SET;
constexpr DWORD kWord = sizeof(ULONG);
constexpr std::size_t kStandardOffset = offsetof(KSPROPERTY_VIDEODECODER_S, Value);

void DescribeStandardRequest(TraceLine& line, std::span<const BYTE> content) {
  line.Words(content.subspan(kStandardOffset, kWord));
}

constexpr PropertyRow Own(DWORD id, DWORD bytes, DWORD support) {
  return {&kPropsetZelkSaa, "ZELK_SAA", id, bytes, support, DescribeWords};
}

constexpr PropertyRow kRows[] = {
    Own(0x65, kWord, kGet | kSet),                // lock: the driver keeps off the tuner
    Own(0x66, kWord, kGet | kSet),                // lock: the application's own
    Own(kSaaTunerPowerDown, kWord, kGet | kSet),  // 1: off
    Own(kSaaFmLevel, kWord, kGet),
    Own(kSaaFmAfc, kWord, kGet),
    Own(kSaaFmStereo, 1, kGet),
    Own(0x70, kWord, kGet | kSet),  // Russia flag
    Own(0x71, kWord, kGet | kSet),  // volume
    Own(0x72, kWord, kGet | kSet),  // fuse
    Own(0x73, kWord, kGet | kSet),  // audio system
    Own(kSaaChipNumber, kWord, kGet),
    Own(0x75, kWord, kGet | kSet),  // SAA7135: virtual mode
    Own(0x76, kWord, kGet | kSet),  // SAA7135: virtual stereo effect
    Own(0x77, kWord, kGet | kSet),  // SAA7135: bass
    Own(0x78, kWord, kGet | kSet),  // SAA7135: treble
    {&kPropsetVampTune, "VAMP_TUNE", kVampTuneNotification, sizeof(TuneNotification), kSet,
     DescribeWords},
    {&kPropsetVideoDecoder, "VIDEODECODER", KSPROPERTY_VIDEODECODER_STANDARD,
     sizeof(KSPROPERTY_VIDEODECODER_S), kGet | kSet, DescribeStandardRequest},
};

ULONG ReadWord(std::span<const BYTE> content) {
  ULONG word = 0;
  std::memcpy(&word, content.data(), sizeof word);
  return word;
}

constexpr FilterNames kNames = {"capture", "capture query IKsPropertySet",
                                "capture query IAMAnalogVideoDecoder"};

using Base = AnalogDecoder<PropertyFilter<IAMAnalogVideoDecoder>, Saa713xHardware>;

class CaptureFilter final : public Base {
 public:
  explicit CaptureFilter(const std::shared_ptr<Saa713xHardware>& hardware)
      : Base(hardware, Saa713xHardware::References(hardware), hardware->Gate(), kNames, kRows) {}

 private:
  HRESULT SetProperty(const PropertyRow& row, std::span<const BYTE> content) override {
    if (row.set == &kPropsetVampTune) return hardware_->NotifyTuning(ReadWord(content));
    if (row.set == &kPropsetVideoDecoder) {
      hardware_->SetVideoStandard(ReadWord(content.subspan(kStandardOffset)));
    } else {
      hardware_->SetDriverWord(row.id, ReadWord(content));
    }
    return S_OK;
  }

  HRESULT GetProperty(const PropertyRow& row, std::span<BYTE> content) override {
    if (row.set == &kPropsetVideoDecoder) {
      const ULONG standard = hardware_->VideoStandard();
      std::memcpy(&content[kStandardOffset], &standard, sizeof standard);
      return S_OK;
    }
    // Little-endian: the stereo indicator is the word's first byte.
    const ULONG word = OwnProperty(row.id);
    std::memcpy(content.data(), &word, content.size());
    return S_OK;
  }

  ULONG OwnProperty(DWORD id) const {
    switch (id) {
      case kSaaFmLevel:
      case kSaaFmAfc:
      case kSaaFmStereo:
        return hardware_->FmReading(id);
      case kSaaChipNumber:
        return hardware_->ChipId();
      default:
        return hardware_->DriverWord(id);
    }
  }
};

}  // namespace

ComPtr<IUnknown> MakeCaptureFilter(const std::shared_ptr<Saa713xHardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new CaptureFilter(hardware)));
}

}  // namespace zelk::virtual_cards
