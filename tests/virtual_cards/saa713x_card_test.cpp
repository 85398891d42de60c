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

TEST_F(Saa713xCardTest, PictureOnThePllBoard) {
  const Saa713xCard& card = Plug({}, AirWith(175250));
  Interfaces on(*card_);
  EXPECT_EQ(card.TunedKHz(), 0);
  on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  EXPECT_FALSE(on.Locked()) << "too soon";
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_TRUE(card.HorizontalLocked());
  EXPECT_EQ(card.TunedKHz(), 175225);
  EXPECT_EQ(on.Read(0xC2) & 0x47, 0x42);
}

TEST_F(Saa713xCardTest, DecoderStatusShowsTheColourSystem) {
  struct Case {
    std::uint32_t standard;
    ULONG status;
  };
  for (const Case& one : {
           Case{AnalogVideo_NTSC_M, 0x01010000}, Case{AnalogVideo_PAL_B, 0x01020000},
           Case{AnalogVideo_SECAM_B, 0x01030000},
           Case{AnalogVideo_SECAM_L, 0},  // positive modulation: no picture
       }) {
    Plug({}, AirWith(175250, one.standard));
    Interfaces on(*card_);
    on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
    Sleep(60);
    EXPECT_EQ(DecoderStatus(on), one.status);
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

TEST_F(Saa713xCardTest, PowerDownSilencesTheTuner) {
  Plug({.tunerType = 46}, AirWith(175250, AnalogVideo_NTSC_M));
  Interfaces on(*card_);
  on.Write(0x86, {0x00, 0xD6, 0x10, 0x04});
  on.Write(0xC2, {0x0D, 0xD0, 0xCE, 0x02});
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  on.SetOwn(0x67, 1);
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(on.Read(0xC1), -1);
  EXPECT_EQ(on.Write(0xC2, {0x0D, 0xD0, 0xCE, 0x02}), E_FAIL);
  on.SetOwn(0x67, 0);
  EXPECT_TRUE(on.Locked());
}

// The frequency property tunes every board over its whole band, whatever the module.
TEST_F(Saa713xCardTest, DriverTunesEveryBoard) {
  struct Case {
    std::vector<std::uint32_t> types;
    double lowKHz, highKHz, toleranceKHz;
  };
  const Case cases[] = {
      {{0, 1, 2, 3, 6, 7, 8, 9, 25, 26, 27, 28, 33, 34, 47}, 48250, 855250, 32},
      {{4, 5, 12, 13, 24, 29, 30, 31, 32, 35, 44, 46}, 55250, 801250, 32},
      {{10, 11, 16, 17, 36, 37, 48}, 91250, 765250, 32},
      {{14, 15, 18, 19, 20, 21, 43}, 49250, 863250, 32},
      {{42, 45}, 55250, 863250, 32},
      {{40}, 40000, 865000, 125},
      {{41}, 66000, 865000, 125},
  };
  for (const Case& one : cases) {
    for (const std::uint32_t type : one.types) {
      Plug({.tunerType = type});
      Interfaces on(*card_);
      if (type == 40 || type == 41) on.Write(0x96, {0x01, 0x02});
      for (double kHz = one.lowKHz; kHz <= one.highKHz; kHz += 3100) {
        ASSERT_EQ(on.Tune(static_cast<ULONG>(kHz * 1000), 49), S_OK) << type << " at " << kHz;
        ASSERT_NEAR(card_->TunedKHz(), kHz, one.toleranceKHz) << type;
      }
      EXPECT_EQ(on.Tune(20000000, 49), E_INVALIDARG);
    }
  }
}

TEST_F(Saa713xCardTest, DriverFollowsTheCountry) {
  struct Case {
    std::uint32_t standard;
    double kHz;
    ULONG country;
    bool locked;
  };
  for (const std::uint32_t type : {40u, 41u}) {
    for (const Case& one : {
             Case{AnalogVideo_PAL_B, 175250, 49, true},
             Case{AnalogVideo_PAL_G, 471250, 49, true},
             Case{AnalogVideo_NTSC_M, 801250, 1, true},
             Case{AnalogVideo_SECAM_L, 471250, 33, true},
             Case{AnalogVideo_SECAM_L, 471250, 49, false},
             Case{AnalogVideo_PAL_G, 471250, 33, false},
         }) {
      Plug({.tunerType = type}, AirWith(one.kHz, one.standard));
      Interfaces on(*card_);
      for (const std::vector<BYTE>& bytes :
           {std::vector<BYTE>{0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}})
        on.Write(0x96, bytes);
      EXPECT_EQ(on.Tune(static_cast<ULONG>(one.kHz * 1000), one.country), S_OK);
      Sleep(60);
      EXPECT_EQ(on.Locked(), one.locked) << type << ' ' << one.kHz << ' ' << one.country;
      EXPECT_EQ(on.ReadAt(0x96, 0x1B), one.locked ? 0x80 : 0x40);
      EXPECT_EQ(on.Read(0xC2), -1) << "the driver closes the gate behind it";
    }
  }
}

TEST_F(Saa713xCardTest, SiliconBoardShowsNoPictureInFmMode) {
  Plug({.tunerType = 41}, AirWith(175250));
  Interfaces on(*card_);
  for (const std::vector<BYTE>& bytes : {std::vector<BYTE>{0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}})
    on.Write(0x96, bytes);
  on.Tune(175250000, 49);
  Sleep(60);
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_DSS), E_INVALIDARG);
  AMTunerModeType mode = AMTUNER_MODE_DEFAULT;
  EXPECT_EQ(on.tvTuner->get_Mode(&mode), S_OK);
  EXPECT_EQ(mode, AMTUNER_MODE_FM_RADIO);
  EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_TV), S_OK);
  EXPECT_TRUE(on.Locked());
}

// On boards with a separate FM receiver line 27 chooses who is heard at 0xC0.
TEST_F(Saa713xCardTest, Gpio27SwitchesBetweenTvAndFm) {
  Plug({.tunerType = 46, .boardConfig = 0xE3}, AirWith(175250, AnalogVideo_NTSC_M));
  EXPECT_TRUE(card_->GpioOutput(27));
  Interfaces on(*card_);
  on.Write(0x86, {0x00, 0xD6, 0x10, 0x04});
  on.Write(0xC2, {0x0D, 0xD0, 0xCE, 0x02});
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_EQ(on.Read(0xC1) & 7, 2);
  on.gpio->SetLine(27, 0);
  EXPECT_FALSE(card_->GpioOutput(27));
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(on.Read(0xC1), 0) << "the receiver, never written to";
  on.Write(0xC0, {0x1E, 0x8E, 0xA0, 0x06, 0x00});
  Sleep(60);
  EXPECT_EQ(on.Read(0xC1), 0x9E);
  EXPECT_EQ(card_->TunedKHz(), 98000);
  on.gpio->SetLine(27, 1);
  EXPECT_TRUE(on.Locked());
  EXPECT_EQ(on.Read(0xC1) & 7, 2) << "the TV tuner again";
  EXPECT_EQ(on.Write(0xC0, {0x1E, 0x8E, 0xA0, 0x06, 0x00}), E_FAIL);

  // The same module on an ordinary board does not care.
  Plug({.tunerType = 46});
  Interfaces ordinary(*card_);
  ordinary.gpio->SetLine(27, 0);
  EXPECT_NE(ordinary.Read(0xC1), -1);
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
  EXPECT_TRUE(card_->GpioOutput(2));
  card_->DriveGpioInput(4, true);
  EXPECT_EQ(lines(), 0x02);
  EXPECT_THROW(card_->DriveGpioInput(28, true), std::out_of_range);
  EXPECT_EQ(on.Line(28), -1);
  EXPECT_EQ(on.gpio->SetLine(28, 1), E_INVALIDARG);
}

TEST_F(Saa713xCardTest, RemoteControlByReceiverChip) {
  Plug({});
  Interfaces on(*card_);
  card_->PressKey(3, 2);
  EXPECT_EQ(on.ReadAt(0x80, 0x0D), 2);
  EXPECT_EQ(on.ReadAt(0x80, 0x0B), 3);
  on.gpio->SetLine(2, 1);
  EXPECT_EQ(on.ReadAt(0x80, 0x0D), 2) << "the chip keeps its key";
}

TEST_F(Saa713xCardTest, EepromOfABoard) {
  Plug({.tunerType = 43});
  {
    Interfaces on(*card_);
    EXPECT_EQ(on.ReadAt(0xA0, 0x20), 0x19);
    EXPECT_EQ(on.ReadAt(0xA0, 0x22) & 4, 0) << "remote control by chip";
  }
  Plug({.remoteChip = false});
  {
    Interfaces on(*card_);
    EXPECT_EQ(on.ReadAt(0xA0, 0x20), 0xFF);
    EXPECT_EQ(on.ReadAt(0xA0, 0x22) & 4, 4);
  }
  Plug({.eepromPresent = false});
  Interfaces on(*card_);
  EXPECT_EQ(on.ReadAt(0xA0, 0x20), -1);
}

TEST_F(Saa713xCardTest, ReportedStandard) {
  Plug({}, AirWith(175250, AnalogVideo_SECAM_B));
  Interfaces on(*card_);
  const auto standard = [&on] {
    LONG value = 0;
    EXPECT_EQ(on.videoDecoder->get_TVFormat(&value), S_OK);
    return value;
  };
  EXPECT_EQ(standard(), AnalogVideo_SECAM_B);
  KSPROPERTY_VIDEODECODER_S request{};
  request.Value = AnalogVideo_PAL_I;
  EXPECT_EQ(
      on.capture->Set(kPropsetVideoDecoder, 1, &request, sizeof request, &request, sizeof request),
      S_OK);
  EXPECT_EQ(standard(), AnalogVideo_PAL_I);
  card_->SetDetectedStandard(AnalogVideo_PAL_D);
  EXPECT_EQ(standard(), AnalogVideo_PAL_D);
  DWORD returned = 0;
  EXPECT_EQ(on.capture->Get(kPropsetVideoDecoder, 1, &request, sizeof request, &request,
                            sizeof request, &returned),
            S_OK);
  EXPECT_EQ(request.Value, static_cast<ULONG>(AnalogVideo_PAL_D));
  EXPECT_EQ(returned, sizeof request);
}

}  // namespace
}  // namespace zelk::virtual_cards
