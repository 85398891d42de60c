// The QL2 driver's requests: which there are, what they want, how they show in the trace.
#include <cstring>
#include <memory>

#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

constexpr DWORD kGet = KSPROPERTY_SUPPORT_GET;
constexpr DWORD kSet = KSPROPERTY_SUPPORT_SET;
// What drivers of another family answer to.
constexpr GUID kForeignSet = {
    0xC44A1A10, 0x0A37, 0x11D2, {0x83, 0x28, 0x00, 0x60, 0x97, 0xBA, 0x83, 0xAB}};

class Ql2RequestsTest : public Ql2CardTest {};

TEST_F(Ql2RequestsTest, PropertiesAndTheirLengths) {
  Plug({});
  Ql2Interfaces on(*card_);
  struct Case {
    IKsPropertySet* filter;
    GUID set;
    DWORD id, bytes, support;
    HRESULT unknown = E_PROP_ID_UNSUPPORTED;
  };
  IKsPropertySet* const capture = on.capture.Get();
  IKsPropertySet* const encoder = on.encoder.Get();
  const Case cases[] = {
      {capture, kBoardSet, 106, 32, kGet | kSet},
      {capture, kBoardSet, 109, 32, kGet | kSet},
      {capture, kBoardSet, 111, 32, kSet},
      {capture, kBoardSet, 112, 32, kGet},
      {capture, kBoardSet, 107, 32, 0},
      {capture, kI2cSet, 0, 18, kSet},
      {capture, kI2cSet, 1, 18, kGet},
      {capture, kI2cSet, 2, 18, 0},
      {encoder, kEncoderSet, 1, 12, kGet | kSet},
      {encoder, kEncoderSet, 2, 4, kGet | kSet},
      {encoder, kEncoderSet, 3, 1, kGet | kSet},
      {encoder, kEncoderSet, 5, 1, kGet | kSet},
      {encoder, kEncoderSet, 7, 4, kGet | kSet},
      {encoder, kEncoderSet, 8, 4, kGet | kSet},
      {encoder, kEncoderSet, 9, 4, kGet | kSet},
      {encoder, kEncoderSet, 4, 4, 0},
      {on.tuner.Get(), kPropsetTuner, 4, 56, kGet | kSet},
      {on.tuner.Get(), kPropsetTuner, 6, 40, kGet},
      {on.tuner.Get(), kPropsetTuner, 3, 40, 0},
      {capture, kEncoderSet, 9, 4, 0, E_PROP_SET_UNSUPPORTED},
      {encoder, kBoardSet, 106, 32, 0, E_PROP_SET_UNSUPPORTED},
      {capture, kForeignSet, 0, 24, 0, E_PROP_SET_UNSUPPORTED},
  };
  for (const Case& one : cases) {
    DWORD support = 99, returned = 99;
    EXPECT_EQ(one.filter->QuerySupported(one.set, one.id, &support),
              one.support ? S_OK : one.unknown)
        << one.id;
    EXPECT_EQ(support, one.support) << one.id;
    BYTE block[64] = {0xC0, 1};  // a transfer with the tuner
    const HRESULT wrongWay = one.support ? E_PROP_ID_UNSUPPORTED : one.unknown;
    if (!(one.support & kGet)) {
      EXPECT_EQ(GetProperty(one.filter, one.set, one.id, block, one.bytes), wrongWay) << one.id;
    } else {
      EXPECT_EQ(one.filter->Get(one.set, one.id, block, one.bytes, block, one.bytes, &returned),
                S_OK);
      EXPECT_EQ(returned, one.bytes) << one.id;
      EXPECT_EQ(GetProperty(one.filter, one.set, one.id, block, one.bytes + 1), E_INVALIDARG);
      EXPECT_EQ(one.filter->Get(one.set, one.id, block, one.bytes, nullptr, one.bytes, &returned),
                E_POINTER);
    }
    if (!(one.support & kSet)) {
      EXPECT_EQ(SetProperty(one.filter, one.set, one.id, block, one.bytes), wrongWay) << one.id;
    } else {
      EXPECT_EQ(SetProperty(one.filter, one.set, one.id, block, one.bytes + 1), E_INVALIDARG);
      EXPECT_EQ(one.filter->Set(one.set, one.id, block, one.bytes - 1, block, one.bytes),
                E_INVALIDARG);
    }
  }
}

// The instance data may leave the header out of the block, and in that case out of its length.
TEST_F(Ql2RequestsTest, FrequencyWithoutAHeaderInTheInstance) {
  Plug({});
  Ql2Interfaces on(*card_);
  on.tvTuner->put_CountryCode(49);
  on.tvTuner->put_Channel(7, 1, 2);
  for (const DWORD declared : {32u, 56u}) {
    const auto instance = std::make_unique<BYTE[]>(32);  // reading on is a fault
    KSPROPERTY_TUNER_FREQUENCY_S content{};
    DWORD returned = 0;
    const double before = card_->TunedKHz();
    EXPECT_EQ(on.tuner->Get(kPropsetTuner, 4, instance.get(), declared, &content, 56, &returned),
              S_OK);
    EXPECT_EQ(content.Country, 49U);
    EXPECT_EQ(content.Channel, 7U);
    EXPECT_EQ(content.VideoSubChannel, 1U);
    EXPECT_EQ(content.AudioSubChannel, 2U);
    EXPECT_NEAR(content.Frequency, before * 1000, 32000);
    content.Frequency = 175250000 + declared * 1000000;
    EXPECT_EQ(on.tuner->Set(kPropsetTuner, 4, instance.get(), declared, &content, 56), S_OK);
    EXPECT_NEAR(card_->TunedKHz(), content.Frequency / 1000.0, 32);
  }
  BYTE block[56] = {};
  EXPECT_EQ(on.tuner->Set(kPropsetTuner, 4, block, 33, block, 56), E_INVALIDARG);
  EXPECT_EQ(on.tuner->Set(kPropsetTuner, 4, block, 32, block, 32), E_INVALIDARG);
}

TEST_F(Ql2RequestsTest, TheBoardSpeaksOfItself) {
  ULONG words[8] = {};
  for (const std::uint32_t code : {49u, 255u}) {
    PlugTuner(code);
    Ql2Interfaces on(*card_);
    EXPECT_EQ(GetProperty(on.capture.Get(), kBoardSet, 112, words), S_OK);
    EXPECT_EQ(words[7], code);
  }
  Plug({.tunerCode = 49, .tunerInfo = false});
  Ql2Interfaces on(*card_);
  DWORD support = 99;
  EXPECT_EQ(on.capture->QuerySupported(kBoardSet, 112, &support), E_PROP_ID_UNSUPPORTED);
  EXPECT_EQ(support, 0U);
  EXPECT_EQ(GetProperty(on.capture.Get(), kBoardSet, 112, words), E_PROP_ID_UNSUPPORTED);
  EXPECT_TRUE(on.Read(0x86, 1).size() == 1) << "not the module of code 49";

  for (const auto& [id, index] : {std::pair{106u, 0u}, {109u, 1u}}) {
    words[6] = 0x1200 + id;
    EXPECT_EQ(SetProperty(on.capture.Get(), kBoardSet, id, words), S_OK);
    EXPECT_EQ(card_->Lock(index), id) << "a byte";
    EXPECT_EQ(GetProperty(on.capture.Get(), kBoardSet, id, words), S_OK);
    EXPECT_EQ(words[6], id);
  }
  words[6] = 1;
  EXPECT_EQ(SetProperty(on.capture.Get(), kBoardSet, 111, words), S_OK);
  EXPECT_EQ(card_->BoardOption(), 1U);
  EXPECT_EQ(card_->Lock(0), 106U);
}

TEST_F(Ql2RequestsTest, TransfersOnTheBus) {
  Plug({});
  Ql2Interfaces on(*card_);
  EXPECT_TRUE(on.Write(0x34, {0x00, 0x1F}));
  EXPECT_TRUE(on.Write(0x34, {0x03, 0x1E}));
  EXPECT_EQ(card_->AdcRegister(0), 0x1F);
  EXPECT_EQ(card_->AdcRegister(1), 0x11E);
  EXPECT_FALSE(on.Write(0x34, {0x00, 0x00, 0x00}));
  EXPECT_EQ(card_->AdcRegister(0), 0x1F);
  EXPECT_TRUE(on.Read(0x35, 1).empty());
  EXPECT_TRUE(on.Read(0xA0, 1).empty());
  EXPECT_EQ(on.Read(0xC1, 16).size(), 16U);

  Ql2Interfaces::I2cRequest request{0xC0, 17, {}};
  EXPECT_EQ(GetProperty(on.capture.Get(), kI2cSet, 1, request), E_INVALIDARG);
  EXPECT_EQ(SetProperty(on.capture.Get(), kI2cSet, 0, request), E_INVALIDARG);
}

TEST_F(Ql2RequestsTest, TheEncoderKeepsWhatItTakes) {
  Plug({});
  Ql2Interfaces on(*card_);
  struct Case {
    DWORD id, bytes;
    std::vector<ULONG> taken, refused;
  };
  for (const Case& one : {
           Case{1, 12, {0, 6000000, 8000000}, {1, 8000000, 6000000}},
           Case{1, 12, {1, 4464000, 4464000}, {2, 1, 1}},
           Case{2, 4, {1}, {2}},
           Case{3, 1, {6}, {0}},
           Case{5, 1, {14}, {15}},
           Case{7, 4, {3}, {4}},
           Case{8, 4, {2}, {3}},
           Case{9, 4, {10}, {16}},
       }) {
    ULONG words[3] = {};
    const auto send = [&](const std::vector<ULONG>& values) {
      std::copy(values.begin(), values.end(), words);
      return SetProperty(on.encoder.Get(), kEncoderSet, one.id, words, one.bytes);
    };
    EXPECT_EQ(send(one.taken), S_OK) << one.id;
    EXPECT_EQ(send(one.refused), E_INVALIDARG) << one.id;
    ULONG answer[3] = {};
    EXPECT_EQ(GetProperty(on.encoder.Get(), kEncoderSet, one.id, answer, one.bytes), S_OK);
    for (unsigned i = 0; i < one.taken.size(); ++i) {
      EXPECT_EQ(answer[i], one.taken[i]) << one.id;
      EXPECT_EQ(card_->EncoderValue(one.id, i), one.taken[i]) << one.id;
    }
  }
  card_->SetEncoderValue(9, 77);
  card_->SetEncoderValue(1, 5, 3);  // there is no such word
  ULONG word = 0;
  EXPECT_EQ(GetProperty(on.encoder.Get(), kEncoderSet, 9, word), S_OK);
  EXPECT_EQ(word, 77U);
  EXPECT_EQ(card_->EncoderValue(6), 0U);
}

TEST_F(Ql2RequestsTest, StandardsOfTheDecoder) {
  for (const auto& [code, standard] : {std::pair{11u, AnalogVideo_PAL_B},
                                       {17u, AnalogVideo_NTSC_M},
                                       {49u, AnalogVideo_NTSC_M_J}}) {
    PlugTuner(code);
    Ql2Interfaces on(*card_);
    LONG found = 0;
    EXPECT_EQ(on.decoder->get_TVFormat(&found), S_OK);
    EXPECT_EQ(found, standard);
    EXPECT_EQ(on.decoder->put_TVFormat(AnalogVideo_SECAM_L), S_OK);
    for (const LONG wrong : {0, 0x30, 0x8, 0x100000})
      EXPECT_EQ(on.decoder->put_TVFormat(wrong), E_INVALIDARG) << wrong;
    EXPECT_EQ(on.decoder->get_TVFormat(&found), S_OK);
    EXPECT_EQ(found, AnalogVideo_SECAM_L);
  }
}

TEST_F(Ql2RequestsTest, TraceOfEveryKindOfRequest) {
  Plug({}, AirWith(175250));
  RecordedTrace trace;
  card_->AttachTrace(&trace);
  {
    Ql2Interfaces on(*card_);
    EXPECT_THAT(trace.Take(),
                ElementsAre("capture query IKsPropertySet", "capture query IAMAnalogVideoDecoder",
                            "tuner query IKsPropertySet", "tuner query IAMTVTuner",
                            "encoder query IKsPropertySet"));
    DWORD support = 0;
    ULONG words[8] = {1, 2, 3, 4, 5, 6, 1, 0};
    on.capture->QuerySupported(kBoardSet, 112, &support);
    GetProperty(on.capture.Get(), kBoardSet, 112, words);
    SetProperty(on.capture.Get(), kBoardSet, 106, words);
    GetProperty(on.capture.Get(), kForeignSet, 3, words);
    EXPECT_THAT(trace.Take(), ElementsAre("capture query-supported QL2_BOARD.112 -> 00000001",
                                          "capture get QL2_BOARD.112 -> 00000000 0000000B",
                                          "capture set QL2_BOARD.106 00",
                                          "capture get {C44A1A10-0A37-11D2-8328-006097BA83AB}.3"
                                          " -> 80070492"));
    on.Write(0xC0, {0x1B, 0x46, 0xA0});
    on.Read(0xC1, 2);
    on.Read(0xA1, 1);
    EXPECT_THAT(trace.Take(), ElementsAre("i2c write C0: 1B 46 A0", "i2c read C1 -> 84 84",
                                          "i2c read A1 -> nak"));
    on.tvTuner->put_CountryCode(49);
    on.tvTuner->put_Channel(4, -1, -1);
    on.tvTuner->put_Mode(AMTUNER_MODE_TV);
    on.Tune(175250);
    on.Status();
    EXPECT_THAT(
        trace.Take(),
        ElementsAre("tuner country 49", "tuner channel 4 -1 -1", "tuner mode 1",
                    "tuner get TUNER.4 -> frequency=0 flags=1 channel=4 country=49",
                    "tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                    "tuner get TUNER.6 -> frequency=175250000 offset=37 strength=100 busy=0"));
    ULONG rate[] = {1, 6000000, 6000000};
    BYTE length = 6;
    SetProperty(on.encoder.Get(), kEncoderSet, 1, rate);
    SetProperty(on.encoder.Get(), kEncoderSet, 3, length);
    on.Locked();
    on.decoder->put_TVFormat(0x10);
    EXPECT_THAT(trace.Take(),
                ElementsAre("encoder set QL2_ENCODER.1 00000001 005B8D80 005B8D80",
                            "encoder set QL2_ENCODER.3 06", "capture horizontal-locked -> 1",
                            "capture put-format 00000010"));
  }
}

TEST_F(Ql2RequestsTest, RefusalsReachNothing) {
  Plug({});
  Ql2Interfaces on(*card_);
  constexpr auto kCode = static_cast<HRESULT>(0x80070005);
  for (const char* request :
       {"i2c write 34", "capture set QL2_BOARD.106", "encoder set QL2_ENCODER.9",
        "tuner set TUNER.4", "tuner country", "capture put-format", "tuner query IBaseFilter"}) {
    card_->Refuse(request, kCode);
  }
  ULONG words[8] = {0, 0, 0, 0, 0, 0, 1, 0};
  Ql2Interfaces::I2cRequest transfer{0x34, 2, {0x00, 0x1F}};
  ComPtr<IBaseFilter> filter;
  EXPECT_EQ(SetProperty(on.capture.Get(), kI2cSet, 0, transfer), kCode);
  EXPECT_EQ(SetProperty(on.capture.Get(), kBoardSet, 106, words), kCode);
  EXPECT_EQ(SetProperty(on.encoder.Get(), kEncoderSet, 9, words[0]), kCode);
  EXPECT_EQ(on.Tune(175250), kCode);
  EXPECT_EQ(on.tvTuner->put_CountryCode(49), kCode);
  EXPECT_EQ(on.decoder->put_TVFormat(0x20), kCode);
  EXPECT_EQ(Query(card_->TunerFilter().Get(), filter), kCode);
  EXPECT_EQ(card_->AdcRegister(0), 0);
  EXPECT_EQ(card_->Lock(0), 0U);
  EXPECT_EQ(card_->EncoderValue(9), 14U);
  EXPECT_EQ(card_->TunedKHz(), 0);
  card_->ClearRefusals();
  EXPECT_EQ(SetProperty(on.capture.Get(), kI2cSet, 0, transfer), S_OK);
}

}  // namespace
}  // namespace zelk::virtual_cards
