// Discovery, and the change to TV and FM.
#include "backends/bt878/bt878_device.h"

#include "backends/tuner_modules/bus_addresses.h"
#include "backends/tuner_modules/demodulator.h"

namespace zelk {
namespace {

constexpr const char* kAcceptedNames[] = {
    "Varnel Capture",
    "Telmora Capture",
    "Korvane, Telmora WDM Video Capture (878)",
};

constexpr FamilyTraits kBt878 = {
    .Log = {"BT878", "zelkapi_BT878.log"},
    .UnknownTunerLog = {"BT878", "zelkapi.log"},
    .LogsRefusals = false,
    .AcceptedNames = kAcceptedNames,
    .PllAddress = 0xC2,
    .HighestTunerType = 51,
    .LockProperties = {6, 7},
    .FmStatusWaitMs = 0,
    .FmSignalWaitMs = 80,
    .FmStatusDemodulators = {13, 15, 19, 21},
};

// EEPROM bytes that describe the board.
constexpr std::uint8_t kEepromTuner = 0x41;
constexpr std::uint8_t kEepromOptions = 0x42;
constexpr std::uint8_t kEepromProduct = 0xFD;

// The tuner module by its maker (bits 0 to 2 of byte 0x41), FM section (bits 3 and 4), series (bits
// 5 and 6) and model (bits 4 to 7 of byte 0x42).
constexpr std::uint8_t kAny = 0xFF;

struct TunerRow {
  std::uint8_t maker;
  std::uint8_t fm;
  std::uint8_t series;
  std::uint8_t model;
  std::uint32_t tunerType;
};

constexpr TunerRow kTuners[] = {
    {5, 0, kAny, kAny, 10}, {5, 1, kAny, kAny, 11}, {2, 0, kAny, kAny, 0}, {2, 1, kAny, kAny, 1},
    {0, 0, 2, 1, 0},        {0, 0, 2, 0, 4},        {0, 0, 2, 3, 6},       {0, 0, 2, 2, 8},
    {0, 1, 2, 1, 1},        {0, 1, 2, 0, 5},        {0, 1, 2, 3, 7},       {0, 1, 2, 2, 9},
    {0, 0, 3, 10, 14},      {0, 0, 3, 0, 12},       {0, 1, 3, 10, 15},     {0, 1, 3, 0, 13},
    {0, 0, 0, 13, 40},      {0, 0, 1, 10, 20},      {0, 1, 1, 10, 21},     {7, 0, 0, 0, 42},
    {7, 0, 0, 9, 43},       {7, 1, 0, 0, 44},       {7, 1, 0, 9, 45},
};

constexpr bool Fits(std::uint8_t wanted, std::uint8_t field) {
  return wanted == kAny || wanted == field;
}

// Products by the last EEPROM bytes.
enum class Product { Other, Older, Newer };

constexpr Product ProductOf(std::uint8_t byte) {
  return byte == 3 || byte == 4   ? Product::Older
         : byte == 7 || byte == 8 ? Product::Newer
                                  : Product::Other;
}

}  // namespace

Bt878Device::Bt878Device()
    : BtFamilyDevice(kBt878, pioGate),
      DriverTransport(CaptureProps, kBt878.Log),
      LibraryTransport(DriverTransport) {}

bool Bt878Device::SetUpDriver() {
  if (FAILED(DriverTransport.InitI2c(false))) {
    TunerProps.Reset();
    CaptureProps.Reset();
    return false;
  }
  Bus = &DriverTransport;
  Software = &DriverTransport;
  return true;
}

bool Bt878Device::SetUpLibrary() {
  if (!Library.Load(kPioGateFile)) return false;
  Library.Bind(kPioGateEntries);
  const int reached = pioGate.InitIo();
  const int usable = pioGate.I2cIsInitOk();
  if (reached == 0 || usable == 0) {
    Library.Unload();
    return false;
  }
  pioGate.I2cInitSwMode(kI2cClockHz);
  Bus = &LibraryTransport;
  Software = &LibraryTransport;
  return true;
}

bool Bt878Device::IdentifyBoard() {
  std::uint8_t tuner = 0;
  const bool noEeprom = ReadEEPROM(kEepromTuner, &tuner) == E_FAIL;
  if (noEeprom) Family.Log.Say(" HWInit(): No EEPROM");
  tuner = 0;
  ReadEEPROM(kEepromTuner, &tuner);
  if (tuner == 0xFF) return false;
  std::uint8_t options = 0;
  ReadEEPROM(kEepromOptions, &options);

  const std::uint8_t fm = (tuner >> 3) & 3;
  for (const TunerRow& row : kTuners) {
    if (row.maker == (tuner & 7) && row.fm == fm && Fits(row.series, (tuner >> 5) & 3) &&
        Fits(row.model, options >> 4)) {
      TunerType = row.tunerType;
    }
  }
  HwInfo.FmTuner = fm;
  HwInfo.BoardOptionBit = options & 1;
  HwInfo.BoardOptionCode = (options >> 1) & 7;

  std::uint8_t productByte = 0;
  ReadEEPROM(kEepromProduct, &productByte);
  const Product product = ProductOf(productByte);
  HwInfo.BoardFlag5 = product != Product::Other;
  HwInfo.BoardCode6 =
      product == Product::Newer || (product == Product::Older && noEeprom) ? 2 : 0xFF;
  return true;
}

HRESULT Bt878Device::InitialTV() {
  if (!Ready("InitialTV")) return E_FAIL;
  CurrentMode = Mode::TV;
  if (const DemodulatorWords* const words = DemodulatorWordsForTv(TunerType)) {
    const HardwareI2c hardware(*Bus);
    WriteDWord(kDemodulatorAddress, words->word1, words->word2);
  }
  constexpr TunerSet kFormatOnTvMode = {14, 15, 20, 21};
  if (kFormatOnTvMode.Has(TunerType)) {
    if (const DemodulatorWords* const words =
            DemodulatorWordsForFormat(kMk3Formats, VideoStandard)) {
      WriteDWord(kDemodulatorAddress, words->word1, words->word2);
    }
    Retune();
  }
  // Any country is then a change for SetTVFormat.
  CountryCode = 0;
  return S_OK;
}

HRESULT Bt878Device::InitialFM(std::uint32_t audioMode) {
  return Ready("InitialFM") ? EnterFm(audioMode) : E_FAIL;
}

HRESULT Bt878Device::I2CReadSequence(std::uint8_t device, std::uint8_t subaddress,
                                     std::uint8_t* bytes, std::uint32_t count) {
  if (!Ready("I2CReadSequence")) return E_FAIL;
  return Software->ReadRegisters(device, subaddress, bytes, count);
}

}  // namespace zelk
