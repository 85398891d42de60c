// The encoder's parameters, to the card and back.
#include <cstring>

#include "tests/quillon/quillon_test.h"

namespace zelk::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr ZELK_MpegParams kOrdinary = {.StreamType = 0,
                                       .Width = 352,
                                       .Height = 288,
                                       .Reserved3 = 0,
                                       .Reserved4 = 0,
                                       .BitRate = 6000,
                                       .MaxBitRate = 8000,
                                       .VariableBitRate = 1,
                                       .Reserved8 = 0,
                                       .Option9 = 15,
                                       .Option10 = 0,
                                       .Reserved11 = 0,
                                       .Reserved12 = 0,
                                       .AudioSampleRate = 32000,
                                       .AudioBitRate = 224,
                                       .AudioMode = 3};

class QuillonMpeg : public QuillonTest {
 protected:
  ZELK_MpegParams Get() {
    ZELK_MpegParams params = {};
    EXPECT_EQ(ZELK_GetMPEGParam(&params), S_OK);
    return params;
  }
  // The encoder's property requests after `SetMPEGParam`.
  Lines Written(const ZELK_MpegParams& params) {
    TakeTrace();
    EXPECT_EQ(ZELK_SetMPEGParam(params), S_OK);
    Lines lines;
    for (const std::string& line : TakeTrace()) {
      if (line.starts_with("encoder set QL2_ENCODER.")) lines.push_back(line.substr(24));
    }
    return lines;
  }
};

TEST_F(QuillonMpeg, WritesInOrder) {
  PlugReady();
  EXPECT_THAT(Written(kOrdinary),
              ElementsAre("9 00000002", "5 0B", "7 00000003", "8 00000002",
                          "1 00000000 005B8D80 007A1200", "2 00000000", "3 0F"));
  const ZELK_MpegParams read = Get();
  EXPECT_EQ(read.StreamType, 0u);
  EXPECT_EQ(read.Width, 352u);
  EXPECT_EQ(read.Height, 288u);
  EXPECT_EQ(read.BitRate, 6000u);
  EXPECT_EQ(read.MaxBitRate, 8000u);
  EXPECT_EQ(read.VariableBitRate, 1u);
  EXPECT_EQ(read.Option9, 15u);
  EXPECT_EQ(read.AudioSampleRate, 32000u);
  EXPECT_EQ(read.AudioBitRate, 224u);
  EXPECT_EQ(read.AudioMode, 3u);
}

TEST_F(QuillonMpeg, ValuesAndTheirCodes) {
  using Word = std::uint32_t ZELK_MpegParams::*;
  struct Case {
    Word word;
    std::uint32_t value;
    const char* written;
    std::uint32_t read;
  };
  PlugReady();
  for (const Case& one : {
           Case{&ZELK_MpegParams::StreamType, 0, "9 00000002", 0},
           {&ZELK_MpegParams::StreamType, 1, "9 0000000E", 1},
           {&ZELK_MpegParams::StreamType, 2, "9 0000000B", 2},
           {&ZELK_MpegParams::StreamType, 3, "9 0000000C", 3},
           {&ZELK_MpegParams::StreamType, 4, "9 0000000A", 4},
           {&ZELK_MpegParams::StreamType, 7, "9 0000000E", 1},
           {&ZELK_MpegParams::AudioBitRate, 192, "5 0A", 192},
           {&ZELK_MpegParams::AudioBitRate, 256, "5 0C", 256},
           {&ZELK_MpegParams::AudioBitRate, 320, "5 0D", 320},
           {&ZELK_MpegParams::AudioBitRate, 384, "5 0E", 384},
           {&ZELK_MpegParams::AudioBitRate, 128, "5 0E", 384},
           {&ZELK_MpegParams::AudioMode, 0, "7 00000000", 0},
           {&ZELK_MpegParams::AudioMode, 1, "7 00000001", 1},
           {&ZELK_MpegParams::AudioMode, 2, "7 00000002", 2},
           {&ZELK_MpegParams::AudioMode, 4, "7 00000000", 0},
           {&ZELK_MpegParams::AudioSampleRate, 44100, "8 00000000", 44100},
           {&ZELK_MpegParams::AudioSampleRate, 48000, "8 00000001", 48000},
           {&ZELK_MpegParams::AudioSampleRate, 22050, "8 00000001", 48000},
           {&ZELK_MpegParams::Option9, 14, "3 06", 6},
           {&ZELK_MpegParams::Option9, 16, "3 0F", 15},
           {&ZELK_MpegParams::Option9, 0xFFFFFFFF, "3 06", 6},
       }) {
    ZELK_MpegParams params = kOrdinary;
    params.*one.word = one.value;
    EXPECT_THAT(Written(params), Contains(one.written));
    EXPECT_EQ(Get().*one.word, one.read) << one.written;
  }
}

TEST_F(QuillonMpeg, Rates) {
  struct Case {
    std::uint32_t rate, peak, variable;
    const char* written;
    std::uint32_t readRate, readPeak;
  };
  PlugReady();
  for (const Case& one : {Case{6000, 4000, 1, "1 00000000 005B8D80 005B8D80", 6000, 6000},
                          {6000, 8000, 7, "1 00000000 005B8D80 007A1200", 6000, 8000},
                          {6000, 8000, 0, "1 00000001 005B8D80 005B8D80", 6000, 6000},
                          {70000, 0, 0, "1 00000001 00441D80 00441D80", 4464, 4464},
                          {100, 70000, 1, "1 00000000 000186A0 00441D80", 100, 4464}}) {
    ZELK_MpegParams params = kOrdinary;
    params.BitRate = one.rate;
    params.MaxBitRate = one.peak;
    params.VariableBitRate = one.variable;
    EXPECT_THAT(Written(params), Contains(one.written));
    const ZELK_MpegParams read = Get();
    EXPECT_EQ(read.BitRate, one.readRate);
    EXPECT_EQ(read.MaxBitRate, one.readPeak);
    EXPECT_EQ(read.VariableBitRate, one.variable != 0 ? 1u : 0u);
  }
}

TEST_F(QuillonMpeg, BothOptionsAreOneForTheSecondProperty) {
  PlugReady();
  for (const auto& [nine, ten, written] :
       {std::tuple(1u, 1u, "2 00000001"), {1u, 0u, "2 00000000"}, {15u, 1u, "2 00000000"}}) {
    ZELK_MpegParams params = kOrdinary;
    params.Option9 = nine;
    params.Option10 = ten;
    EXPECT_THAT(Written(params), Contains(written));
  }
}

TEST_F(QuillonMpeg, WordsThatAreNotTheEncoders) {
  PlugReady();
  ASSERT_EQ(ZELK_SetMPEGParam(kOrdinary), S_OK);
  ZELK_MpegParams params;
  std::uint32_t words[16];
  std::fill(std::begin(words), std::end(words), 0xABCDu);
  static_assert(sizeof(words) == sizeof(params));
  std::memcpy(&params, words, sizeof(params));
  EXPECT_EQ(ZELK_GetMPEGParam(&params), S_OK);
  EXPECT_EQ(params.Reserved3, 0xABCDu);
  EXPECT_EQ(params.Reserved4, 0xABCDu);
  EXPECT_EQ(params.Reserved8, 1u);
  EXPECT_EQ(params.Option10, 0u);
  EXPECT_EQ(params.Reserved11, 0u);
  EXPECT_EQ(params.Reserved12, 0u);
  EXPECT_EQ(ZELK_GetMPEGParam(nullptr), S_OK);
}

TEST_F(QuillonMpeg, APinWithTheExtendedHeaderKeepsItsSize) {
  Plug({.videoInfo2 = true, .friendlyName = kName});
  ASSERT_EQ(Init(), S_OK);
  Forget();
  const ZELK_MpegParams before = Get();
  EXPECT_NE(before.Width, 0u);
  EXPECT_NE(before.Width, 352u);
  EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), S_OK);
  EXPECT_THAT(TakeLog(), ElementsAre("Try set width and height failed. (as no support in api"));
  const ZELK_MpegParams after = Get();
  EXPECT_EQ(after.Width, before.Width);
  EXPECT_EQ(after.Height, before.Height);
  EXPECT_EQ(after.BitRate, 6000u);
}

TEST_F(QuillonMpeg, RefusedWrites) {
  struct Case {
    const char* request;
    bool formatAccepted;  // the result is then the format's
    Lines log;
  };
  const Lines nothing;
  for (const Case& one : {
           Case{"encoder set QL2_ENCODER.9", false, nothing},
           {"capture pin 656 query IAMStreamConfig", false, nothing},
           {"capture pin 656 get-format", false, nothing},
           {"encoder set QL2_ENCODER.5", true, nothing},
           {"encoder set QL2_ENCODER.7", true, nothing},
           {"encoder set QL2_ENCODER.8", true, {"Set MPEG Param failed"}},
           {"encoder set QL2_ENCODER.1", true, nothing},
           {"encoder set QL2_ENCODER.2", true, nothing},
           {"encoder set QL2_ENCODER.3", true, nothing},
       }) {
    PlugReady();
    card->Refuse(one.request, kRefused);
    EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), one.formatAccepted ? S_OK : E_FAIL) << one.request;
    EXPECT_EQ(TakeLog(), one.log) << one.request;
    // Nothing behind the refused request was sent.
    EXPECT_THAT(
        TakeTrace(),
        Not(Contains(HasSubstr(std::string(one.request).ends_with("3") ? "none" : "CODER.3"))));
    if (!one.formatAccepted) continue;
    // With the format refused too its code is the result.
    card->Refuse("capture pin 656 set-format", VFW_E_WRONG_STATE);
    EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), VFW_E_WRONG_STATE) << one.request;
  }
  // A refused format alone changes nothing of the rest, and is no failure.
  PlugReady();
  card->Refuse("capture pin 656 set-format", kRefused);
  EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), S_OK);
  EXPECT_EQ(Get().BitRate, 6000u);
}

TEST_F(QuillonMpeg, RefusedReads) {
  for (const auto& [request, line] :
       {std::pair("encoder get QL2_ENCODER.5", ""),
        {"encoder get QL2_ENCODER.7", ""},
        {"encoder get QL2_ENCODER.8", ""},
        {"encoder get QL2_ENCODER.1", ""},
        {"encoder get QL2_ENCODER.2", ""},
        {"encoder get QL2_ENCODER.3", ""},
        {"encoder get QL2_ENCODER.9", "Internal_GetEncoderProperty failed"},
        {"capture pin 656 query IAMStreamConfig", ""},
        {"capture pin 656 get-format", ""}}) {
    PlugReady();
    ZELK_SetMPEGParam(kOrdinary);
    card->Refuse(request, kRefused);
    ZELK_MpegParams params = {};
    params.Width = 77;
    EXPECT_EQ(ZELK_GetMPEGParam(&params), E_FAIL) << request;
    EXPECT_EQ(params.Width, 77u) << request;
    EXPECT_EQ(params.Reserved8, 0u) << request;
    EXPECT_EQ(TakeLog(), *line ? Lines{line} : Lines{}) << request;
  }
}

TEST_F(QuillonMpeg, CodesThatTheTablesLack) {
  PlugReady();
  ZELK_SetMPEGParam(kOrdinary);
  for (const std::uint32_t code : {13u, 15u}) {
    card->SetEncoderValue(9, code);
    EXPECT_EQ(Get().StreamType, 1u);
  }
  EXPECT_THAT(TakeLog(), IsEmpty());
  card->SetEncoderValue(9, 3);
  card->SetEncoderValue(5, 9);
  card->SetEncoderValue(7, 4);
  card->SetEncoderValue(8, 3);
  const ZELK_MpegParams params = Get();
  EXPECT_EQ(params.StreamType, 0u);
  EXPECT_EQ(params.AudioBitRate, 0u);
  EXPECT_EQ(params.AudioMode, 0u);
  EXPECT_EQ(params.AudioSampleRate, 0u);
  EXPECT_THAT(TakeLog(), ElementsAre("Unknown StreamType"));
}

TEST_F(QuillonMpeg, WithTheGraphOnShow) {
  ShowGraph();
  PlugReady();
  ZELK_SetMPEGParam(kOrdinary);
  Get();
  EXPECT_THAT(TakeLog(), ElementsAre("352 x 288"));
  ComPtr<IRunningObjectTable> table;
  ComPtr<IEnumMoniker> monikers;
  ASSERT_EQ(GetRunningObjectTable(0, table.Receive()), S_OK);
  ASSERT_EQ(table->EnumRunning(monikers.Receive()), S_OK);
  int entries = 0;
  for (ComPtr<IMoniker> one; monikers->Next(1, one.Receive(), nullptr) == S_OK;) ++entries;
  EXPECT_EQ(entries, 1);
}

TEST_F(QuillonMpeg, WithoutACard) {
  ZELK_MpegParams params = {};
  EXPECT_EQ(QuillonDevice().GetMPEGParam(&params), E_FAIL);
  EXPECT_EQ(QuillonDevice().SetMPEGParam(kOrdinary), E_FAIL);
  EXPECT_THAT(TakeLog(), IsEmpty());
}

}  // namespace
}  // namespace zelk::test
