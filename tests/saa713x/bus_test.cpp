// I2C, EEPROM and remote control: what goes over the wires and what failures look like.
#include "platform/control.h"
#include "platform/vamp.h"
#include "tests/support/card_test.h"
#include "tests/support/operations.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

using virtual_cards::Saa713xOptions;

class Bus : public CardTest {};

TEST_F(Bus, SequencesSelectTheirDevice) {
  PlugReady();
  const std::uint8_t bytes[] = {0x0D, 0x42, 0xCE, 0x90};
  EXPECT_EQ(ZELK_I2CWriteSequence(0xC2, bytes, 4), S_OK);
  std::uint8_t buffer[2] = {};
  EXPECT_EQ(ZELK_I2CReadSequence(0xA1, buffer, 2), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select C2", "i2c write C2: 0D 42 CE 90",
                                       "i2c select A1", StartsWith("i2c read A1 -> ")));
}

TEST_F(Bus, FailuresOfSequences) {
  constexpr HRESULT kBusError = static_cast<HRESULT>(0x8007001F);
  PlugReady();
  std::uint8_t buffer[2] = {};
  // The call succeeds, the bus status says it failed.
  card->Refuse("i2c read", kVampBusFailed);
  EXPECT_EQ(ZELK_I2CReadSequence(0xC1, buffer, 2), E_FAIL);
  card->ClearRefusals();
  // The driver's own code is not passed on for reads, but for writes.
  card->Refuse("i2c read", kBusError);
  EXPECT_EQ(ZELK_I2CReadSequence(0xC1, buffer, 2), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x I2CRead() fail", "SAA713x I2CRead() fail"));
  card->Refuse("i2c write", kBusError);
  EXPECT_EQ(ZELK_I2CWriteSequence(0xC2, buffer, 2), kBusError);
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x I2CWriteSequence() fail"));
}

TEST_F(Bus, Eeprom) {
  std::array<std::uint8_t, 256> image;
  for (std::size_t i = 0; i < image.size(); ++i) image[i] = static_cast<std::uint8_t>(255 - i);
  PlugReady({.eeprom = image});
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x30), Answer(S_OK, 0xCF));
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select A0", "i2c read A0[30] -> CF"));
  // Its status is not looked at: the call's own code decides.
  card->Refuse("i2c read A0", kVampBusFailed);
  EXPECT_EQ(ZELK_ReadEEPROM(0x31, nullptr), S_OK);

  PlugReady({.eepromPresent = false});
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x30), Answer(E_FAIL, 0));
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x ReadEEPROM(): Read data fail"));
}

TEST_F(Bus, RemoteChipKeys) {
  PlugReady();
  // The byte that says who speaks, the key's code, and what the two exports make of them.
  const std::tuple<std::uint8_t, std::uint8_t, std::uint32_t, std::uint8_t> cases[] = {
      {2, 0, 0x02, 0x30}, {2, 1, 0x82, 0x31}, {2, 2, 0x42, 0x32}, {2, 3, 0xC2, 0x33},
      {2, 5, 0xA2, 0},    {2, 16, 0x0A, 0},   {2, 31, 0xFA, 0},   {2, 32, 0, 0},
      {2, 0xFF, 0, 1},    {3, 0, 0x03, 0x20}, {3, 1, 0x83, 0x21}, {3, 2, 0x43, 0x22},
      {3, 3, 0xC3, 0x23}, {3, 4, 0, 0},       {3, 0xFF, 0, 0},    {1, 0, 0, 0},
      {4, 2, 0, 0},
  };
  for (const auto& [kind, code, data, icData] : cases) {
    card->PressKey(kind, code);
    EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(S_OK, data)) << +kind << " " << +code;
    EXPECT_EQ(Ask<std::uint8_t>(ZELK_GetRemoteICData), Answer(S_OK, icData))
        << +kind << " " << +code;
  }
}

TEST_F(Bus, RemoteChipTraffic) {
  PlugReady();
  card->PressKey(2, 1);
  const auto before = host::SleptMilliseconds();
  EXPECT_EQ(ZELK_GetRemoteData(nullptr), S_OK);
  EXPECT_EQ(host::SleptMilliseconds() - before, 20u);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select 80", "i2c read 80[0D] -> 01", "i2c select 80",
                                       "i2c read 80[0B] -> 02"));
  EXPECT_EQ(ZELK_GetRemoteICData(nullptr), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select 80", "i2c write 80: 0D", "i2c read 80 -> 01",
                                       "i2c select 80", "i2c write 80: 0B", "i2c read 80 -> 02"));
  // The result is that of the last read alone.
  card->Refuse("i2c read 80[0D]", E_FAIL);
  EXPECT_EQ(ZELK_GetRemoteData(nullptr), S_OK);
  card->Refuse("i2c read 80[0B]", E_FAIL);
  EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(E_FAIL, 0));
}

TEST_F(Bus, RemoteOnGpio) {
  PlugReady({.remoteChip = false});
  // Lines 3 to 10 carry the eight bits; line 4 is high while a key waits.
  for (const unsigned line : {3u, 4u, 6u, 10u}) card->DriveGpioInput(line, true);
  TakeTrace();
  EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(S_OK, 0x8B));
  EXPECT_THAT(TakeTrace(),
              ElementsAre("gpio 3 -> 1", "gpio 4 -> 1", "gpio 5 -> 0", "gpio 6 -> 1", "gpio 7 -> 0",
                          "gpio 8 -> 0", "gpio 9 -> 0", "gpio 10 -> 1", "gpio 2 := 1"));
  card->DriveGpioInput(4, false);
  for (const unsigned line : {3u, 6u, 10u}) card->DriveGpioInput(line, true);
  EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(S_OK, 0));
  EXPECT_THAT(TakeTrace(), ElementsAre("gpio 3 -> 1", "gpio 4 -> 0"));
  card->Refuse("gpio 4", E_FAIL);
  EXPECT_EQ(ZELK_GetRemoteData(nullptr), E_FAIL);
}

TEST_F(Bus, UnreadableRemoteByteMeansTheChip) {
  // EEPROM byte 0x22 reads as 0, so that its bit 2 is clear.
  PlugReady({.eepromPresent = false});
  ZELK_GetRemoteData(nullptr);
  EXPECT_EQ(TakeTrace().front(), "i2c select 80");
}

// Before HWInit has finished, every operation refuses, most with a line of their own.
TEST_F(Bus, UninitialisedObject) {
  Saa713xDevice device;
  auto operations = kOperations<Saa713xDevice>;
  using Device = Saa713xDevice;
  operations.insert(
      operations.end(),
      {{"I2CReadSequence", Needs::Nothing,
        [](Device& d) { return d.I2CReadSequence(0xC1, &byte, 1); }},
       {"GetRemoteICData", Needs::Nothing, [](Device& d) { return d.GetRemoteICData(&byte); }},
       {"SetVolume", Needs::AnyMode, [](Device& d) { return d.SetVolume(1); }},
       {"GetFUSE", Needs::AnyMode, [](Device& d) { return d.GetFUSE(&word); }},
       {"SetAUDIOSYSTEM", Needs::AnyMode, [](Device& d) { return d.SetAUDIOSYSTEM(1); }}});
  byte = word = 7;
  for (const auto& one : operations) {
    const std::string name = one.name;
    EXPECT_EQ(one.call(device), E_FAIL) << name;
    const bool silent = one.needs == Needs::AnyMode || name == "IsSignalPresent_TUNER";
    EXPECT_EQ(TakeLog(), Lines(!silent, "SAA713x " + name + one.tooEarly)) << name;
  }
  EXPECT_EQ(word, 7u);
  EXPECT_EQ(byte, 7);
}

}  // namespace
}  // namespace zelk::test
