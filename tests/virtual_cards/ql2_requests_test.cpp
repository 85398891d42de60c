// The QL2 driver's requests: which there are, what they want, how they show in the trace.
#include <memory>

#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;

using Ql2RequestsTest = Ql2CardTest;

// More bytes than the record of a transfer holds.
TEST_F(Ql2RequestsTest, TransfersThatAreTooLong) {
  Plug({});
  const Ql2Interfaces on(*card_);
  Ql2Interfaces::I2cRequest request{0xC0, 17, {}};
  EXPECT_EQ(GetProperty(on.capture.Get(), kI2cSet, 1, request), E_INVALIDARG);
  EXPECT_EQ(SetProperty(on.capture.Get(), kI2cSet, 0, request), E_INVALIDARG);
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
    EXPECT_EQ(std::tuple(content.Country, content.Channel, content.VideoSubChannel,
                         content.AudioSubChannel),
              std::tuple(49U, 7U, 1U, 2U));
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
  // Property, length and words.
  const std::tuple<DWORD, DWORD, ULONG, ULONG, ULONG> cases[] = {{1, 12, 1, 8000000, 6000000},
                                                                 {1, 12, 2, 1, 1},
                                                                 {2, 4, 2, 0, 0},
                                                                 {3, 1, 0, 0, 0},
                                                                 {5, 1, 15, 0, 0},
                                                                 {7, 4, 4, 0, 0},
                                                                 {8, 4, 3, 0, 0},
                                                                 {9, 4, 16, 0, 0}};
  for (const auto& [id, bytes, first, second, third] : cases) {
    const ULONG before = card_->EncoderValue(id);
    ULONG words[] = {first, second, third};
    EXPECT_EQ(on.encoder->Set(kEncoderSet, id, words, bytes, words, bytes), E_INVALIDARG) << id;
    EXPECT_EQ(card_->EncoderValue(id), before) << id;
  }
}

TEST_F(Ql2RequestsTest, StandardsOfTheDecoder) {
  Plug({.tunerCode = 17});
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

// The lines that hold figures.
TEST_F(Ql2RequestsTest, TraceOfRequests) {
  Plug({}, AirWith(175250));
  Ql2Interfaces on(*card_);
  on.tvTuner->put_CountryCode(49);
  on.tvTuner->put_Channel(4, -1, -1);
  Listen();
  for (const BYTE address : {BYTE{0xC1}, BYTE{0xA1}}) {
    Ql2Interfaces::I2cRequest request{address, 2, {}};
    GetProperty(on.capture.Get(), kI2cSet, 1, request);
  }
  on.Tune(175250);
  on.Status();
  EXPECT_THAT(
      trace_.Take(),
      ElementsAre("i2c read C1 -> 84 84", "i2c read A1 -> nak",
                  "tuner get TUNER.4 -> frequency=0 flags=1 channel=4 country=49",
                  "tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                  "tuner get TUNER.6 -> frequency=175250000 offset=37 strength=100 busy=0"));
}

}  // namespace
}  // namespace zelk::virtual_cards
