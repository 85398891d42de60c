// The encoder's settings: the application's sixteen words, and the three places where the card
// keeps them: the encoder driver's properties, and the size in the video pin's format.
#include <algorithm>

#include "backends/quillon/driver_requests.h"
#include "backends/quillon/quillon_device.h"
#include "backends/quillon/video_format.h"
#include "platform/property_request.h"
#include "platform/win32.h"

namespace zelk {
namespace {

// One pairing of the application's value with the device's code. The directions have tables of
// their own: several values may share a code, and the device knows codes that are never sent.
struct CodeRow {
  std::uint32_t from;
  std::uint32_t to;
};

constexpr CodeRow kStreamCodes[] = {{0, 2}, {1, 14}, {2, 11}, {3, 12}, {4, 10}};
constexpr std::uint32_t kOtherStreamCode = 14;
constexpr CodeRow kStreamTypes[] = {{2, 0}, {10, 4}, {11, 2}, {12, 3}, {13, 1}, {14, 1}, {15, 1}};

constexpr CodeRow kAudioRateCodes[] = {{192, 10}, {224, 11}, {256, 12}, {320, 13}};
constexpr std::uint32_t kOtherAudioRateCode = 14;
constexpr CodeRow kAudioRates[] = {{10, 192}, {11, 224}, {12, 256}, {13, 320}, {14, 384}};

constexpr CodeRow kAudioModes[] = {{0, 0}, {1, 1}, {2, 2}, {3, 3}};

constexpr CodeRow kSampleRateCodes[] = {{32000, 2}, {44100, 0}};
constexpr std::uint32_t kOtherSampleRateCode = 1;
constexpr CodeRow kSampleRates[] = {{0, 44100}, {1, 48000}, {2, 32000}};

constexpr CodeRow kVariableRates[] = {{0, 1}, {1, 0}};

template <std::size_t Count>
constexpr const CodeRow* FindCode(const CodeRow (&rows)[Count], std::uint32_t from) {
  const CodeRow* const end = rows + Count;
  const CodeRow* const row =
      std::find_if(rows, end, [&](const CodeRow& one) { return one.from == from; });
  return row != end ? row : nullptr;
}

template <std::size_t Count>
constexpr std::uint32_t Code(const CodeRow (&rows)[Count], std::uint32_t from,
                             std::uint32_t otherwise) {
  const CodeRow* const row = FindCode(rows, from);
  return row ? row->to : otherwise;
}

// Reported for a code that the device should not have.
constexpr std::uint32_t kNoValue = 0;

constexpr OLECHAR kVideoPin[] = L"656";
constexpr std::uint32_t kBitsPerKilobit = 1000;

constexpr std::uint32_t Low16(std::uint32_t value) { return value & 0xFFFF; }

template <class Block>
bool SetEncoderProperty(const ComPtr<IKsPropertySet>& properties, DWORD id, Block block) {
  return SUCCEEDED(SetProperty(properties.Get(), kPropsetQl2Encoder, id, block));
}

template <class Block>
bool GetEncoderProperty(const ComPtr<IKsPropertySet>& properties, DWORD id, Block& block) {
  return SUCCEEDED(GetProperty(properties.Get(), kPropsetQl2Encoder, id, block));
}

Ql2BitRateRequest BitRates(const ZELK_MpegParams& params) {
  const std::uint32_t target = Low16(params.BitRate);
  const std::uint32_t peak = params.VariableBitRate != 0 ? Low16(params.MaxBitRate) : target;
  return {params.VariableBitRate == 0 ? 1U : 0U, target * kBitsPerKilobit,
          std::max(target, peak) * kBitsPerKilobit};
}

}  // namespace

ComPtr<IAMStreamConfig> QuillonDevice::VideoPinConfig() const {
  ComPtr<IAMStreamConfig> config;
  if (!CaptureFilter) return config;
  const ComPtr<IPin> pin = FindPinByName(*CaptureFilter.Get(), kVideoPin);
  if (pin) Query(pin.Get(), config);
  return config;
}

HRESULT QuillonDevice::SetMPEGParam(const ZELK_MpegParams& params) {
  if (!EncoderReady || !EncoderProps) return E_FAIL;
  if (!SetEncoderProperty(EncoderProps, kQl2StreamType,
                          Code(kStreamCodes, params.StreamType, kOtherStreamCode))) {
    return E_FAIL;
  }
  const ComPtr<IAMStreamConfig> config = VideoPinConfig();
  if (!config) return E_FAIL;
  MediaType format;
  if (!format.ReadFrom(*config.Get())) return E_FAIL;
  if (format.HasPlainHeader()) {
    format.Picture()->biWidth = static_cast<LONG>(params.Width);
    format.Picture()->biHeight = static_cast<LONG>(params.Height);
  } else if (format.HasExtendedHeader()) {
    Log("Try set width and height failed. (as no support in api");
  }
  // Quirk: the pin's answer is the result of all that follows, so that a refused rate behind an
  // accepted format is a success.
  const HRESULT accepted = config->SetFormat(format.Get());
  return WriteAudioAndRates(params) ? S_OK : accepted;
}

bool QuillonDevice::WriteAudioAndRates(const ZELK_MpegParams& params) {
  const auto audioRate =
      static_cast<std::uint8_t>(Code(kAudioRateCodes, params.AudioBitRate, kOtherAudioRateCode));
  const std::uint32_t sampleRate =
      Code(kSampleRateCodes, params.AudioSampleRate, kOtherSampleRateCode);
  if (!SetEncoderProperty(EncoderProps, kQl2AudioBitRate, audioRate) ||
      !SetEncoderProperty(EncoderProps, kQl2AudioMode, Code(kAudioModes, params.AudioMode, 0))) {
    return false;
  }
  if (!SetEncoderProperty(EncoderProps, kQl2AudioSampleRate, sampleRate)) {
    Log("Set MPEG Param failed");
    return false;
  }
  const std::uint32_t flag = params.Option9 == 1 && params.Option10 == 1;
  // Signed: a negative option is a small one.
  const std::uint8_t selector = static_cast<std::int32_t>(params.Option9) >= 15 ? 15 : 6;
  return SetEncoderProperty(EncoderProps, kQl2BitRate, BitRates(params)) &&
         SetEncoderProperty(EncoderProps, kQl2Flag2, flag) &&
         SetEncoderProperty(EncoderProps, kQl2Selector3, selector);
}

HRESULT QuillonDevice::GetMPEGParam(ZELK_MpegParams* params) {
  if (!EncoderReady || !EncoderProps) return E_FAIL;
  std::uint8_t audioRate = 0;
  std::uint32_t audioMode = 0;
  std::uint32_t sampleRate = 0;
  if (!GetEncoderProperty(EncoderProps, kQl2AudioBitRate, audioRate) ||
      !GetEncoderProperty(EncoderProps, kQl2AudioMode, audioMode) ||
      !GetEncoderProperty(EncoderProps, kQl2AudioSampleRate, sampleRate)) {
    return E_FAIL;
  }
  const ComPtr<IAMStreamConfig> config = VideoPinConfig();
  if (!config) return E_FAIL;
  MediaType format;
  if (!format.ReadFrom(*config.Get())) return E_FAIL;

  Ql2BitRateRequest rates;
  std::uint32_t flag = 0;  // read and not reported
  std::uint8_t selector = 0;
  std::uint32_t streamCode = 0;
  if (!GetEncoderProperty(EncoderProps, kQl2BitRate, rates) ||
      !GetEncoderProperty(EncoderProps, kQl2Flag2, flag) ||
      !GetEncoderProperty(EncoderProps, kQl2Selector3, selector)) {
    return E_FAIL;
  }
  if (!GetEncoderProperty(EncoderProps, kQl2StreamType, streamCode)) {
    Log("Internal_GetEncoderProperty failed");
    return E_FAIL;
  }
  if (!FindCode(kStreamTypes, streamCode)) Log("Unknown StreamType");

  const BITMAPINFOHEADER* const picture = format.Picture();
  const auto width = static_cast<std::uint32_t>(picture ? picture->biWidth : kNoValue);
  const auto height = static_cast<std::uint32_t>(picture ? picture->biHeight : kNoValue);
  if (params) {
    params->StreamType = Code(kStreamTypes, streamCode, kNoValue);
    params->Width = width;
    params->Height = height;
    params->BitRate = Low16(rates.targetBitsPerSecond / kBitsPerKilobit);
    params->MaxBitRate = Low16(rates.peakBitsPerSecond / kBitsPerKilobit);
    params->VariableBitRate = Code(kVariableRates, rates.rateControl, kNoValue);
    params->Reserved8 = 1;
    params->Option9 = selector;
    params->Option10 = 0;
    params->Reserved11 = 0;
    params->Reserved12 = 0;
    params->AudioSampleRate = Code(kSampleRates, sampleRate, kNoValue);
    params->AudioBitRate = Code(kAudioRates, audioRate, kNoValue);
    params->AudioMode = Code(kAudioModes, audioMode, kNoValue);
  }
  if (DebugApi) {
    char line[32];
    wsprintfA(line, "%d%s%d", static_cast<int>(width), " x ", static_cast<int>(height));
    Log(line);
    RegisterGraph();
  }
  return S_OK;
}

}  // namespace zelk
