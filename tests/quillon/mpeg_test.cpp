// The encoder's parameters, to the card and back.
#include <cstring>

#include "tests/quillon/quillon_test.h"

namespace zelk::test {
namespace {

using Params = ZELK_MpegParams;

// A stream of type 0 with 352 x 288 pixels, 6000 and at most 8000 kbit/s, option 9 at 15, and
// sound with 32000 Hz and 224 kbit/s in mode 3.
constexpr Params kOrdinary = {0, 352, 288, 0, 0, 6000, 8000, 1, 0, 15, 0, 0, 0, 32000, 224, 3};

class QuillonMpeg : public QuillonTest {
 protected:
  Params Get() {
    Params params = {};
    EXPECT_EQ(ZELK_GetMPEGParam(&params), S_OK);
    return params;
  }
  // The encoder's property requests after `SetMPEGParam`.
  Lines Written(const Params& params) {
    TakeTrace();
    EXPECT_EQ(ZELK_SetMPEGParam(params), S_OK);
    return TakeTrace("encoder set QL2_ENCODER.");
  }
};

TEST_F(QuillonMpeg, WritesInOrder) {
  PlugReady();
  EXPECT_THAT(Written(kOrdinary),
              ElementsAre("9 00000002", "5 0B", "7 00000003", "8 00000002",
                          "1 00000000 005B8D80 007A1200", "2 00000000", "3 0F"));
}

TEST_F(QuillonMpeg, ValuesAndTheirCodes) {
  struct Value {
    std::uint32_t set;
    const char* written;
    std::uint32_t read;
  };
  const std::pair<std::uint32_t Params::*, std::vector<Value>> cases[] = {
      {&Params::StreamType,
       {{0, "9 00000002", 0},
        {1, "9 0000000E", 1},
        {2, "9 0000000B", 2},
        {3, "9 0000000C", 3},
        {4, "9 0000000A", 4},
        {7, "9 0000000E", 1}}},
      {&Params::AudioBitRate,
       {{192, "5 0A", 192},
        {256, "5 0C", 256},
        {320, "5 0D", 320},
        {384, "5 0E", 384},
        {128, "5 0E", 384}}},
      {&Params::AudioMode,
       {{0, "7 00000000", 0}, {1, "7 00000001", 1}, {2, "7 00000002", 2}, {4, "7 00000000", 0}}},
      {&Params::AudioSampleRate,
       {{44100, "8 00000000", 44100}, {48000, "8 00000001", 48000}, {22050, "8 00000001", 48000}}},
      {&Params::Option9, {{14, "3 06", 6}, {16, "3 0F", 15}, {0xFFFFFFFF, "3 06", 6}}}};
  PlugReady();
  for (const auto& [word, values] : cases) {
    for (const Value& value : values) {
      Params params = kOrdinary;
      params.*word = value.set;
      EXPECT_THAT(Written(params), Contains(value.written));
      EXPECT_EQ(Get().*word, value.read) << value.written;
    }
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
    Params params = kOrdinary;
    params.BitRate = one.rate;
    params.MaxBitRate = one.peak;
    params.VariableBitRate = one.variable;
    EXPECT_THAT(Written(params), Contains(one.written));
    const Params read = Get();
    EXPECT_EQ(read.BitRate, one.readRate);
    EXPECT_EQ(read.MaxBitRate, one.readPeak);
    EXPECT_EQ(read.VariableBitRate, one.variable != 0 ? 1u : 0u);
  }
}

TEST_F(QuillonMpeg, BothOptionsAreOneForTheSecondProperty) {
  PlugReady();
  for (const auto& [nine, ten, written] :
       {std::tuple(1u, 1u, "2 00000001"), {1u, 0u, "2 00000000"}, {15u, 1u, "2 00000000"}}) {
    Params params = kOrdinary;
    params.Option9 = nine;
    params.Option10 = ten;
    EXPECT_THAT(Written(params), Contains(written));
  }
}

TEST_F(QuillonMpeg, WordsThatAreNotTheEncoders) {
  PlugReady();
  ASSERT_EQ(ZELK_SetMPEGParam(kOrdinary), S_OK);
  Params params;
  std::memset(&params, 0xCD, sizeof(params));
  EXPECT_EQ(ZELK_GetMPEGParam(&params), S_OK);
  Params expected = kOrdinary;
  expected.Reserved3 = expected.Reserved4 = 0xCDCDCDCD;
  expected.Reserved8 = 1;
  EXPECT_EQ(Words(params), Words(expected));
  EXPECT_EQ(ZELK_GetMPEGParam(nullptr), S_OK);
}

TEST_F(QuillonMpeg, APinWithTheExtendedHeaderKeepsItsSize) {
  Plug({.videoInfo2 = true, .friendlyName = kName});
  ASSERT_EQ(Init(), S_OK);
  Forget();
  const Params before = Get();
  EXPECT_NE(before.Width, 0u);
  EXPECT_NE(before.Width, 352u);
  EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), S_OK);
  EXPECT_THAT(TakeLog(), ElementsAre("Try set width and height failed. (as no support in api"));
  const Params after = Get();
  EXPECT_EQ(std::pair(after.Width, after.Height), std::pair(before.Width, before.Height));
  EXPECT_EQ(after.BitRate, 6000u);
}

TEST_F(QuillonMpeg, RefusedWrites) {
  // Behind the format its result counts.
  for (const auto& [request, accepted] : {std::pair("encoder set QL2_ENCODER.9", false),
                                          {"capture enum-pins", false},
                                          {"capture pin 656 info", false},
                                          {"capture pin 656 query IAMStreamConfig", false},
                                          {"capture pin 656 get-format", false},
                                          {"encoder set QL2_ENCODER.5", true},
                                          {"encoder set QL2_ENCODER.7", true},
                                          {"encoder set QL2_ENCODER.8", true},
                                          {"encoder set QL2_ENCODER.1", true},
                                          {"encoder set QL2_ENCODER.2", true},
                                          {"encoder set QL2_ENCODER.3", true}}) {
    SCOPED_TRACE(request);
    PlugReady();
    card->Refuse(request, kRefused);
    EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), accepted ? S_OK : E_FAIL);
    EXPECT_EQ(TakeLog(), Lines(std::string(request).ends_with('8'), "Set MPEG Param failed"));
    // Nothing behind the refused request was sent.
    EXPECT_THAT(TakeTrace(),
                Not(Contains(HasSubstr(std::string(request).ends_with("3") ? "none" : "CODER.3"))));
    if (!accepted) continue;
    // With the format refused too its code is the result.
    card->Refuse("capture pin 656 set-format", VFW_E_WRONG_STATE);
    EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), VFW_E_WRONG_STATE);
  }
  // A refused format alone changes nothing of the rest, and is no failure.
  PlugReady();
  card->Refuse("capture pin 656 set-format", kRefused);
  EXPECT_EQ(ZELK_SetMPEGParam(kOrdinary), S_OK);
  EXPECT_EQ(Get().BitRate, 6000u);
}

TEST_F(QuillonMpeg, RefusedReads) {
  for (const std::string request :
       {"encoder get QL2_ENCODER.5", "encoder get QL2_ENCODER.7", "encoder get QL2_ENCODER.8",
        "encoder get QL2_ENCODER.1", "encoder get QL2_ENCODER.2", "encoder get QL2_ENCODER.3",
        "encoder get QL2_ENCODER.9", "capture enum-pins", "capture pin 656 info",
        "capture pin 656 query IAMStreamConfig", "capture pin 656 get-format"}) {
    PlugReady();
    ZELK_SetMPEGParam(kOrdinary);
    card->Refuse(request, kRefused);
    Params params = {};
    params.Width = 77;
    EXPECT_EQ(ZELK_GetMPEGParam(&params), E_FAIL) << request;
    EXPECT_EQ(params.Width, 77u) << request;
    EXPECT_EQ(params.Reserved8, 0u) << request;
    EXPECT_EQ(TakeLog(), Lines(request.ends_with('9'), "Internal_GetEncoderProperty failed"));
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
  const Params params = Get();
  EXPECT_THAT((std::array{params.StreamType, params.AudioBitRate, params.AudioMode,
                          params.AudioSampleRate}),
              Each(0));
  EXPECT_THAT(TakeLog(), ElementsAre("Unknown StreamType"));
}

TEST_F(QuillonMpeg, WithTheGraphOnShow) {
  ShowGraph();
  PlugReady();
  ZELK_SetMPEGParam(kOrdinary);
  Get();
  EXPECT_THAT(TakeLog(), ElementsAre("352 x 288"));
}

}  // namespace
}  // namespace zelk::test
