// The exact conversation with the card from initialisation to the first channel, on four boards.
#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

using Lines = std::vector<std::string>;

struct Board {
  std::uint32_t tunerType;
  std::uint32_t standard;
  std::uint32_t country;
  const char* boardConfig;
  Lines tunerSetUp;  // within ZELK_HWInit
  Lines tvInit;
  Lines format;
  Lines tuning;  // ZELK_SetFreq at the frequency already tuned: no notifications
};

Lines InitTrace(const Board& board) {
  Lines lines = {
      "capture query IKsPropertySet",
      "tuner query IKsPropertySet",
      "tv-audio bind",
      "vamp service",
      "vamp count -> 1",
      "vamp device 0",
      "vamp query-device",
      "vamp gpio",
      "vamp i2c",
      "vamp decoder",
      std::string("vamp board-config -> ") + board.boardConfig,
      "vamp chip-id -> 00007134",
      "i2c select A0",
      "i2c read A0[21] -> 00",
      "i2c select A0",
      "i2c read A0[20] -> FF",
  };
  lines.insert(lines.end(), board.tunerSetUp.begin(), board.tunerSetUp.end());
  for (const char* line :
       {"capture set ZELK_SAA.70 00000000", "i2c select A0", "i2c read A0[22] -> FB"}) {
    lines.push_back(line);
  }
  return lines;
}

const Board kBoards[] = {
    // A PLL tuner without a demodulator of its own.
    {.tunerType = 0,
     .standard = AnalogVideo_PAL_B,
     .country = 49,
     .boardConfig = "00000000",
     .tunerSetUp = {},
     .tvInit = {},
     .format = {"tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                "capture set VAMP_TUNE.3 00000001 00000031 00000010 00000001", "i2c select C2",
                "i2c write C2: 0D 62 CE 90", "capture get VIDEODECODER.1 -> 00000010",
                "capture set VAMP_TUNE.3 00000002 00000031 00000010 00000002",
                "capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 00000010"},
     .tuning = {"i2c select C2", "i2c write C2: 0D 62 CE 90",
                "capture get VIDEODECODER.1 -> 00000010", "capture get ZELK_SAA.74 -> 00007134",
                "capture set VIDEODECODER.1 00000010", "i2c select C2", "i2c read C2 -> C2"}},
    // A PLL tuner with a fifth byte and a multi-standard demodulator.
    {.tunerType = 14,
     .standard = AnalogVideo_PAL_B,
     .country = 49,
     .boardConfig = "0000000A",
     .tunerSetUp = {},
     .tvInit = {},
     .format = {"i2c select 86", "i2c write 86: 00 16 70 49",
                "tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                "capture set VAMP_TUNE.3 00000001 00000031 00000010 00000001", "i2c select C2",
                "i2c write C2: 0D 62 86 22 A0", "i2c select C2", "i2c write C2: 0D 62 86 22",
                "capture get VIDEODECODER.1 -> 00000010",
                "capture set VAMP_TUNE.3 00000002 00000031 00000010 00000002",
                "capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 00000010"},
     .tuning = {"i2c select C2", "i2c write C2: 0D 62 86 22 A0", "i2c select C2",
                "i2c write C2: 0D 62 86 22", "capture get VIDEODECODER.1 -> 00000010",
                "capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 00000010",
                "i2c select 86", "i2c read 86 -> E3"}},
    // A silicon tuner, in a country whose standard has to be spelled as another country.
    {.tunerType = 40,
     .standard = AnalogVideo_PAL_D,
     .country = 7,
     .boardConfig = "0000001E",
     .tunerSetUp = {"capture set ZELK_SAA.67 00000000", "i2c select 96", "i2c write 96: 21 C0",
                    "i2c select C2", "i2c write C2: 00 00 00 00 7C 04 A3 3F 2A 04 FF 00 00 40",
                    "i2c select 96", "i2c write 96: 21 80", "i2c select 96", "i2c write 96: 07 00",
                    "i2c select 96", "i2c write 96: 30 2F", "i2c select 96", "i2c write 96: 20 0B"},
     .tvInit = {"capture set ZELK_SAA.65 00000000", "tuner query IAMTVTuner", "tuner mode 1",
                "capture set ZELK_SAA.65 00000001"},
     .format = {"tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=86",
                "capture set VAMP_TUNE.3 00000001 00000056 00000020 00000001",
                "tuner set TUNER.4 frequency=175250000 flags=0 channel=4 country=86",
                "capture get VIDEODECODER.1 -> 00000020",
                "capture set VAMP_TUNE.3 00000002 00000056 00000020 00000002",
                "capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 00000020"},
     .tuning = {"tuner set TUNER.4 frequency=175250000 flags=0 channel=4 country=86",
                "capture get VIDEODECODER.1 -> 00000020", "capture get ZELK_SAA.74 -> 00007134",
                "capture set VIDEODECODER.1 00000020", "i2c select 96", "i2c read 96[1B] -> 80"}},
    // The other silicon tuner is set up in another order.
    {.tunerType = 41,
     .standard = AnalogVideo_PAL_B,
     .country = 49,
     .boardConfig = "0000001C",
     .tunerSetUp = {"capture set ZELK_SAA.67 00000000", "i2c select 96", "i2c write 96: 00 01",
                    "i2c select 96", "i2c write 96: 07 00", "i2c select 96", "i2c write 96: 30 2F",
                    "i2c select 96", "i2c write 96: 20 0B", "i2c select 96", "i2c write 96: 21 C0",
                    "i2c select C2", "i2c write C2: 00 00 00 00 1C 04 AB 38 0A 28 FF 40 00 39",
                    "i2c select 96", "i2c write 96: 21 80"},
     .tvInit = {"capture set ZELK_SAA.65 00000000", "tuner query IAMTVTuner", "tuner mode 1",
                "capture set ZELK_SAA.65 00000001"},
     .format = {"tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                "capture set VAMP_TUNE.3 00000001 00000031 00000010 00000001",
                "tuner set TUNER.4 frequency=175250000 flags=0 channel=4 country=49",
                "capture get VIDEODECODER.1 -> 00000010",
                "capture set VAMP_TUNE.3 00000002 00000031 00000010 00000002",
                "capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 00000010"},
     .tuning = {"tuner set TUNER.4 frequency=175250000 flags=0 channel=4 country=49",
                "capture get VIDEODECODER.1 -> 00000010", "capture get ZELK_SAA.74 -> 00007134",
                "capture set VIDEODECODER.1 00000010", "i2c select 96", "i2c read 96[1B] -> 80"}},
    // An ALPS module, whose presence test is the decoder's.
    {.tunerType = 48,
     .standard = AnalogVideo_NTSC_M_J,
     .country = 81,
     .boardConfig = "00000040",
     .tunerSetUp = {},
     .tvInit = {},
     .format = {"i2c select 86", "i2c write 86: 00 D6 70 00",
                "tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=81",
                "capture set VAMP_TUNE.3 00000001 00000051 00000002 00000001", "i2c select C2",
                "i2c write C2: 0E A0 CE 02", "capture get VIDEODECODER.1 -> 00000002",
                "capture set VAMP_TUNE.3 00000002 00000051 00000002 00000002",
                "capture get ZELK_SAA.74 -> 00007134", "capture set VIDEODECODER.1 00000002"},
     .tuning = {"i2c select C2", "i2c write C2: 0E A0 CE 02",
                "capture get VIDEODECODER.1 -> 00000002", "capture get ZELK_SAA.74 -> 00007134",
                "capture set VIDEODECODER.1 00000002", "capture query IAMAnalogVideoDecoder",
                "capture horizontal-locked -> 1"}},
};

class Trace : public CardTest {};

TEST_F(Trace, FromInitialisationToTheFirstChannel) {
  for (const Board& board : kBoards) {
    SCOPED_TRACE("tuner type " + std::to_string(board.tunerType));
    PlugTuner(board.tunerType, MakeAir({175250}, board.standard));
    TakeTrace();
    EXPECT_EQ(Init(), S_OK);
    EXPECT_EQ(TakeTrace(), InitTrace(board));
    EXPECT_EQ(ZELK_TVInit(), S_OK);
    EXPECT_EQ(TakeTrace(), board.tvInit);
    EXPECT_EQ(ZELK_put_TVFormat(board.standard, board.country), S_OK);
    EXPECT_EQ(TakeTrace(), board.format);
    std::uint32_t present = 77;
    EXPECT_EQ(ZELK_SetFreq(175250, &present), S_OK);
    EXPECT_EQ(TakeTrace(), board.tuning);
    EXPECT_EQ(present, 1u);
  }
}

}  // namespace
}  // namespace zelk::test
