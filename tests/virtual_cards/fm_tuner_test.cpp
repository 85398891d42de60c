// FM through a tuner module: what selects its FM section, what the PLL's converter shows of
// a station with either input, and the IF demodulator in FM-radio mode. 98 MHz with an IF of 10.7
// MHz is an oscillator at 108.7 MHz, 2174 steps of 50 kHz (08 7E).
#include "model_test.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 98000;
constexpr int kInLock = 0x40;
constexpr int kStereo = 0x10;

using Bytes = std::vector<std::uint8_t>;

class FmTunerTest : public TunerModuleTest {
 protected:
  void Fit(std::uint32_t tunerType, Air air) {
    TunerModuleTest::Fit(tunerType, std::move(air));
    Read(0x86);  // the demodulator's own power-on state
  }
};

TEST_F(FmTunerTest, EveryModuleBySelectingItsFmSection) {
  struct Module {
    std::vector<std::uint32_t> types;
    std::vector<Bytes> words;  // all of them tune to 98 MHz
  };
  const Module modules[] = {
      {{1, 3, 5, 7, 9, 11, 17, 26, 28, 32, 34},
       {{0x08, 0x7E, 0x88, 0xA5},
        {0x08, 0x7E, 0x88, 0xA4},
        {0x08, 0x7E, 0x88, 0xA7},
        {0x08, 0x7E, 0x88, 0xA6}}},
      {{13, 15}, {{0x08, 0x7E, 0x80, 0x19, 0xA0}}},
      // (98000 + 33300) / 50 = 2626
      {{19}, {{0x0A, 0x42, 0x80, 0x19, 0xB0}}},
      {{21, 23}, {{0x08, 0x7E, 0x88, 0x09}}},
      // (98000 + 41250) / 50 = 2785
      {{30}, {{0x0A, 0xE1, 0x88, 0xA5}, {0x0A, 0xE1, 0x88, 0xA6}}},
      {{44, 45}, {{0x08, 0x7E, 0xC8, 0x91}, {0x08, 0x7E, 0xC8, 0x11}, {0x08, 0x7E, 0xC8, 0x31}}},
  };
  for (std::uint32_t type = 0; type <= 51; ++type) {
    if (!FindTunerModel(type)) continue;
    for (const Module& module : modules) {
      const bool ownWords = testing::Matches(testing::Contains(type))(module.types);
      for (const Bytes& bytes : module.words) {
        Fit(type, FmAirWith(kTunedKHz));
        bus_.Write(0xC2, bytes);
        EXPECT_EQ(can_->TunedKHz() == kTunedKHz, ownWords) << type << testing::PrintToString(bytes);
        Sleep(60);
        if (ownWords) {
          EXPECT_EQ(Read(0xC2) & kInLock, kInLock) << type;
        }
      }
    }
  }
}

TEST_F(FmTunerTest, AfcAndLevelAtTheConverter) {
  struct Case {
    double offsetKHz;  // station minus tuned frequency
    int afc;
    bool centred;
  };
  for (const Case& one : {
           Case{-151, 4, false}, Case{-149, 0, false}, Case{-100, 0, false}, Case{-94, 0, false},
           Case{-93, 1, false},  Case{-76, 1, false},  Case{-74, 1, true},   Case{-50, 1, true},
           Case{-32, 1, true},   Case{-31, 2, true},   Case{0, 2, true},     Case{31, 2, true},
           Case{32, 3, true},    Case{50, 3, true},    Case{74, 3, true},    Case{76, 3, false},
           Case{93, 3, false},   Case{94, 4, false},   Case{151, 4, false},
       }) {
    Fit(1, FmAirWith(kTunedKHz + one.offsetKHz));
    const int pilot = one.centred ? kStereo : 0;
    for (const std::uint8_t band : {std::uint8_t{0xA5}, std::uint8_t{0xA7}}) {
      Write(0xC2, {0x08, 0x7E, 0x88, band});
      Sleep(60);
      EXPECT_EQ(Read(0xC2), kInLock | pilot | one.afc) << one.offsetKHz;
    }
    for (const std::uint8_t band : {std::uint8_t{0xA4}, std::uint8_t{0xA6}}) {
      Write(0xC2, {0x08, 0x7E, 0x88, band});
      Sleep(60);
      EXPECT_EQ(Read(0xC2), kInLock | pilot | (one.centred ? 4 : 0)) << one.offsetKHz;
    }
  }
}

// The last modules choose the converter's input by bits 7 and 5.
TEST_F(FmTunerTest, ConverterInputOfTheLastModules) {
  for (const std::uint32_t type : {44u, 45u}) {
    Fit(type, FmAirWith(kTunedKHz - 62.5, false));
    for (const auto& [band, reading] : {std::pair{0x91, 1}, {0x31, 1}, {0x11, 4}}) {
      Write(0xC2, {0x08, 0x7E, 0xC8, static_cast<std::uint8_t>(band)});
      Sleep(60);
      EXPECT_EQ(Read(0xC2), kInLock | reading) << band;
    }
  }
}

TEST_F(FmTunerTest, LevelAndStereoOfTheStation) {
  struct Case {
    double levelDbuV;
    bool stereo;
    int afc, level;
  };
  for (const Case& one : {
           Case{39, true, 4, 0},
           Case{40, true, kStereo | 2, kStereo | 3},
           Case{59, false, 2, 3},
           Case{60, false, 2, 4},
           Case{80, true, kStereo | 2, kStereo | 4},
       }) {
    Fit(1, FmAirWith(kTunedKHz, one.stereo, one.levelDbuV));
    Write(0xC2, {0x08, 0x7E, 0x88, 0xA5});
    Sleep(60);
    EXPECT_EQ(Read(0xC2), kInLock | one.afc) << one.levelDbuV;
    Write(0xC2, {0x08, 0x7E, 0x88, 0xA4});
    Sleep(60);
    EXPECT_EQ(Read(0xC2), kInLock | one.level) << one.levelDbuV;
  }
}

TEST_F(FmTunerTest, WrongBytesAreDeaf) {
  struct Case {
    std::uint32_t type;
    Bytes bytes;
    int status;
  };
  const Case cases[] = {
      {1, {0x08, 0x7E, 0x88, 0xA0}, kInLock | 4},   // the low TV band: locked, but no picture
      {1, {0x08, 0x7E, 0x88, 0x19}, 4},             // another module's FM
      {1, {0x08, 0x7E, 0x8E, 0xA5}, 4},             // steps of 62.5 kHz: 125.2 MHz
      {1, {0x08, 0x7E, 0x8A, 0xA5}, 4},             // of 31.25 kHz: 57.2 MHz
      {1, {0x08, 0x7E, 0x89, 0xA5}, 4},             // tuning voltage off
      {1, {0x08, 0x80, 0x88, 0xA5}, kInLock | 0},   // 100 kHz above
      {1, {0x08, 0x84, 0x88, 0xA5}, kInLock | 4},   // 300 kHz above
      {0, {0x08, 0x7E, 0x88, 0xA5}, 4},             // the twin without FM
      {30, {0x08, 0x7E, 0x88, 0xA5}, kInLock | 4},  // the usual IF: 67.45 MHz
      {21, {0x08, 0x7E, 0x88, 0x19}, 4},
  };
  for (const Case& one : cases) {
    Fit(one.type, FmAirWith(kTunedKHz));
    bus_.Write(0xC2, one.bytes);
    Sleep(60);
    EXPECT_EQ(Read(0xC2), one.status) << one.type << testing::PrintToString(one.bytes);
  }
}

TEST_F(FmTunerTest, ReadingsNeedTheirTime) {
  Fit(1, FmAirWith(kTunedKHz));
  Write(0xC2, {0x08, 0x7E, 0x88, 0xA5});
  Sleep(49);
  EXPECT_EQ(Read(0xC2), 4);
  Sleep(1);
  EXPECT_EQ(Read(0xC2), kInLock | kStereo | 2);
  Write(0xC2, {0x08, 0x7E, 0x88, 0xA4});
  EXPECT_EQ(Read(0xC2), 0);
}

// A TV carrier on the same frequency is no station, and FM never shows a picture.
TEST_F(FmTunerTest, TelevisionAndFmDoNotMix) {
  Fit(1, AirWith(kTunedKHz));
  Write(0xC2, {0x08, 0x7E, 0x88, 0xA5});
  Sleep(60);
  EXPECT_EQ(Read(0xC2), kInLock | 4);
  EXPECT_EQ(can_->Picture(), nullptr);
}

// --- Modules with an IF demodulator ---

constexpr int kNothingFound = 7 << 1;

class FmDemodulatorTest : public FmTunerTest {
 protected:
  // The module set up as it is meant to be.
  void FitReady(std::uint32_t type, Air air) {
    Fit(type, std::move(air));
    switch (type) {
      case 19:
        Write(0xC2, {0x0A, 0x42, 0x80, 0x19, 0xB0});
        Write(0x86, {0x00, 0x4E, 0xDF, 0x5C});
        break;
      case 21:
      case 23:
        Write(0xC2, {0x08, 0x7E, 0x88, 0x09});
        Write(0x86, {0x00, 0x5A, 0x90, 0x20});
        break;
      case 15:
        Write(0xC2, {0x08, 0x7E, 0x80, 0x19, 0xA0});
        Write(0x86, {0x00, 0x4E, 0xD0, 0x77});
        break;
      default:
        Write(0xC2, {0x08, 0x7E, 0x80, 0x19, 0xA0});
        Write(0x86, {0x00, 0x4E, 0x90, 0x74});
    }
    Sleep(60);
  }
};

TEST_F(FmDemodulatorTest, AfcOnBothSidesOfTheStation) {
  constexpr int kFound = 0xA0;
  struct Case {
    double offsetKHz;  // positive: tuned below the station, the IF is too low
    int code;
    int mirrored;  // in the eastern module, whose IF is mixed once more
  };
  for (const Case& one : {
           Case{0, 0, 0},
           Case{12.5, 0, 15},
           Case{37.5, 1, 14},
           Case{50, 2, 13},
           Case{112.5, 4, 11},
           Case{174, 6, 9},
           Case{199, 7, 8},
           Case{-12.5, 15, 0},
           Case{-37.5, 14, 1},
           Case{-50, 13, 2},
           Case{-112.5, 11, 4},
           Case{-174, 9, 6},
           Case{-199, 8, 7},
       }) {
    for (const std::uint32_t type : {13u, 15u, 21u, 23u}) {
      FitReady(type, FmAirWith(kTunedKHz + one.offsetKHz));
      EXPECT_EQ(Read(0x86), kFound | one.code << 1) << type << ' ' << one.offsetKHz;
    }
    FitReady(19, FmAirWith(kTunedKHz + one.offsetKHz));
    EXPECT_EQ(Read(0x86), kFound | one.mirrored << 1) << one.offsetKHz;
  }
  for (const std::uint32_t type : {13u, 15u, 19u, 21u}) {
    for (const double offsetKHz : {-201, 201}) {
      FitReady(type, FmAirWith(kTunedKHz + offsetKHz));
      EXPECT_EQ(Read(0x86), kNothingFound) << type;
    }
    FitReady(type, FmAirWith(kTunedKHz, true, 39));
    EXPECT_EQ(Read(0x86), kNothingFound) << type;
  }
}

TEST_F(FmDemodulatorTest, LevelAndPilotAtTheTunersConverter) {
  struct Case {
    std::uint32_t type;
    int stereo, mono;
  };
  for (const Case& one :
       {Case{13, 4, 2}, Case{15, 4, 2}, Case{19, 4, 2}, Case{21, 2, 4}, Case{23, 2, 4}}) {
    FitReady(one.type, FmAirWith(kTunedKHz + 30, true));
    EXPECT_EQ(Read(0xC2), kInLock | one.stereo) << one.type;
    FitReady(one.type, FmAirWith(kTunedKHz + 30, false));
    EXPECT_EQ(Read(0xC2), kInLock | one.mono) << one.type;
    FitReady(one.type, FmAirWith(kTunedKHz + 76));
    EXPECT_EQ(Read(0xC2), kInLock) << one.type;
    // No signal comes out of a demodulator that works at something else.
    FitReady(one.type, FmAirWith(kTunedKHz));
    Write(0x86, {0x00, 0x16, 0x70, 0x49});
    Sleep(60);
    EXPECT_EQ(Read(0xC2), kInLock) << one.type;
  }
}

TEST_F(FmDemodulatorTest, SetUpMustSuitTheModule) {
  struct Case {
    std::uint32_t type;
    std::uint8_t b, e;
    bool heard;
  };
  for (const Case& one : {
           Case{13, 0x4E, 0x74, true},
           Case{13, 0x5A, 0x74, true},   // the modulation bit has no meaning in FM
           Case{13, 0x46, 0x74, false},  // TV
           Case{13, 0x56, 0x74, false},
           Case{13, 0x4E, 0x5C, false},  // the eastern IF
           Case{19, 0x4E, 0x5C, true},
           Case{19, 0x4E, 0x74, false},
           Case{21, 0x4F, 0x7D, true},  // these have an input of their own for 10.7 MHz
           Case{23, 0x4F, 0x20, true},
           Case{23, 0x16, 0x7D, false},
       }) {
    FitReady(one.type, FmAirWith(kTunedKHz));
    Write(0x86, {0x00, one.b, 0x90, one.e});
    Sleep(60);
    EXPECT_EQ(Read(0x86) == 0xA0, one.heard) << one.type << ' ' << int{one.b} << ' ' << int{one.e};
  }
  // 108.7 MHz less 33.3: the station would be there, but the module's filter does not pass that IF.
  FitReady(13, FmAirWith(75400));
  Write(0x86, {0x00, 0x4E, 0x90, 0x5C});
  Sleep(60);
  EXPECT_EQ(Read(0x86), kNothingFound);
  // Radio words alone do not make a module receive FM.
  FitReady(13, FmAirWith(kTunedKHz));
  Write(0xC2, {0x08, 0x7E, 0x86, 0x41, 0xA0});
  Sleep(60);
  EXPECT_EQ(Read(0x86), kNothingFound);
  Fit(13, FmAirWith(kTunedKHz));
  Write(0xC2, {0x08, 0x7E, 0x80, 0x19, 0xA0});
  Sleep(60);
  EXPECT_EQ(Read(0x86), kNothingFound) << "never set up";
  // The type that demodulates FM itself leaves the chip without a signal.
  Fit(17, FmAirWith(kTunedKHz));
  Write(0xC2, {0x08, 0x7E, 0x88, 0xA5});
  Write(0x86, {0x00, 0x4E, 0x90, 0x74});
  Sleep(60);
  EXPECT_EQ(Read(0x86), kNothingFound);
  EXPECT_EQ(Read(0xC2), kInLock | kStereo | 2);
}

TEST_F(FmDemodulatorTest, ReadingsNeedTheirTime) {
  FitReady(13, FmAirWith(kTunedKHz));
  for (const std::uint8_t chip : {std::uint8_t{0xC2}, std::uint8_t{0x86}}) {
    EXPECT_EQ(Read(0x86), 0xA0);
    if (chip == 0xC2) {
      Write(chip, {0x08, 0x60});
      Write(chip, {0x08, 0x7E});
    } else {
      Write(chip, {0x00, 0x4E});
    }
    Sleep(49);
    EXPECT_EQ(Read(0x86), kNothingFound);
    EXPECT_EQ(Read(0xC2) & 7, 0);
    Sleep(1);
    EXPECT_EQ(Read(0xC2) & 7, 4);
  }
  // A loop that moves a little stays in lock.
  Write(0xC2, {0x08, 0x7D});
  Write(0xC2, {0x08, 0x7E});
  Sleep(9);
  EXPECT_EQ(Read(0x86), kNothingFound);
  Sleep(1);
  EXPECT_EQ(Read(0x86), 0xA0);
}

}  // namespace
}  // namespace zelk::virtual_cards
