// Discovery: from the filters an application hands over to a card that is known and ready.
#include <algorithm>
#include <cstring>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "common/log.h"
#include "common/store.h"
#include "common/wait.h"
#include "platform/device_category.h"
#include "platform/win32.h"

namespace zelk {
namespace {

// EEPROM bytes that describe the board.
constexpr std::uint8_t kEepromTuner = 0x20;
constexpr std::uint8_t kEepromBoardCodes = 0x21;
constexpr std::uint8_t kEepromRemote = 0x22;
constexpr std::uint8_t kRemoteOnGpio = 0x04;  // bit of kEepromRemote

constexpr std::uint32_t kHighestBoardCode = 0xEE;
constexpr std::uint32_t kChipSaa7130 = 0x7130;
constexpr char kGermanLocale[] = "00000407";

// The user's locale as the control panel stores it: eight hexadecimal digits.
bool GetUserLocale(char (&locale)[260]) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\International", 0, KEY_READ, &key) !=
      ERROR_SUCCESS) {
    return false;
  }
  DWORD size = sizeof(locale);
  const bool read = RegQueryValueExA(key, "Locale", nullptr, nullptr,
                                     reinterpret_cast<BYTE*>(locale), &size) == ERROR_SUCCESS;
  RegCloseKey(key);
  // The registry does not promise a terminator.
  if (read) locale[std::min<DWORD>(size, sizeof(locale) - 1)] = '\0';
  return read;
}

HRESULT CreateVampService(ComPtr<IVampService>& service) {
  return CreateInstance(kClsidVampService, CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER, service);
}

}  // namespace

Saa713xDevice::~Saa713xDevice() { ReleaseInterfaces(); }

void Saa713xDevice::ReleaseInterfaces() {
  CurrentMode = Mode::None;
  Initialised = false;
  // The chip's parts go before the server that made them, the filters after it.
  I2c.Reset();
  Gpio.Reset();
  Decoder.Reset();
  Service.Reset();
  TunerProps.Reset();
  CaptureProps.Reset();
  TvAudio.Reset();
}

void Saa713xDevice::Log(const char* message) { AppendLogMessage(message, "zelkapi_713x.log"); }

bool Saa713xDevice::Ready(const char* refusal) const {
  if (!Initialised) Log(refusal);
  return Initialised;
}

HRESULT Saa713xDevice::HWInit(IUnknown* captureFilter, const char* friendlyName,
                              IUnknown* tunerFilter, std::uint8_t russia) {
  if (Initialised) ReleaseInterfaces();
  if (!IsAcceptedName(friendlyName)) {
    Log("SAA713x: Device is not SAA713x series product from Korvane");
    return E_FAIL;
  }
  if (const HRESULT code = ObtainFilters(captureFilter, tunerFilter); FAILED(code)) return code;
  BindTvAudio();
  ComPtr<IVampDevice> device;
  if (const HRESULT code = ObtainVampInterfaces(device); FAILED(code)) return code;
  Initialised = true;

  ReadBoardConfiguration(*device.Get());
  WaitMs(80);
  ReadTunerFromEeprom();
  SetUpDemodulator();
  SetFmLimits(russia != 0);
  SetTvLimits();
  SetRussiaFlag(russia);
  WaitMs(80);

  std::uint8_t remote = 0xFF;
  ReadEEPROM(kEepromRemote, &remote);
  RemotePresent = (remote & kRemoteOnGpio) == 0;
  return S_OK;
}

HRESULT Saa713xDevice::ObtainFilters(IUnknown* captureFilter, IUnknown* tunerFilter) {
  if (FAILED(Query(captureFilter, CaptureProps))) {
    Log("SAA713x: Get Video Capture IKsPropertySet interface fail");
    return E_FAIL;
  }
  if (tunerFilter && FAILED(Query(tunerFilter, TunerProps))) {
    Log("SAA713x: Get Tuner IKsPropertySet interface fail");
    return E_FAIL;
  }
  return S_OK;
}

// The machine's TV-audio device sets mono and stereo on some boards. A card works without one, so
// that nothing here is an error; of several devices the last one wins.
void Saa713xDevice::BindTvAudio() {
  const ComPtr<IEnumMoniker> monikers = EnumerateCategory(kCategoryTvAudio);
  if (!monikers) return;
  monikers->Reset();
  while (const ComPtr<IMoniker> moniker = NextOf<IMoniker>(*monikers.Get())) {
    if (auto device = BindDevice<IAMTVAudio>(*moniker.Get())) TvAudio = std::move(device);
  }
}

HRESULT Saa713xDevice::Judged(HRESULT code, const char* failure) {
  if (FAILED(code)) Log(failure);
  return code;
}

HRESULT Saa713xDevice::ObtainVampInterfaces(ComPtr<IVampDevice>& device) {
  HRESULT code = CreateVampService(Service);
  if (FAILED(code)) {
    // The server may be installed but not registered: register it and its property page, try again.
    WinExec("regsvr32 /s PropPage34.dll", SW_SHOW);
    WinExec("regsvr32 /s ComSvc34.dll", SW_SHOW);
    code = CreateVampService(Service);
  }
  code = Judged(code, "SAA713x initial fail");
  if (FAILED(code)) return code;

  ULONG count = 0;
  Service->GetDeviceCount(&count);
  ComPtr<IUnknown> deviceObject;
  code = Obtain(deviceObject, [&](IUnknown** place) { return Service->GetDevice(0, place); });
  code = Judged(code, "SAA713x no device");
  if (FAILED(code)) return code;
  code = Query(deviceObject.Get(), device);
  deviceObject.Reset();
  code = Judged(code, "SAA713x initial Cannot get IVampDevice interface");
  if (FAILED(code)) return code;

  code = Obtain(Gpio, [&](IVampGpio** place) { return device->GetGpio(place); });
  code = Judged(code, "SAA713x initial Cannot get GPIO interface");
  if (FAILED(code)) return code;
  code = Obtain(I2c, [&](IVampI2c** place) { return device->GetI2c(place); });
  code = Judged(code, "SAA713x initial Cannot get I2C interface");
  if (FAILED(code)) return code;
  code = Obtain(Decoder, [&](IVampDecoder** place) { return device->GetDecoder(place); });
  return Judged(code, "SAA713x initial Cannot get IVampDecoder interface");
}

void Saa713xDevice::ReadBoardConfiguration(IVampDevice& device) {
  ULONG boardConfig = 0;
  ULONG chipId = 0;
  const HRESULT configCode = device.GetBoardConfig(&boardConfig);
  device.GetChipId(&chipId);
  HwInfo.FmTuner = boardConfig & 1;
  // Only the SAA7130 boards carry an option code of their own.
  HwInfo.BoardOptionCode = chipId == kChipSaa7130 ? (boardConfig >> 9) & 7 : 2;
  HwInfo.BoardOptionBit = (boardConfig >> 8) & 1;
  HwInfo.BoardFlag5 = 1;

  std::uint8_t codes = 0;
  ReadEEPROM(kEepromBoardCodes, &codes);
  HwInfo.BoardCode6 = codes & 0x0F;
  HwInfo.BoardCode9 = (codes >> 4) & 0x03;

  const std::uint32_t boardCode = boardConfig & 0xFF;
  if (SUCCEEDED(configCode) && boardCode <= kHighestBoardCode) ApplyBoardCode(boardCode, Board);
}

// Some tuner modules are told apart by the EEPROM alone, whatever the board code says.
void Saa713xDevice::ReadTunerFromEeprom() {
  std::uint8_t byte = 0xFF;
  ReadEEPROM(kEepromTuner, &byte);
  if (const auto tuner = TunerFromEeprom(byte)) Board.TunerType = *tuner;
}

// The demodulators of these two modules keep one set-up for good.
void Saa713xDevice::SetUpDemodulator() {
  struct Row {
    std::uint32_t tunerType;
    std::uint8_t registers[4];
  };
  static constexpr Row kRows[] = {
      {24, {0x00, 0xD0, 0x10, 0x04}},
      {37, {0x00, 0xD4, 0x2D, 0x80}},
  };
  for (const Row& row : kRows) {
    if (row.tunerType == Board.TunerType) {
      WriteBus(kDemodulatorAddress, row.registers, sizeof(row.registers));
    }
  }
}

void Saa713xDevice::SetFmLimits(bool russia) {
  std::uint32_t low = russia ? kEasternFmLowKHz : kWesternFmLowKHz;
  std::uint32_t high = kWesternFmHighKHz;
  if (!Board.StandardBoard) {
    high = 108500;
    if (Board.TunerType == 48) {
      low = kJapaneseFmLowKHz;
      high = 91000;
    }
  } else if (FmLowKHzOf(Board.TunerType) != kWesternFmLowKHz) {
    low = FmLowKHzOf(Board.TunerType);
  }

  char locale[260] = {};
  if (GetUserLocale(locale) && std::strcmp(locale, kGermanLocale) == 0) low = kWesternFmLowKHz;
  HwInfo.FmLowKHz = low;
  HwInfo.FmHighKHz = high;
}

void Saa713xDevice::SetTvLimits() {
  const TvBand band = TvBandOf(Board.TunerType);
  HwInfo.TvLowKHz = band.lowKHz;
  HwInfo.TvHighKHz = band.highKHz;
  if (!IsSilicon()) return;
  SetTunerPowerState(1);
  if (Board.TunerType == 40) {
    InitSiliconTunerA();
  } else {
    InitSiliconTunerB();
  }
}

HRESULT Saa713xDevice::GetHWInfo(ZELK_HWInfo* record) const {
  if (!Ready("SAA713x GetHWInfo(): Hardware not initial")) return E_FAIL;
  Store(record, HwInfo);
  return S_OK;
}

HRESULT Saa713xDevice::GetTunerType(std::uint32_t* type) const {
  if (!Ready("SAA713x GetTunerType(): Hardware not initial")) return E_FAIL;
  Store(type, Board.TunerType);
  return S_OK;
}

}  // namespace zelk
