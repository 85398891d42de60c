// What each export answers while no card is live, and that it touches nothing.
#include <cstring>

#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

struct Place {
  std::uint64_t words[8];
};

struct Case {
  const char* name;
  HRESULT expected;
  HRESULT (*call)(Place& place);
};

std::uint32_t* U32(Place& place) { return reinterpret_cast<std::uint32_t*>(&place); }
std::uint8_t* U8(Place& place) { return reinterpret_cast<std::uint8_t*>(&place); }
double* F64(Place& place) { return reinterpret_cast<double*>(&place); }

const Case kCases[] = {
    {"GetHWInfo", E_FAIL,
     [](Place& p) { return ZELK_GetHWInfo(reinterpret_cast<ZELK_HWInfo*>(&p)); }},
    {"TVInit", E_FAIL, [](Place&) { return ZELK_TVInit(); }},
    {"put_TVFormat", E_FAIL, [](Place&) { return ZELK_put_TVFormat(0x10, 49); }},
    {"SetFreq", E_FAIL, [](Place& p) { return ZELK_SetFreq(175250, U32(p)); }},
    {"IsSignalPresent", E_FAIL,
     [](Place& p) { return ZELK_IsSignalPresent(U32(p), U32(p) + 1, F64(p) + 1); }},
    {"put_TVSystem", E_FAIL, [](Place&) { return ZElk_put_TVSystem(0x10, 1); }},
    {"SETCaptureStandard", E_FAIL, [](Place&) { return ZELK_SETCaptureStandard(0x10); }},
    {"GetVIDEOSTANDARD", E_FAIL, [](Place& p) { return ZELK_GetVIDEOSTANDARD(U32(p)); }},
    {"AllFreqScan", E_FAIL, [](Place&) { return ZELK_AllFreqScan(RecordScanEvent, 1); }},
    {"AllFreqScan stop", E_FAIL, [](Place&) { return ZELK_AllFreqScan(RecordScanEvent, 0); }},
    {"FMInit", E_FAIL, [](Place&) { return ZELK_FMInit(); }},
    {"FMSetFreq", E_FAIL, [](Place& p) { return ZELK_FMSetFreq(98000, U32(p)); }},
    {"FMSetAudioMode", E_FAIL, [](Place&) { return ZELK_FMSetAudioMode(1); }},
    {"FMGetAudioMode", E_FAIL, [](Place& p) { return ZELK_FMGetAudioMode(U32(p)); }},
    {"FMIsSignalPresent", E_FAIL,
     [](Place& p) { return ZELK_FMIsSignalPresent(U32(p), U32(p) + 1, F64(p) + 1); }},
    {"FMAllFreqScan", E_FAIL,
     [](Place&) { return ZELK_FMAllFreqScan(RecordScanEvent, 1, 0, 0, 0, 0); }},
    {"FM_SetSearchLevel", 0, [](Place&) { return ZELK_FM_SetSearchLevel(5); }},
    {"SetRussiaFlag", E_FAIL, [](Place&) { return ZELK_SetRussiaFlag(1); }},
    {"GetRemoteData", E_FAIL, [](Place& p) { return ZELK_GetRemoteData(U32(p)); }},
    {"GetRemoteICData", E_FAIL, [](Place& p) { return ZELK_GetRemoteICData(U8(p)); }},
    {"GetTunerType", E_FAIL, [](Place& p) { return ZELK_GetTunerType(U32(p)); }},
    {"SetHWLock", E_FAIL, [](Place&) { return ZELK_SetHWLock(0, 1); }},
    {"GetHWLock", E_FAIL, [](Place& p) { return ZELK_GetHWLock(0, U32(p)); }},
    {"ReadEEPROM", E_FAIL, [](Place& p) { return ZELK_ReadEEPROM(0x20, U8(p)); }},
    {"I2CReadSequence", E_FAIL, [](Place& p) { return ZELK_I2CReadSequence(0xC1, U8(p), 1); }},
    {"I2CWriteSequence", E_FAIL, [](Place& p) { return ZELK_I2CWriteSequence(0xC2, U8(p), 1); }},
    {"ReadI2C", E_NOTIMPL, [](Place& p) { return ZELK_ReadI2C(0xC1, U8(p), 1); }},
    {"WriteI2C", E_NOTIMPL, [](Place& p) { return ZELK_WriteI2C(0xC2, U8(p), 1); }},
    {"SetGainValue", E_FAIL, [](Place&) { return ZELK_SetGainValue(0x71, 1); }},
    {"GetGainValue", E_FAIL, [](Place& p) { return ZELK_GetGainValue(0x71, U32(p)); }},
    {"SetTunerPowerState", E_FAIL, [](Place&) { return ZELK_SetTunerPowerState(1); }},
    {"SetVolume", E_FAIL, [](Place&) { return ZELK_SetVolume(1); }},
    {"SetFUSE", E_FAIL, [](Place&) { return ZELK_SetFUSE(1); }},
    {"GetFUSE", E_FAIL, [](Place& p) { return ZELK_GetFUSE(U32(p)); }},
    {"SetAUDIOSYSTEM", E_FAIL, [](Place&) { return ZELK_SetAUDIOSYSTEM(1); }},
    {"GetAUDIOSYSTEM", E_FAIL, [](Place& p) { return ZELK_GetAUDIOSYSTEM(U32(p)); }},
    {"GetDecoder", S_OK, [](Place& p) { return ZELK_GetDecoder(U32(p)); }},
    {"Set7135VirtualMode", S_OK, [](Place&) { return ZELK_Set7135VirtualMode(1); }},
    {"Set7135VirtualStereoEffect", S_OK, [](Place&) { return ZELK_Set7135VirtualStereoEffect(1); }},
    {"Set7135Bass", S_OK, [](Place&) { return ZELK_Set7135Bass(1); }},
    {"Set7135Treble", S_OK, [](Place&) { return ZELK_Set7135Treble(1); }},
    {"Get7135VirtualMode", S_OK, [](Place& p) { return ZELK_Get7135VirtualMode(U32(p)); }},
    {"Get7135VirtualStereoEffect", S_OK,
     [](Place& p) { return ZELK_Get7135VirtualStereoEffect(U32(p)); }},
    {"Get7135Bass", S_OK, [](Place& p) { return ZELK_Get7135Bass(U32(p)); }},
    {"Get7135Treble", S_OK, [](Place& p) { return ZELK_Get7135Treble(U32(p)); }},
    {"GetMPEGParam", E_NOTIMPL,
     [](Place& p) { return ZELK_GetMPEGParam(reinterpret_cast<ZELK_MpegParams*>(&p)); }},
    {"SetMPEGParam", E_NOTIMPL, [](Place&) { return ZELK_SetMPEGParam({}); }},
    {"SetAdcVolume", 1, [](Place&) { return ZELK_SetAdcVolume(); }},
    {"GetAudioSource", E_NOTIMPL, [](Place&) { return ZELK_GetAudioSource(); }},
    {"GetAvailableTVAudioModes", E_NOTIMPL, [](Place&) { return ZELK_GetAvailableTVAudioModes(); }},
    {"GetTVAudioMode", E_NOTIMPL, [](Place&) { return ZELK_GetTVAudioMode(); }},
    {"GetVideoSource", E_NOTIMPL, [](Place&) { return ZELK_GetVideoSource(); }},
    {"SetAudioSource", E_NOTIMPL, [](Place&) { return ZELK_SetAudioSource(); }},
    {"SetTVAudioMode", E_NOTIMPL, [](Place&) { return ZELK_SetTVAudioMode(); }},
    {"SetVideoSource", E_NOTIMPL, [](Place&) { return ZELK_SetVideoSource(); }},
};

class NoCard : public CardTest {};

TEST_F(NoCard, EveryExportHasItsAnswer) {
  for (const Case& one : kCases) {
    Place place;
    std::memset(&place, 0xA5, sizeof(place));
    const Place before = place;
    EXPECT_EQ(one.call(place), one.expected) << one.name;
    EXPECT_EQ(std::memcmp(&place, &before, sizeof(place)), 0) << one.name << " touched its place";
  }
  EXPECT_THAT(scanEvents, ::testing::IsEmpty());
}

TEST_F(NoCard, TunerNameIsZeroedAndUnanswered) {
  char buffer[32];
  std::memset(buffer, 'x', sizeof(buffer));
  EXPECT_EQ(ZELK_GetTunerName(buffer, 16), E_FAIL);
  EXPECT_EQ(std::string(buffer, 16), std::string(16, '\0'));
  EXPECT_EQ(buffer[16], 'x');
  EXPECT_EQ(ZELK_GetTunerName(nullptr, 16), E_FAIL);
}

}  // namespace
}  // namespace zelk::test
