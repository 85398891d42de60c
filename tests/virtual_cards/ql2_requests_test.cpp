// The QL2 driver's requests: which there are, what they want, how they show in the trace.
#include <cstring>
#include <memory>

#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

// What drivers of another family answer to.
constexpr GUID kForeignSet = {
    0xC44A1A10, 0x0A37, 0x11D2, {0x83, 0x28, 0x00, 0x60, 0x97, 0xBA, 0x83, 0xAB}};

using Ql2RequestsTest = Ql2CardTest;

// Which properties there are the driver library's tests show; these are the mistakes of a caller.
TEST_F(Ql2RequestsTest, MalformedRequests) {
  Plug({});
  Ql2Interfaces on(*card_);
  IKsPropertySet* const capture = on.capture.Get();
  constexpr HRESULT kNoId = E_PROP_ID_UNSUPPORTED, kNoSet = E_PROP_SET_UNSUPPORTED;
  // Filter, set, property, both lengths, and the results of reading and writing.
  const std::tuple<IKsPropertySet*, GUID, DWORD, DWORD, DWORD, HRESULT, HRESULT> cases[] = {
      {capture, kBoardSet, 106, 32, 33, E_INVALIDARG, E_INVALIDARG},
      {capture, kBoardSet, 106, 31, 32, E_INVALIDARG, E_INVALIDARG},
      {capture, kBoardSet, 107, 32, 32, kNoId, kNoId},
      {capture, kBoardSet, 111, 32, 32, kNoId, S_OK},
      {capture, kBoardSet, 112, 32, 32, S_OK, kNoId},
      {capture, kEncoderSet, 9, 4, 4, kNoSet, kNoSet},
      {on.encoder.Get(), kEncoderSet, 3, 1, 1, S_OK, E_INVALIDARG},
      {on.tuner.Get(), kPropsetTuner, 6, 40, 40, S_OK, kNoId}};
  for (const auto& [filter, set, id, instanceBytes, bytes, get, put] : cases) {
    BYTE block[64] = {};
    DWORD returned = 99;
    EXPECT_EQ(filter->Get(set, id, block, instanceBytes, block, bytes, &returned), get) << id;
    EXPECT_EQ(returned, get == S_OK ? bytes : 99) << id;
    std::memset(block, 0, sizeof block);
    EXPECT_EQ(filter->Set(set, id, block, instanceBytes, block, bytes), put) << id;
  }
  BYTE block[32] = {};
  DWORD word = 99;
  EXPECT_EQ(capture->Get(kBoardSet, 106, block, 32, nullptr, 32, &word), E_POINTER);
  EXPECT_EQ(capture->QuerySupported(kBoardSet, 107, &word), kNoId);
  EXPECT_EQ(word, 0U);
  // More bytes than the record of a transfer holds.
  Ql2Interfaces::I2cRequest request{0xC0, 17, {}};
  EXPECT_EQ(GetProperty(capture, kI2cSet, 1, request), E_INVALIDARG);
  EXPECT_EQ(SetProperty(capture, kI2cSet, 0, request), E_INVALIDARG);
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

TEST_F(Ql2RequestsTest, TheEncoderRefusesWhatItCannotDo) {
  Plug({});
  Ql2Interfaces on(*card_);
  // Property, length, what it takes and what it refuses.
  using Words = std::vector<ULONG>;
  const std::tuple<DWORD, DWORD, Words, Words> cases[] = {
      {1, 12, {0, 6000000, 8000000}, {1, 8000000, 6000000}},
      {1, 12, {1, 4464000, 4464000}, {2, 1, 1}},
      {2, 4, {1}, {2}},
      {3, 1, {6}, {0}},
      {5, 1, {14}, {15}},
      {7, 4, {3}, {4}},
      {8, 4, {2}, {3}},
      {9, 4, {10}, {16}}};
  for (const auto& [id, bytes, taken, refused] : cases) {
    const auto send = [&](Words words) {
      return on.encoder->Set(kEncoderSet, id, words.data(), bytes, words.data(), bytes);
    };
    EXPECT_EQ(send(taken), S_OK) << id;
    EXPECT_EQ(send(refused), E_INVALIDARG) << id;
    for (unsigned i = 0; i < taken.size(); ++i)
      EXPECT_EQ(card_->EncoderValue(id, i), taken[i]) << id;
  }
}

TEST_F(Ql2RequestsTest, StandardsOfTheDecoder) {
  PlugTuner(17);
  Ql2Interfaces on(*card_);
  LONG found = 0;
  EXPECT_EQ(on.videoDecoder->get_TVFormat(&found), S_OK);
  EXPECT_EQ(found, AnalogVideo_NTSC_M) << "what the module is made for";
  EXPECT_EQ(on.videoDecoder->put_TVFormat(AnalogVideo_SECAM_L), S_OK);
  for (const LONG wrong : {0, 0x30, 0x8, 0x100000})
    EXPECT_EQ(on.videoDecoder->put_TVFormat(wrong), E_INVALIDARG) << wrong;
  EXPECT_EQ(on.videoDecoder->get_TVFormat(&found), S_OK);
  EXPECT_EQ(found, AnalogVideo_SECAM_L);
}

// The lines that hold figures or name strangers.
TEST_F(Ql2RequestsTest, TraceOfRequests) {
  Plug({}, AirWith(175250));
  Ql2Interfaces on(*card_);
  RecordedTrace trace;
  card_->AttachTrace(&trace);
  BYTE block[4] = {};
  GetProperty(on.capture.Get(), kForeignSet, 3, block);
  on.Read(0xC1, 2);
  on.Read(0xA1, 1);
  on.tvTuner->put_CountryCode(49);
  on.tvTuner->put_Channel(4, -1, -1);
  on.Tune(175250);
  on.Status();
  on.Locked();
  EXPECT_THAT(trace.Take(),
              ElementsAre("capture get {C44A1A10-0A37-11D2-8328-006097BA83AB}.3 -> 80070492",
                          "i2c read C1 -> 84 84", "i2c read A1 -> nak", "tuner country 49",
                          "tuner channel 4 -1 -1",
                          "tuner get TUNER.4 -> frequency=0 flags=1 channel=4 country=49",
                          "tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                          "tuner get TUNER.6 -> frequency=175250000 offset=37 strength=100 busy=0",
                          "capture horizontal-locked -> 1"));
}

}  // namespace
}  // namespace zelk::virtual_cards
