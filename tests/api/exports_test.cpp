// What every export answers where something is missing: a card, one of the right family, or the
// places for its answers.
#include <cstring>

#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

class Exports : public CardTest {};

// What an export is given to read and to write.
std::uint8_t place[64];

template <class Parameter>
Parameter Argument(std::uint32_t number, bool withPlaces) {
  if constexpr (std::is_same_v<Parameter, ZELK_ScanCallback>) {
    return RecordScanEvent;
  } else if constexpr (std::is_pointer_v<Parameter>) {
    return withPlaces ? reinterpret_cast<Parameter>(place) : nullptr;
  } else if constexpr (std::is_integral_v<Parameter>) {
    return static_cast<Parameter>(number);
  } else {
    return {};
  }
}

template <class... Parameters>
HRESULT Call(HRESULT(ZELK_CALL* function)(Parameters...), [[maybe_unused]] std::uint32_t number = 1,
             [[maybe_unused]] bool withPlaces = true) {
  return function(Argument<Parameters>(number, withPlaces)...);
}

template <class Action, class... Functions>
void ForEach(Action action, Functions... functions) {
  int index = 0;
  const auto one = [&](auto function) {
    SCOPED_TRACE("export " + std::to_string(++index) + " of its list");
    action(function);
  };
  (one(functions), ...);
}

// They leave their places alone.
template <class... Functions>
void ExpectRefusal(HRESULT expected, Functions... functions) {
  const auto expectOne = [expected](auto function) {
    std::memset(place, 0xA5, sizeof(place));
    EXPECT_EQ(Call(function), expected);
    EXPECT_THAT(place, ::testing::Each(0xA5));
  };
  ForEach(expectOne, functions...);
}

void ExpectRefusalsOfEncoderCardsExports() {
  ExpectRefusal(E_FAIL, ZELK_FMGetAudioMode);
  ExpectRefusal(1, ZELK_SetAdcVolume);
  ExpectRefusal(E_NOTIMPL, ZELK_ReadI2C, ZELK_WriteI2C, ZELK_GetMPEGParam, ZELK_SetMPEGParam,
                ZELK_GetAudioSource, ZELK_GetAvailableTVAudioModes, ZELK_GetTVAudioMode,
                ZELK_GetVideoSource, ZELK_SetAudioSource, ZELK_SetTVAudioMode, ZELK_SetVideoSource);
}

TEST_F(Exports, WithoutACard) {
  ExpectRefusal(E_FAIL, ZELK_GetHWInfo, ZELK_TVInit, ZELK_put_TVFormat, ZELK_SetFreq,
                ZELK_IsSignalPresent, ZElk_put_TVSystem, ZELK_SETCaptureStandard,
                ZELK_GetVIDEOSTANDARD, ZELK_AllFreqScan, ZELK_FMInit, ZELK_FMSetFreq,
                ZELK_FMSetAudioMode, ZELK_FMIsSignalPresent, ZELK_FMAllFreqScan, ZELK_SetRussiaFlag,
                ZELK_GetRemoteData, ZELK_GetRemoteICData, ZELK_GetTunerType, ZELK_SetHWLock,
                ZELK_GetHWLock, ZELK_ReadEEPROM, ZELK_I2CReadSequence, ZELK_I2CWriteSequence,
                ZELK_SetGainValue, ZELK_GetGainValue, ZELK_SetTunerPowerState, ZELK_SetVolume,
                ZELK_SetFUSE, ZELK_GetFUSE, ZELK_SetAUDIOSYSTEM, ZELK_GetAUDIOSYSTEM);
  ExpectRefusal(S_OK, ZELK_GetDecoder, ZELK_Set7135VirtualMode, ZELK_Set7135VirtualStereoEffect,
                ZELK_Set7135Bass, ZELK_Set7135Treble, ZELK_Get7135VirtualMode,
                ZELK_Get7135VirtualStereoEffect, ZELK_Get7135Bass, ZELK_Get7135Treble);
  ExpectRefusal(0, ZELK_FM_SetSearchLevel);
  ExpectRefusalsOfEncoderCardsExports();
  EXPECT_EQ(Call(ZELK_AllFreqScan, ZELK_SCAN_STOP), E_FAIL);
  EXPECT_THAT(scanEvents, ::testing::IsEmpty());
}

TEST_F(Exports, OfOtherFamiliesAnswerAsWithoutACard) {
  PlugTv(1);
  ExpectRefusalsOfEncoderCardsExports();
}

TEST_F(Exports, TunerNameWithoutACardIsZeroed) {
  char buffer[32];
  std::memset(buffer, 'x', sizeof(buffer));
  EXPECT_EQ(ZELK_GetTunerName(buffer, 16), E_FAIL);
  EXPECT_EQ(std::string(buffer, 16), std::string(16, '\0'));
  EXPECT_EQ(buffer[16], 'x');
  EXPECT_EQ(ZELK_GetTunerName(nullptr, 16), E_FAIL);
}

// The requests alone: what chips answer depends on what they were asked before.
std::vector<std::string> WithoutAnswers(std::vector<std::string> trace) {
  for (std::string& line : trace) line = line.substr(0, line.find(" -> "));
  return trace;
}

// The same calls with and without places: the same results, the same traffic.
TEST_F(Exports, NullPlacesChangeNothingElse) {
  for (const std::uint32_t tuner : {0u, 12u, 24u, 36u, 40u, 41u, 46u}) {
    PlugTv(tuner, MakeAir({175250}));
    ASSERT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
    const auto expectSame = [&](auto function) {
      // One of these is good as the number of a lock and a length, the other as that of a property.
      for (const std::uint32_t number : {1u, 0x71u}) {
        TakeTrace();
        const HRESULT withPlaces = Call(function, number);
        const auto trafficWithPlaces = WithoutAnswers(TakeTrace());
        EXPECT_EQ(Call(function, number, false), withPlaces) << "tuner " << tuner;
        EXPECT_EQ(WithoutAnswers(TakeTrace()), trafficWithPlaces) << "tuner " << tuner;
      }
    };
    ForEach(expectSame, ZELK_GetHWInfo, ZELK_GetTunerType, ZELK_GetHWLock, ZELK_GetDecoder,
            ZELK_IsSignalPresent, ZELK_GetVIDEOSTANDARD, ZELK_GetRemoteData, ZELK_GetRemoteICData,
            ZELK_ReadEEPROM, ZELK_I2CReadSequence, ZELK_GetFUSE, ZELK_GetAUDIOSYSTEM,
            ZELK_GetGainValue, ZELK_Get7135Bass);
  }
  EXPECT_EQ(ZELK_I2CWriteSequence(0xC2, nullptr, 4), E_FAIL);
}

}  // namespace
}  // namespace zelk::test
