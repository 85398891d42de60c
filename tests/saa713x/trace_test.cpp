// The exact conversation with the card from initialisation to the first channel, on four boards.
#include <cstdio>

#include "tests/support/card_test.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

struct Choice {
  std::uint32_t standard, country;
  std::uint32_t namedCountry;  // to the drivers
};

// What is particular to a board. The rest of the conversation is the same on all of them.
struct Board {
  std::uint32_t tunerType, configuration;
  Choice choice;
  Lines siliconSetUp;  // within ZELK_HWInit
  Lines demodulator;   // set up for the standard
  Lines tuning, presence;
};

std::string Hex(std::uint32_t word) {
  char digits[9];
  std::snprintf(digits, sizeof(digits), "%08X", static_cast<unsigned>(word));
  return digits;
}

// Each write selects its device first.
Lines Written(std::initializer_list<std::string> writes) {
  Lines lines;
  for (const std::string& write : writes) {
    lines.insert(lines.end(), {"i2c select " + write.substr(0, 2), "i2c write " + write});
  }
  return lines;
}

Lines InitTrace(const Board& board) {
  Lines setUp = board.siliconSetUp;
  if (!setUp.empty()) setUp.insert(setUp.begin(), "capture set ZELK_SAA.67 00000000");
  return Joined(
      {{"capture query IKsPropertySet", "tuner query IKsPropertySet", "tv-audio bind",
        "vamp service", "vamp count -> 1", "vamp device 0", "vamp query-device", "vamp gpio",
        "vamp i2c", "vamp decoder", "vamp board-config -> " + Hex(board.configuration),
        "vamp chip-id -> 00007134", "i2c select A0", "i2c read A0[21] -> 00", "i2c select A0",
        "i2c read A0[20] -> FF"},
       setUp,
       {"capture set ZELK_SAA.70 00000000", "i2c select A0", "i2c read A0[22] -> FB"}});
}

Lines TvInitTrace(const Board& board) {
  if (board.siliconSetUp.empty()) return {};
  return {"capture set ZELK_SAA.65 00000000", "tuner query IAMTVTuner", "tuner mode 1",
          "capture set ZELK_SAA.65 00000001"};
}

// The notifications around it are left out at the frequency already tuned.
Lines TuningTrace(const Board& board, bool notified) {
  const std::string standard = Hex(board.choice.standard);
  const auto notification = [&](const std::string& phase) {
    if (!notified) return Lines();
    return Lines{"capture set VAMP_TUNE.3 " + phase + ' ' + Hex(board.choice.namedCountry) + ' ' +
                 standard + ' ' + phase};
  };
  return Joined(
      {notification("00000001"),
       board.tuning,
       {"capture get VIDEODECODER.1 -> " + standard},
       notification("00000002"),
       {"capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 " + standard}});
}

Lines FormatTrace(const Board& board) {
  return Joined({board.demodulator,
                 {"tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=" +
                  std::to_string(board.choice.namedCountry)},
                 TuningTrace(board, true)});
}

constexpr Choice kGermany = {AnalogVideo_PAL_B, 49, 49};
// A country whose standard has to be spelled as another country.
constexpr Choice kRussia = {AnalogVideo_PAL_D, 7, 86};
constexpr Choice kJapan = {AnalogVideo_NTSC_M_J, 81, 81};
const Lines kSiliconLock = {"i2c select 96", "i2c read 96[1B] -> 80"};

const Lines kNone;
const Board kBoards[] = {
    // A PLL tuner without a demodulator of its own.
    Board(0, 0, kGermany, kNone, kNone, Written({"C2: 0D 62 CE 90"}),
          Lines{"i2c select C2", "i2c read C2 -> C2"}),
    // A PLL tuner with a fifth byte and a multi-standard demodulator.
    Board(14, 0x0A, kGermany, kNone, Written({"86: 00 16 70 49"}),
          Written({"C2: 0D 62 86 22 A0", "C2: 0D 62 86 22"}),
          Lines{"i2c select 86", "i2c read 86 -> E3"}),
    // Two silicon tuners, each set up in an order of its own.
    Board(40, 0x1E, kRussia,
          Written({"96: 21 C0", "C2: 00 00 00 00 7C 04 A3 3F 2A 04 FF 00 00 40", "96: 21 80",
                   "96: 07 00", "96: 30 2F", "96: 20 0B"}),
          kNone, Lines{"tuner set TUNER.4 frequency=175250000 flags=0 channel=4 country=86"},
          kSiliconLock),
    Board(41, 0x1C, kGermany,
          Written({"96: 00 01", "96: 07 00", "96: 30 2F", "96: 20 0B", "96: 21 C0",
                   "C2: 00 00 00 00 1C 04 AB 38 0A 28 FF 40 00 39", "96: 21 80"}),
          kNone, Lines{"tuner set TUNER.4 frequency=175250000 flags=0 channel=4 country=49"},
          kSiliconLock),
    // An ALPS module, whose presence test is the decoder's.
    Board(48, 0x40, kJapan, kNone, Written({"86: 00 D6 70 00"}), Written({"C2: 0E A0 CE 02"}),
          Lines{"capture query IAMAnalogVideoDecoder", "capture horizontal-locked -> 1"})};

class Trace : public CardTest {};

TEST_F(Trace, FromInitialisationToTheFirstChannel) {
  for (const Board& board : kBoards) {
    SCOPED_TRACE("tuner type " + std::to_string(board.tunerType));
    PlugTuner(board.tunerType, MakeAir({175250}, board.choice.standard));
    TakeTrace();
    EXPECT_EQ(Init(), S_OK);
    EXPECT_EQ(TakeTrace(), InitTrace(board));
    EXPECT_EQ(ZELK_TVInit(), S_OK);
    EXPECT_EQ(TakeTrace(), TvInitTrace(board));
    EXPECT_EQ(ZELK_put_TVFormat(board.choice.standard, board.choice.country), S_OK);
    EXPECT_EQ(TakeTrace(), FormatTrace(board));
    EXPECT_EQ(Ask(ZELK_SetFreq, 175250), Answer(S_OK, 1));
    EXPECT_EQ(TakeTrace(), Joined({TuningTrace(board, false), board.presence}));
  }
}

}  // namespace
}  // namespace zelk::test
