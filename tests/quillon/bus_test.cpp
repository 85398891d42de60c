// I2C, locks and the audio converter.
#include "tests/quillon/quillon_test.h"
#include "tests/support/reading.h"
#include "tests/support/told_chip.h"

namespace zelk::test {
namespace {

class QuillonBus : public QuillonTest {};

TEST_F(QuillonBus, TransfersOfUpToSixteenBytes) {
  PlugReady();
  ToldChip chip;
  chip.answers = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
  card->FitChip(0xA0, &chip);
  std::vector<std::uint8_t> bytes(20, 0x77);
  EXPECT_EQ(ZELK_ReadI2C(0xA1, bytes.data(), 16), S_OK);
  for (std::uint8_t i = 0; i < 16; ++i) EXPECT_EQ(bytes[i], i + 1);
  EXPECT_EQ(bytes[16], 0x77);
  EXPECT_EQ(ZELK_WriteI2C(0xA0, bytes.data(), 16), S_OK);
  EXPECT_EQ(ZELK_WriteI2C(0xA0, bytes.data(), 0), S_OK);
  EXPECT_THAT(TakeWrites("A0"), ElementsAre("01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10", ""));
  TakeTrace();

  // A length beyond the request block never reaches the driver.
  for (const std::uint32_t length : {17u, 256u, 0x7FFFFFFFu}) {
    EXPECT_EQ(ZELK_ReadI2C(0xA1, bytes.data(), length), E_NOTIMPL) << length;
    EXPECT_EQ(ZELK_WriteI2C(0xA0, bytes.data(), length), E_NOTIMPL) << length;
  }
  EXPECT_EQ(ZELK_WriteI2C(0xA0, nullptr, 1), E_NOTIMPL);
  EXPECT_THAT(TakeTrace(), IsEmpty());

  // A negative one does, as its low byte and without data, and the driver answers for it.
  std::uint8_t untouched = 0x77;
  EXPECT_EQ(ZELK_ReadI2C(0xA1, &untouched, 0x80000001), S_OK);
  EXPECT_EQ(untouched, 0x77);
  EXPECT_EQ(ZELK_WriteI2C(0xA0, nullptr, 0x80000001), S_OK);
  EXPECT_EQ(ZELK_WriteI2C(0xA0, bytes.data(), 0xFFFFFFFF), E_NOTIMPL);
  EXPECT_THAT(TakeWrites("A0"), ElementsAre("00"));
}

TEST_F(QuillonBus, RefusedTransfers) {
  PlugReady();
  std::uint8_t bytes[5] = {9, 9, 9, 9, 9};
  // Nothing there: what the driver's block held is delivered all the same.
  EXPECT_EQ(ZELK_ReadI2C(0x50, bytes, 5), E_NOTIMPL);
  EXPECT_THAT(bytes, Each(0));
  EXPECT_EQ(ZELK_WriteI2C(0x50, bytes, 2), E_NOTIMPL);
  // A driver that does not offer the property is not asked.
  card->Refuse("capture query-supported QL2_I2C", kRefused);
  TakeTrace();
  bytes[0] = 9;
  EXPECT_EQ(ZELK_ReadI2C(0xC1, bytes, 5), E_NOTIMPL);
  EXPECT_EQ(ZELK_WriteI2C(0xC0, bytes, 5), E_NOTIMPL);
  EXPECT_EQ(bytes[0], 9);
  EXPECT_THAT(TakeTrace(), Each(HasSubstr("query-supported")));
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(QuillonBus, Locks) {
  PlugReady();
  // Reading asks for nothing, setting for a mode.
  EXPECT_EQ(Ask(ZELK_GetHWLock, 1), Answer(S_OK, 0));
  EXPECT_EQ(ZELK_SetHWLock(0, 1), VFW_E_WRONG_STATE);
  EXPECT_THAT(TakeLog(), ElementsAre("Quillon SetHWLock(): Current mode not TV or FM"));
  for (const auto& enter : {&ZELK_TVInit, &ZELK_FMInit}) {
    enter();
    TakeTrace();
    EXPECT_EQ(ZELK_SetHWLock(0, 1), S_OK);
    EXPECT_EQ(ZELK_SetHWLock(1, 0x1FE), S_OK);  // the low byte counts
    EXPECT_THAT(TakeTrace(), ElementsAre("capture query-supported QL2_BOARD.106 -> 00000003",
                                         "capture set QL2_BOARD.106 01",
                                         "capture query-supported QL2_BOARD.109 -> 00000003",
                                         "capture set QL2_BOARD.109 FE"));
    EXPECT_EQ(Ask(ZELK_GetHWLock, 0), Answer(S_OK, 1));
    EXPECT_EQ(Ask(ZELK_GetHWLock, 1), Answer(S_OK, 0xFE));
  }
  TakeTrace();
  EXPECT_EQ(Ask(ZELK_GetHWLock, 2), Answer(E_FAIL, kUntouched));
  EXPECT_THAT(TakeLog(), IsEmpty());
  EXPECT_EQ(ZELK_SetHWLock(2, 1), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("Unknown lock hardware type"));
  EXPECT_THAT(TakeTrace(), IsEmpty());

  card->Refuse("capture set QL2_BOARD", kRefused);
  card->Refuse("capture get QL2_BOARD", kRefused);
  EXPECT_EQ(ZELK_SetHWLock(0, 1), kRefused);
  EXPECT_EQ(Ask(ZELK_GetHWLock, 0), Answer(kRefused, 0));  // what the block held
  EXPECT_THAT(TakeLog(), IsEmpty());

  card->Refuse("capture query-supported QL2_BOARD", kRefused);
  EXPECT_EQ(ZELK_GetHWLock(0, nullptr), E_FAIL);
  EXPECT_EQ(ZELK_SetHWLock(0, 1), E_FAIL);
  EXPECT_EQ(ZELK_SetHWLock(1, 1), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("Quillon SetHWLock: QuerySupported PropertySet fail"));
}

TEST_F(QuillonBus, AudioConverter) {
  PlugReady();
  EXPECT_EQ(ZELK_SetAdcVolume(), S_OK);
  EXPECT_THAT(TakeWrites("34"), ElementsAre("00 1F", "02 1F"));
  EXPECT_THAT(host::TakeDebugOutput(), ElementsAre("end of set adc volume"));
  card->Refuse("i2c write 34: 02", kRefused);
  EXPECT_EQ(ZELK_SetAdcVolume(), S_OK);
  EXPECT_THAT(host::TakeDebugOutput(),
              ElementsAre("Set ADC Volume R1 failed.", "end of set adc volume"));
  card->Refuse("i2c write 34", kRefused);
  ZELK_SetAdcVolume();
  EXPECT_THAT(host::TakeDebugOutput(),
              ElementsAre("Set ADC Volume R0 failed.", "Set ADC Volume R1 failed.",
                          "end of set adc volume"));
}

}  // namespace
}  // namespace zelk::test
