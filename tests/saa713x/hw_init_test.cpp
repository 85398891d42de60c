// Initialisation: each step refused in turn, and what the board's configuration makes of the card.
#include <fstream>

#include "api/library.h"
#include "platform/control.h"
#include "tests/support/card_test.h"
#include "tests/support/common_modules.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

using virtual_cards::Saa713xOptions;

class HwInit : public CardTest {
 protected:
  ZELK_HWInfo InfoOf(const Saa713xOptions& options, std::uint32_t russiaFlag = 0) {
    Plug(options);
    EXPECT_EQ(Init(russiaFlag), S_OK);
    return Info();
  }
};

TEST_F(HwInit, EachRequiredStepRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {"capture query IKsPropertySet", "SAA713x: Get Video Capture IKsPropertySet interface fail"},
      {"tuner query IKsPropertySet", "SAA713x: Get Tuner IKsPropertySet interface fail"},
      {"vamp service", "SAA713x initial fail"},
      {"vamp device", "SAA713x no device"},
      {"vamp query-device", "SAA713x initial Cannot get IVampDevice interface"},
      {"vamp gpio", "SAA713x initial Cannot get GPIO interface"},
      {"vamp i2c", "SAA713x initial Cannot get I2C interface"},
      {"vamp decoder", "SAA713x initial Cannot get IVampDecoder interface"},
  };
  for (const auto& [request, log] : cases) {
    PlugTuner(1);
    card->Refuse(request, kRefused);
    EXPECT_EQ(Init(), E_FAIL) << request;
    EXPECT_THAT(TakeLog(), ElementsAre(log));
    EXPECT_EQ(card->LiveReferences(), 0) << request;
  }
}

TEST_F(HwInit, MissingServerIsRegisteredOnce) {
  PlugTuner(1);
  host::TakeExecutedCommands();
  card->Refuse("vamp service", REGDB_E_CLASSNOTREG);
  EXPECT_EQ(Init(), E_FAIL);
  EXPECT_THAT(host::TakeExecutedCommands(),
              ElementsAre("regsvr32 /s PropPage34.dll", "regsvr32 /s ComSvc34.dll"));
  card->ClearRefusals();
  EXPECT_EQ(Init(), S_OK);
  EXPECT_THAT(host::TakeExecutedCommands(), IsEmpty());
}

// The board answers the EEPROM reads behind its configuration and behind the driver's flag after 80
// ms each.
TEST_F(HwInit, WaitsForTheBoardTwice) {
  PlugTuner(1);
  const auto before = host::SleptMilliseconds();
  ASSERT_EQ(Init(), S_OK);
  EXPECT_EQ(host::SleptMilliseconds() - before, 160u);
}

TEST_F(HwInit, FailuresThatAreNoReasonToRefuse) {
  for (const std::string request : {"tv-audio bind", "vamp count", "vamp board-config",
                                    "vamp chip-id", "i2c read A0", "capture set ZELK_SAA.70"}) {
    PlugTuner(1);
    card->Refuse(request, E_FAIL);
    EXPECT_EQ(Init(), S_OK) << request;
    const std::vector<std::string> log(request == "i2c read A0" ? 3 : 0,
                                       "SAA713x ReadEEPROM(): Read data fail");
    EXPECT_EQ(TakeLog(), log) << request;
  }
}

TEST_F(HwInit, RecordComesFromBoardConfigurationAndEeprom) {
  const auto image = MakeEeprom({{0x20, 0xFF}, {0x21, 0x2A}});
  // Bit 0: FM section; bit 8: option bit; bits 9 to 11: option code, of SAA7130 boards alone.
  EXPECT_THAT(Words(InfoOf({.chipId = 0x7130, .boardConfig = 0x0B01, .eeprom = image})),
              ElementsAre(1, 5, 1, 87500, 108000, 1, 0xA, 48250, 855250, 2));
  EXPECT_THAT(Words(InfoOf({.chipId = 0x7134, .boardConfig = 0x0A00, .eeprom = image})),
              ElementsAre(0, 2, 0, 87500, 108000, 1, 0xA, 48250, 855250, 2));
}

constexpr TunerRun kBoardCodes[] = {
    {0x00, 0x09, 0},  {0x0A, 0x0B, 14}, {0x0C, 0x0D, 10}, {0x0E, 0x0F, 16}, {0x10, 0x11, 12},
    {0x14, 0x15, 18}, {0x1A, 0x1B, 20}, {0x1C, 0x1C, 41}, {0x1D, 0x1D, 41}, {0x1E, 0x1E, 40},
    {0x1F, 0x1F, 40}, {0x20, 0x20, 24}, {0x22, 0x22, 35}, {0x24, 0x24, 36}, {0x26, 0x26, 37},
    {0x28, 0x28, 38}, {0x40, 0x40, 48}, {0x42, 0x42, 46}, {0x80, 0x85, 25}, {0xE0, 0xE0, 48},
    {0xE1, 0xE1, 48}, {0xE2, 0xE2, 46}, {0xE3, 0xE3, 46}, {0xE8, 0xE8, 47}, {0xE9, 0xE9, 47},
    {0xEE, 0xEE, 40}};
constexpr TvLimits kTvLimits[] = {{35, 35, 55250, 801250}, {36, 37, 91250, 765250},
                                  {40, 40, 40000, 865000}, {41, 41, 66000, 865000},
                                  {42, 42, 55250, 863250}, {43, 43, 48250, 863250},
                                  {45, 45, 55250, 863250}, {46, 46, 55250, 801250},
                                  {47, 47, 48250, 855250}, {48, 48, 91250, 765250}};

// Codes that name no board keep the default tuner.
TEST_F(HwInit, EveryBoardCode) {
  for (std::uint32_t code = 0; code <= 0xFF; ++code) {
    SCOPED_TRACE(::testing::Message() << std::hex << code);
    const ZELK_HWInfo info = InfoOf({.boardConfig = code});
    const std::uint32_t type = TunerNamed(kBoardCodes, code, 4);
    EXPECT_EQ(TunerType(), type);
    ExpectTvLimits(info, kTvLimits, type);
    const bool separateFm = code == 0xE3 || code == 0xE9;
    EXPECT_EQ(info.FmHighKHz, code == 0xE1 ? 91000u : separateFm ? 108500u : 108000u);
    const bool switchable = (code >= 0x1C && code <= 0x1F) || code == 0x40 || code == 0x42;
    EXPECT_EQ(ZELK_SetTunerPowerState(1), switchable ? S_OK : S_FALSE);
    // What the TV scan asks for.
    const auto* const device = Slot<Saa713xDevice>();
    EXPECT_EQ(device->GetAlpsTsehTsej(), type == 46 || type == 48);
    EXPECT_EQ(device->GetAlpsTsez(), type == 47);
  }
}

// The EEPROM has the last word, where it names a tuner.
TEST_F(HwInit, EveryEepromByte) {
  constexpr TunerRun kTuners[] = {{0x10, 0x13, 31}, {0x18, 0x1B, 42}};
  for (std::uint32_t byte = 0; byte <= 0xFF; ++byte) {
    SCOPED_TRACE(::testing::Message() << std::hex << byte);
    const ZELK_HWInfo info = InfoOf(
        {.boardConfig = 0x40, .eeprom = MakeEeprom({{0x20, static_cast<std::uint8_t>(byte)}})});
    const std::uint32_t type = TunerNamed(kTuners, byte, 48);
    EXPECT_EQ(TunerType(), type);
    ExpectTvLimits(info, kTvLimits, type);
  }
}

TEST_F(HwInit, FmLimits) {
  struct Case {
    std::uint32_t boardCode, russia;
    const char* locale;
    std::uint32_t low, high;
  };
  // Only the flag's low byte counts. A German user's band begins at 87.5 MHz whatever the board
  // says.
  const char* const none = "";
  const char* const german = "00000407";
  const Case cases[] = {
      {0x01, 0, none, 87500, 108000},        {0x03, 1, none, 62000, 108000},
      {0x03, 0x100, none, 87500, 108000},    {0x05, 0, none, 76000, 108000},
      {0x05, 1, none, 76000, 108000},        {0x15, 0, none, 62000, 108000},
      {0xE1, 0, none, 76000, 91000},         {0xE3, 0, none, 87500, 108500},
      {0xE9, 1, none, 62000, 108500},        {0xE0, 1, none, 62000, 108000},
      {0x03, 1, german, 87500, 108000},      {0x05, 0, german, 87500, 108000},
      {0xE1, 0, german, 87500, 91000},       {0x03, 1, "00000419", 62000, 108000},
      {0x03, 1, "00000407x", 62000, 108000},
  };
  for (const Case& one : cases) {
    std::filesystem::remove("registry.ini");
    if (*one.locale) {
      std::ofstream("registry.ini")
          << "[HKEY_CURRENT_USER\\Control Panel\\International]\nLocale=" << one.locale << "\n";
    }
    const ZELK_HWInfo info = InfoOf({.boardConfig = one.boardCode}, one.russia);
    EXPECT_EQ(info.FmLowKHz, one.low) << std::hex << one.boardCode;
    EXPECT_EQ(info.FmHighKHz, one.high) << std::hex << one.boardCode;
  }
}

TEST_F(HwInit, TunerPowerSwitch) {
  PlugReady({.boardConfig = 0x42});
  ZELK_SetTunerPowerState(0);
  ZELK_SetTunerPowerState(7);
  EXPECT_EQ(TakeTrace("capture set ZELK_SAA.67 "), (Lines{"00000001", "00000000"}));
  PlugReady({.boardConfig = 0xE2});
  ZELK_SetTunerPowerState(0);
  EXPECT_THAT(TakeTrace(), IsEmpty());
}

TEST_F(HwInit, LocksAndFlags) {
  PlugReady();
  EXPECT_EQ(ZELK_SetHWLock(2, 1), E_FAIL);
  EXPECT_EQ(Ask(ZELK_GetHWLock, 2), Answer(E_FAIL, kUntouched));
  EXPECT_THAT(TakeTrace(), IsEmpty());
  EXPECT_EQ(ZELK_SetHWLock(1, 5), S_OK);
  EXPECT_EQ(Ask(ZELK_GetHWLock, 1), Answer(S_OK, 5));
  EXPECT_EQ(Ask(ZELK_GetHWLock, 0), Answer(S_OK, 0));
  card->Refuse("capture set ZELK_SAA.70", E_FAIL);
  EXPECT_EQ(ZELK_SetRussiaFlag(1), E_FAIL);
  // A refused reading leaves the preset in the place: 0, or the property's own id.
  card->Refuse("capture get", E_FAIL);
  EXPECT_EQ(Ask(ZELK_GetFUSE), Answer(E_FAIL, 0));
  EXPECT_EQ(Ask(ZELK_GetGainValue, 0x71), Answer(E_FAIL, 0x71));
}

TEST_F(HwInit, WithoutATunerFilter) {
  PlugReady({.tunerFilter = false});
  ZELK_TVInit();
  TakeTrace();
  // Nothing is tuned and the standard is not stored, but the country is.
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  EXPECT_THAT(TakeTrace(), IsEmpty());
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
  EXPECT_THAT(TakeTrace(), Contains("capture set VAMP_TUNE.3 00000001 00000031 00000000 00000001"));
}

}  // namespace
}  // namespace zelk::test
