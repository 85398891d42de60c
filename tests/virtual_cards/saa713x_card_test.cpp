// The card as hardware: what its chips, lines and driver make of what a driver library does to
// them.
#include "plugged_card.h"

namespace zelk::virtual_cards {
namespace {

using Saa713xCardTest = PluggedCardTest;

ULONG DecoderStatus(Interfaces& on) {
  ULONG status = 1;
  EXPECT_EQ(on.decoder->GetStatus(&status), S_OK);
  return status;
}

// What a silicon tuner's demodulator needs before it hears anything.
void SetUpDemodulator(Interfaces& on) {
  for (const Bytes& bytes : {Bytes{0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}}) on.Write(0x96, bytes);
}

TEST_F(Saa713xCardTest, DecoderStatusShowsTheColourSystem) {
  for (const auto& [standard, status] : {std::pair{AnalogVideo_NTSC_M, 0x01010000u},
                                         {AnalogVideo_PAL_B, 0x01020000u},
                                         {AnalogVideo_SECAM_B, 0x01030000u},
                                         {AnalogVideo_SECAM_L, 0u}}) {
    Plug({}, AirWith(175250, standard));
    Interfaces on(*card_);
    on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
    EXPECT_EQ(DecoderStatus(on), 0u) << "too soon";
    Sleep(60);
    EXPECT_EQ(DecoderStatus(on), status);
  }
}

TEST_F(Saa713xCardTest, NotificationFreezesThePicture) {
  Plug({}, AirWith(175250));
  Interfaces on(*card_);
  on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  Sleep(60);
  EXPECT_EQ(on.Notify(1), S_OK);
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(DecoderStatus(on), 0u);
  EXPECT_EQ(on.Read(0xC2) & 0x47, 0x42) << "the tuner itself goes on";
  EXPECT_EQ(on.Notify(3), E_INVALIDARG);
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(on.Notify(2), S_OK);
  EXPECT_TRUE(on.Locked());
}

// The frequency property tunes every board over its whole band, whatever the module.
TEST_F(Saa713xCardTest, DriverTunesEveryBoard) {
  const std::tuple<std::vector<std::uint32_t>, double, double, double> cases[] = {
      {{0, 1, 2, 3, 6, 7, 8, 9, 25, 26, 27, 28, 33, 34, 47}, 48250, 855250, 32},
      {{4, 5, 12, 13, 24, 29, 30, 31, 32, 35, 44, 46}, 55250, 801250, 32},
      {{10, 11, 16, 17, 36, 37, 48}, 91250, 765250, 32},
      {{14, 15, 18, 19, 20, 21, 43}, 49250, 863250, 32},
      {{42, 45}, 55250, 863250, 32},
      {{40}, 40000, 865000, 125},
      {{41}, 66000, 865000, 125}};
  for (const auto& [types, lowKHz, highKHz, toleranceKHz] : cases) {
    for (const std::uint32_t type : types) {
      Plug({.tunerType = type});
      Interfaces on(*card_);
      if (type == 40 || type == 41) on.Write(0x96, {0x01, 0x02});
      for (double kHz = lowKHz; kHz <= highKHz; kHz += 3100) {
        ASSERT_EQ(on.Tune(static_cast<ULONG>(kHz * 1000), 49), S_OK) << type << " at " << kHz;
        ASSERT_NEAR(card_->TunedKHz(), kHz, toleranceKHz) << type;
      }
      EXPECT_EQ(on.Tune(20000000, 49), E_INVALIDARG);
    }
  }
}

TEST_F(Saa713xCardTest, DriverFollowsTheCountry) {
  const std::tuple<LONG, double, ULONG, bool> cases[] = {
      {AnalogVideo_PAL_B, 175250, 49, true},    {AnalogVideo_PAL_G, 471250, 49, true},
      {AnalogVideo_NTSC_M, 801250, 1, true},    {AnalogVideo_SECAM_L, 471250, 33, true},
      {AnalogVideo_SECAM_L, 471250, 49, false}, {AnalogVideo_PAL_G, 471250, 33, false}};
  for (const std::uint32_t type : {40u, 41u}) {
    for (const auto& [standard, kHz, country, locked] : cases) {
      Plug({.tunerType = type}, AirWith(kHz, standard));
      Interfaces on(*card_);
      SetUpDemodulator(on);
      EXPECT_EQ(on.Tune(static_cast<ULONG>(kHz * 1000), country), S_OK);
      Sleep(60);
      EXPECT_EQ(on.Locked(), locked) << type << ' ' << kHz << ' ' << country;
      EXPECT_EQ(on.ReadAt(0x96, 0x1B), locked ? 0x80 : 0x40);
      EXPECT_EQ(on.Read(0xC2), -1) << "the driver closes the gate behind it";
      if (!locked) continue;
      EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
      EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_DSS), E_INVALIDARG);
      EXPECT_FALSE(on.Locked()) << "no picture in FM mode";
    }
  }
}

// On boards with a separate FM receiver line 27 chooses who is heard at 0xC0.
TEST_F(Saa713xCardTest, Gpio27SwitchesBetweenTvAndFm) {
  Plug({.tunerType = 46, .boardConfig = 0xE3}, AirWith(175250, AnalogVideo_NTSC_M));
  EXPECT_TRUE(card_->GpioOutput(27));
  Interfaces on(*card_);
  on.Write(0x86, {0x00, 0xD6, 0x10, 0x04});
  on.Write(0xC2, {0x0D, 0xD0, 0xCE, 0x02});
  on.Read(0xC1);  // ends the power-on state
  for (const bool tv : {true, false, true}) {
    on.gpio->SetLine(27, tv);
    EXPECT_EQ(on.Write(0xC0, {0x1E, 0x8E, 0xA0, 0x06, 0x00}), tv ? E_FAIL : S_OK);
    Sleep(60);
    EXPECT_EQ(on.Locked(), tv);
    EXPECT_EQ(on.Read(0xC1), tv ? 0x42 : 0x9E);
    EXPECT_NEAR(card_->TunedKHz(), tv ? 175250 : 98000, 1);
  }
}

TEST_F(Saa713xCardTest, RemoteControlOnGpioLines) {
  Plug({.remoteChip = false});
  Interfaces on(*card_);
  EXPECT_EQ(on.Read(0x80), -1);
  const auto lines = [&on] {
    int byte = 0;
    for (ULONG line = 0; line < 8; ++line) byte |= on.Line(3 + line) << line;
    return byte;
  };
  card_->PressKey(2, 5);  // 00101 from the most significant bit on: lines 6 to 10 read 0 0 1 0 1
  EXPECT_EQ(lines(), 0xA2);
  on.gpio->SetLine(2, 0);
  EXPECT_EQ(lines(), 0xA2);
  on.gpio->SetLine(2, 1);
  EXPECT_EQ(lines(), 0);
  EXPECT_EQ(on.Line(28), -1);
  EXPECT_EQ(on.gpio->SetLine(28, 1), E_INVALIDARG);
}

TEST_F(Saa713xCardTest, ReportedStandardIsTheOneThatWasSet) {
  Plug({}, AirWith(175250, AnalogVideo_SECAM_B));
  const Interfaces on(*card_);
  KSPROPERTY_VIDEODECODER_S request{};
  request.Value = AnalogVideo_PAL_I;
  EXPECT_EQ(SetProperty(on.capture.Get(), kPropsetVideoDecoder, 1, request), S_OK);
  LONG standard = 0;
  EXPECT_EQ(on.videoDecoder->get_TVFormat(&standard), S_OK);
  EXPECT_EQ(standard, AnalogVideo_PAL_I);
}

}  // namespace
}  // namespace zelk::virtual_cards
