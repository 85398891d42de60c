// Discovery, and the change to TV and FM.
#include "backends/bt88x/bt88x_device.h"

namespace zelk {
namespace {

constexpr const char* kAcceptedNames[] = {
    "Korvane, Telmora N57/N68 Video Capture",   "Varnel 2388x Video Capture",
    "Hollis INC. GX-DW7/PCI WDM Video Capture", "Hollis INC. GX-DW7/PCI Video Capture",
    "Korvane, Telmora WDM Video Capture (88x)", "Korvane Telmora Video Capture (QL2)",
};

constexpr FamilyTraits kBt88x = {
    .Log = {"BT88X", "zelkapi_BT88X.log"},
    .UnknownTunerLog = {"BT88X", "zelkapi_BT88X.log"},
    .LogsRefusals = true,
    .AcceptedNames = kAcceptedNames,
    .PllAddress = 0xC0,
    .HighestTunerType = 34,
    .LockProperties = {106, 103},
    .FmStatusWaitMs = 32,
    .FmSignalWaitMs = 32,
    .FmStatusDemodulators = {13, 15, 19, 20, 21},
};

// EEPROM bytes that describe the board.
constexpr std::uint8_t kEepromTuner = 0x06;
constexpr std::uint8_t kEepromOptions = 0x42;

struct TunerRow {
  std::uint8_t byte;
  std::uint32_t tunerType;
};

constexpr TunerRow kTuners[] = {
    {0x00, 0},  {0x01, 1},  {0x02, 2},  {0x03, 3},  {0x05, 5},  {0x06, 6},  {0x07, 7},
    {0x08, 8},  {0x09, 9},  {0x0A, 14}, {0x0B, 15}, {0x0C, 10}, {0x0D, 11}, {0x0E, 16},
    {0x0F, 17}, {0x10, 12}, {0x11, 13}, {0x1A, 20}, {0x1B, 21}, {0x20, 24}, {0x80, 25},
    {0x81, 26}, {0x82, 27}, {0x83, 28}, {0x84, 29}, {0x85, 30},
};
constexpr std::uint32_t kOtherTuner = 4;

std::uint32_t TunerOf(std::uint8_t byte) {
  for (const TunerRow& row : kTuners) {
    if (row.byte == byte) return row.tunerType;
  }
  return kOtherTuner;
}

// The country with which FM stations are named to the tuner driver.
constexpr std::uint32_t kFmCountry = 886;

}  // namespace

Bt88xDevice::Bt88xDevice()
    : BtFamilyDevice(kBt88x, pioGate880), DriverTransport(CaptureProps, kBt88x.Log) {}

bool Bt88xDevice::SetUpDriver() {
  if (!DriverTransport.InitI2c()) {
    Family.Log.Say(": Initial I2C HW Mode fail");
    return false;
  }
  Bus = &DriverTransport;
  return true;
}

bool Bt88xDevice::SetUpLibrary() {
  if (!Library.Load(kPioGate880File)) {
    Family.Log.Say(" load PioGate880.dll fail");
    return false;
  }
  bool usable = Library.Bind(kPioGate880Entries);
  // Both are called whatever else is missing or has failed, and each failure has its line.
  if (pioGate880.InitIo && pioGate880.InitIo() == 0) {
    Family.Log.Say(" HWInit call g_pBT880_INIT_IO() function fail");
    usable = false;
  }
  if (pioGate880.I2cIsInitOk && pioGate880.I2cIsInitOk() == 0) {
    Family.Log.Say(" HWInit call g_pBT880_I2CISINITOK() function fail");
    usable = false;
  }
  if (!usable) {
    Library.Unload();
    return false;
  }
  pioGate880.I2cInitSwMode(kI2cClockHz);
  Bus = &LibraryTransport;
  return true;
}

bool Bt88xDevice::IdentifyBoard() {
  std::uint8_t tuner = 0;
  ReadEEPROM(kEepromTuner, &tuner);
  TunerType = TunerOf(tuner);
  HwInfo.FmTuner = TunerType & 1;

  std::uint8_t options = 0;
  ReadEEPROM(kEepromOptions, &options);
  HwInfo.BoardOptionBit = options & 1;
  const std::uint32_t code = (options >> 1) & 7;
  // 4 is another name of 3; higher codes name nothing.
  if (code <= 4) HwInfo.BoardOptionCode = code == 4 ? 3 : code;
  HwInfo.BoardFlag5 = 1;
  HwInfo.BoardCode6 = 0xFF;
  HwInfo.BoardCode9 = 0;
  return true;
}

// There is no mode yet, so that the locks around the change are refused, with their lines.
void Bt88xDevice::PrepareTuner() { SwitchTunerMode(AMTUNER_MODE_TV, Channel::Preset); }

// Lock 0 is open while the tuner driver changes its mode, and closed afterwards.
void Bt88xDevice::SwitchTunerMode(AMTunerModeType mode, Channel channel) {
  if (!TunerProps) return;
  constexpr LONG kPresetChannel = 9;
  SetHWLock(0, 0);
  ComPtr<IAMTVTuner> tuner;
  if (SUCCEEDED(Query(TunerProps.Get(), tuner))) {
    tuner->put_Mode(mode);
    if (channel == Channel::Preset) tuner->put_Channel(kPresetChannel, 0, 0);
    tuner.Reset();
  }
  SetHWLock(0, 1);
}

// The driver is asked for the interface anew for each lock that is set.
HRESULT Bt88xDevice::LockProperties(ComPtr<IKsPropertySet>& properties) {
  const HRESULT code = Query(CaptureProps.Get(), properties);
  if (FAILED(code)) Family.Log.Say(" SetHWLock: Get IKsPropertySet interface fail");
  return code;
}

HRESULT Bt88xDevice::InitialTV() {
  if (!Ready("InitialTV")) return E_FAIL;
  SwitchTunerMode(AMTUNER_MODE_TV);
  CurrentMode = Mode::TV;
  return S_OK;
}

HRESULT Bt88xDevice::InitialFM(std::uint32_t audioMode) {
  if (!Ready("InitialFM")) return E_FAIL;
  SwitchTunerMode(AMTUNER_MODE_FM_RADIO);
  return EnterFm(audioMode);
}

HRESULT Bt88xDevice::TuneFm() {
  return TunerProps ? TuneByDriver(FmFrequency, kFmCountry) : BtFamilyDevice::TuneFm();
}

}  // namespace zelk
