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

class FmTunerTest : public TunerModuleTest {
 protected:
  // The converter's reading once the module is tuned to 98 MHz with this band byte.
  int ReadingOf(std::uint8_t band) {
    WriteAndWait(0xC2, {0x08, 0x7E, 0x88, band});
    return Read(0xC2);
  }
};

TEST_F(FmTunerTest, EveryModuleBySelectingItsFmSection) {
  // The types of a module, and all of its words for 98 MHz.
  const std::pair<std::vector<std::uint32_t>, std::vector<Bytes>> modules[] = {
      {{1, 3, 5, 7, 9, 11, 17, 26, 28, 32, 34},
       {{0x08, 0x7E, 0x88, 0xA5},
        {0x08, 0x7E, 0x88, 0xA4},
        {0x08, 0x7E, 0x88, 0xA7},
        {0x08, 0x7E, 0x88, 0xA6}}},
      {{13, 15}, {{0x08, 0x7E, 0x80, 0x19, 0xA0}}},
      {{19}, {{0x0A, 0x42, 0x80, 0x19, 0xB0}}},  // (98000 + 33300) / 50 = 2626
      {{21, 23}, {{0x08, 0x7E, 0x88, 0x09}}},
      {{30}, {{0x0A, 0xE1, 0x88, 0xA5}, {0x0A, 0xE1, 0x88, 0xA6}}},  // (98000 + 41250) / 50 = 2785
      {{44, 45}, {{0x08, 0x7E, 0xC8, 0x91}, {0x08, 0x7E, 0xC8, 0x11}, {0x08, 0x7E, 0xC8, 0x31}}}};
  for (std::uint32_t type = 0; type <= 51; ++type) {
    if (!FindTunerModel(type)) continue;
    for (const auto& [types, words] : modules) {
      const bool own = testing::Matches(testing::Contains(type))(types);
      for (const Bytes& bytes : words) {
        const int status = Tuned(type, FmAirWith(kTunedKHz), bytes);
        EXPECT_EQ(can_->TunedKHz() == kTunedKHz, own) << type << testing::PrintToString(bytes);
        EXPECT_TRUE(!own || status & kInLock) << type;
      }
    }
  }
}

TEST_F(FmTunerTest, AfcAndLevelAtTheConverter) {
  // Station minus tuned frequency, AFC, and whether the station is near enough for its level.
  const std::tuple<double, int, bool> cases[] = {
      {-151, 4, false}, {-149, 0, false}, {-94, 0, false}, {-93, 1, false}, {-76, 1, false},
      {-74, 1, true},   {-32, 1, true},   {-31, 2, true},  {31, 2, true},   {32, 3, true},
      {74, 3, true},    {76, 3, false},   {93, 3, false},  {94, 4, false},  {151, 4, false}};
  for (const auto& [offsetKHz, afc, centred] : cases) {
    Fit(1, FmAirWith(kTunedKHz + offsetKHz));
    const int found = kInLock | (centred ? kStereo : 0);
    for (const std::uint8_t band : {0xA5, 0xA7})
      EXPECT_EQ(ReadingOf(band), found | afc) << offsetKHz;
    for (const std::uint8_t band : {0xA4, 0xA6})
      EXPECT_EQ(ReadingOf(band), found | (centred ? 4 : 0)) << offsetKHz;
  }
}

// The last modules choose the converter's input by bits 7 and 5.
TEST_F(FmTunerTest, ConverterInputOfTheLastModules) {
  for (const std::uint32_t type : {44u, 45u}) {
    for (const auto& [band, reading] : {std::pair{std::uint8_t{0x91}, 1}, {0x31, 1}, {0x11, 4}})
      EXPECT_EQ(Tuned(type, FmAirWith(kTunedKHz - 62.5, false), {0x08, 0x7E, 0xC8, band}),
                kInLock | reading);
  }
}

TEST_F(FmTunerTest, LevelAndStereoOfTheStation) {
  for (const auto& [dbuV, stereo, afc, level] : {std::tuple{39, true, 4, 0},
                                                 {40, true, kStereo | 2, kStereo | 3},
                                                 {59, false, 2, 3},
                                                 {60, false, 2, 4}}) {
    Fit(1, FmAirWith(kTunedKHz, stereo, dbuV));
    EXPECT_EQ(ReadingOf(0xA5), kInLock | afc) << dbuV;
    EXPECT_EQ(ReadingOf(0xA4), kInLock | level) << dbuV;
  }
}

TEST_F(FmTunerTest, WrongBytesAreDeaf) {
  const std::tuple<std::uint32_t, Bytes, int> cases[] = {
      {1, {0x08, 0x7E, 0x88, 0xA0}, kInLock | 4},   // the low TV band: locked, but no picture
      {1, {0x08, 0x7E, 0x8E, 0xA5}, 4},             // steps of 62.5 kHz: 125.2 MHz
      {1, {0x08, 0x7E, 0x8A, 0xA5}, 4},             // of 31.25 kHz: 57.2 MHz
      {1, {0x08, 0x7E, 0x89, 0xA5}, 4},             // tuning voltage off
      {1, {0x08, 0x80, 0x88, 0xA5}, kInLock | 0},   // 100 kHz above
      {30, {0x08, 0x7E, 0x88, 0xA5}, kInLock | 4},  // the usual IF: 67.45 MHz
  };
  for (const auto& [type, bytes, status] : cases) {
    EXPECT_EQ(Tuned(type, FmAirWith(kTunedKHz), bytes), status)
        << type << testing::PrintToString(bytes);
  }
}

TEST_F(FmTunerTest, ReadingsNeedTheirTime) {
  const auto status = [&] { return Read(0xC2); };
  Fit(1, FmAirWith(kTunedKHz));
  Write(0xC2, {0x08, 0x7E, 0x88, 0xA5});
  EXPECT_EQ(Around(50, status), std::pair(4, kInLock | kStereo | 2));
  Write(0xC2, {0x08, 0x7E, 0x88, 0xA4});
  EXPECT_EQ(Read(0xC2), 0);
  // A loop that moves a little is soon in lock again.
  Sleep(50);
  Write(0xC2, {0x08, 0x7D});
  EXPECT_EQ(Around(10, status), std::pair(0, kInLock | kStereo | 4));
}

// A TV carrier on the same frequency is no station, and FM never shows a picture.
TEST_F(FmTunerTest, TelevisionAndFmDoNotMix) {
  EXPECT_EQ(Tuned(1, AirWith(kTunedKHz), {0x08, 0x7E, 0x88, 0xA5}), kInLock | 4);
  EXPECT_FALSE(ShowsAPicture());
}

// --- Modules with an IF demodulator ---

constexpr int kNothingFound = 7 << 1;
constexpr int kFound = 0xA0;

class FmDemodulatorTest : public TunerModuleTest {
 protected:
  // The module set up as it is meant to be.
  void FitReady(std::uint32_t type, Air air) {
    Fit(type, std::move(air));
    const bool eastern = type == 19, newer = type == 21 || type == 23;
    Write(0x86, eastern ? Bytes{0x00, 0x4E, 0xDF, 0x5C}
                : newer ? Bytes{0x00, 0x5A, 0x90, 0x20}
                        : Bytes{0x00, 0x4E, 0x90, 0x74});
    WriteAndWait(0xC2, eastern ? Bytes{0x0A, 0x42, 0x80, 0x19, 0xB0}
                       : newer ? Bytes{0x08, 0x7E, 0x88, 0x09}
                               : Bytes{0x08, 0x7E, 0x80, 0x19, 0xA0});
  }
};

TEST_F(FmDemodulatorTest, AfcOnBothSidesOfTheStation) {
  // A positive offset: tuned below the station, the IF is too low. The eastern module mixes its IF
  // once more, which mirrors the code.
  const std::tuple<double, int, int> cases[] = {{0, 0, 0},      {12.5, 0, 15},   {37.5, 1, 14},
                                                {112.5, 4, 11}, {199, 7, 8},     {-12.5, 15, 0},
                                                {-37.5, 14, 1}, {-112.5, 11, 4}, {-199, 8, 7}};
  for (const std::uint32_t type : {13u, 15u, 19u, 21u, 23u}) {
    for (const auto& [offsetKHz, code, mirrored] : cases) {
      FitReady(type, FmAirWith(kTunedKHz + offsetKHz));
      EXPECT_EQ(Read(0x86), kFound | (type == 19 ? mirrored : code) << 1)
          << type << ' ' << offsetKHz;
    }
    for (const Air& air :
         {FmAirWith(kTunedKHz - 201), FmAirWith(kTunedKHz + 201), FmAirWith(kTunedKHz, true, 39)}) {
      FitReady(type, air);
      EXPECT_EQ(Read(0x86), kNothingFound) << type;
    }
  }
}

TEST_F(FmDemodulatorTest, LevelAndPilotAtTheTunersConverter) {
  for (const auto& [type, stereo, mono] :
       {std::tuple{13u, 4, 2}, {15u, 4, 2}, {19u, 4, 2}, {21u, 2, 4}, {23u, 2, 4}}) {
    FitReady(type, FmAirWith(kTunedKHz + 30, true));
    EXPECT_EQ(Read(0xC2), kInLock | stereo) << type;
    // No signal comes out of a demodulator that works at something else.
    WriteAndWait(0x86, {0x00, 0x16, 0x70, 0x49});
    EXPECT_EQ(Read(0xC2), kInLock) << type;
    FitReady(type, FmAirWith(kTunedKHz + 30, false));
    EXPECT_EQ(Read(0xC2), kInLock | mono) << type;
    FitReady(type, FmAirWith(kTunedKHz + 76));
    EXPECT_EQ(Read(0xC2), kInLock) << type;
  }
}

TEST_F(FmDemodulatorTest, SetUpMustSuitTheModule) {
  // 4E or 5A: the modulation bit has no meaning in FM. 46 and 56 are TV, 5C is the eastern IF. The
  // last modules have an input of their own for 10.7 MHz, whatever E says.
  const std::tuple<std::uint32_t, std::uint8_t, std::uint8_t, bool> cases[] = {
      {13, 0x4E, 0x74, true},  {13, 0x5A, 0x74, true},  {13, 0x46, 0x74, false},
      {13, 0x56, 0x74, false}, {13, 0x4E, 0x5C, false}, {19, 0x4E, 0x74, false},
      {21, 0x4F, 0x7D, true},  {23, 0x4F, 0x20, true},  {23, 0x16, 0x7D, false}};
  for (const auto& [type, b, e, heard] : cases) {
    FitReady(type, FmAirWith(kTunedKHz));
    WriteAndWait(0x86, {0x00, b, 0x90, e});
    EXPECT_EQ(Read(0x86) == kFound, heard) << type << ' ' << int{b} << ' ' << int{e};
  }
  // 108.7 MHz less 33.3: the station would be there, but the module's filter does not pass that IF.
  // Radio words alone do not make a module receive FM, nor is one heard whose demodulator was never
  // set up. The type that demodulates FM itself leaves the chip without a signal.
  const std::tuple<std::uint32_t, double, Bytes, Bytes> deaf[] = {
      {13, 75400, {0x00, 0x4E, 0x90, 0x5C}, {0x08, 0x7E, 0x80, 0x19, 0xA0}},
      {13, kTunedKHz, {0x00, 0x4E, 0x90, 0x74}, {0x08, 0x7E, 0x86, 0x41, 0xA0}},
      {13, kTunedKHz, {}, {0x08, 0x7E, 0x80, 0x19, 0xA0}},
      {17, kTunedKHz, {0x00, 0x4E, 0x90, 0x74}, {0x08, 0x7E, 0x88, 0xA5}}};
  for (const auto& [type, stationKHz, demodulator, tuner] : deaf) {
    Fit(type, FmAirWith(stationKHz));
    Write(0x86, demodulator);
    WriteAndWait(0xC2, tuner);
    EXPECT_EQ(Read(0x86), kNothingFound) << type;
  }
  EXPECT_EQ(Read(0xC2), kInLock | kStereo | 2);
}

TEST_F(FmDemodulatorTest, ReadingsNeedTheirTime) {
  FitReady(13, FmAirWith(kTunedKHz));
  for (const bool retuned : {true, false}) {
    EXPECT_EQ(Read(0x86), kFound);
    if (retuned) Write(0xC2, {0x08, 0x60});
    Write(retuned ? 0xC2 : 0x86, retuned ? Bytes{0x08, 0x7E} : Bytes{0x00, 0x4E});
    const auto levelAndStatus = [&] { return std::pair(Read(0xC2) & 7, Read(0x86)); };
    EXPECT_EQ(Around(50, levelAndStatus),
              std::pair(std::pair(0, kNothingFound), std::pair(4, kFound)));
  }
  // A loop that moves a little stays in lock.
  Write(0xC2, {0x08, 0x7D});
  Write(0xC2, {0x08, 0x7E});
  EXPECT_EQ(Around(10, [&] { return Read(0x86); }), std::pair(kNothingFound, kFound));
}

}  // namespace
}  // namespace zelk::virtual_cards
