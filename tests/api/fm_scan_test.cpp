// The FM scan: what it finds on every tuner, each way of recognising a station on hand-written
// readings, its events, and its commands.
#include <algorithm>
#include <fstream>

#include "platform/control.h"
#include "platform/win32.h"
#include "tests/support/card_test.h"
#include "tests/support/fm_band.h"
#include "tests/support/told_chip.h"
#include "virtual_cards/cards/ql2_card.h"

namespace zelk::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;
using virtual_cards::Saa713xOptions;
using Strings = std::vector<std::string>;
using Bytes = std::vector<std::uint8_t>;

// What a scan makes of what the tuner says, from one probe to the next.
template <class Readings>
struct Case {
  const char* name;
  Readings readings;
  Strings found;
};

class FmScan : public CardTest {
 protected:
  void PlugFm(const Saa713xOptions& options, virtual_cards::Air air = {}) {
    Plug(options, std::move(air));
    ASSERT_EQ(Init(), S_OK);
    ZELK_FMInit();
    scanEvents.clear();
  }

  // Scans [low, high] upward and answers what was found: "98100 stereo".
  static Strings Found(std::uint32_t low, std::uint32_t high) {
    scanEvents.clear();
    EXPECT_EQ(ZELK_FMAllFreqScan(RecordScanEvent, ZELK_SCAN_START, 0, 0, low, high), S_OK);
    Strings found;
    for (const std::string& event : scanEvents) {
      if (!event.starts_with("1003 ")) continue;
      const std::string frequency = event.substr(5, event.find(' ', 5) - 5);
      found.push_back(frequency + (event.ends_with(" 1") ? " stereo" : " mono"));
    }
    return found;
  }

  // A module whose demodulator says these AFC readings, and its tuner these status bytes.
  void PlugTold(std::uint32_t type, const Bytes& afcReadings, const Bytes& statuses) {
    PlugFm({.tunerType = type});
    Bytes bytes;
    for (const std::uint8_t reading : afcReadings) {
      bytes.push_back(static_cast<std::uint8_t>(reading << 1));
    }
    demodulator.Tell(bytes);
    if (!bytes.empty()) card->FitChip(0x86, &demodulator);
    tuner.Tell(statuses);
    card->FitChip(0xC2, &tuner);
  }

  // An MPEG-encoder card whose tuner says these status bytes.
  void PlugToldQuillon(const Bytes& statuses) {
    Unplug();
    auto made = virtual_cards::Ql2Card::Create(
        {.tunerCode = 16, .friendlyName = "Korvane Telmora Video Capture (P260)"}, {});
    made->FitChip(0xC0, &tuner);
    plugged = std::move(made);
    ASSERT_EQ(Init(), S_OK);
    ZELK_FMInit();
    tuner.Tell(statuses);
  }

  ToldChip tuner;
  ToldChip demodulator;
};

TEST_F(FmScan, EveryTunerFindsEveryStation) {
  std::vector<Saa713xOptions> boards;
  for (const std::uint32_t type : {1u,  3u,  5u,  7u,  9u,  11u, 13u, 15u, 17u, 19u,
                                   21u, 26u, 28u, 30u, 32u, 34u, 40u, 41u, 44u, 45u}) {
    boards.push_back({.tunerType = type});
  }
  // Boards with the separate receiver.
  for (const std::uint32_t board : {0xE1u, 0xE3u, 0xE9u}) boards.push_back({.boardConfig = board});
  for (const Saa713xOptions& board : boards) {
    SCOPED_TRACE("tuner type " + std::to_string(board.tunerType) + ", board " +
                 std::to_string(board.boardConfig.value_or(0)));
    PlugFm(board);
    ZELK_HWInfo info = {};
    ASSERT_EQ(ZELK_GetHWInfo(&info), S_OK);
    virtual_cards::Air air;
    air.fm = SampleStations(info.FmLowKHz, info.FmHighKHz);
    PlugFm(board, air);
    ExpectFmScanFinds(air.fm);
  }
}

// A sum of 8, then one of -5.
const Bytes kStation = {3, 3, 2, 13, 13, 14, 7};

TEST_F(FmScan, ThreeReadings) {
  // Three for each probe from 98000 on, fewer where one is far off.
  const Case<Bytes> cases[] = {
      // The station is nearer to the later probe.
      {"later side", kStation, {"98050 stereo"}},
      // 3, then -9: nearer to the earlier one.
      {"earlier side", {1, 1, 1, 12, 12, 12, 7}, {"98000 stereo"}},
      // 9, 3, 0, -3: the last one not below zero is kept.
      {"falling sum", {3, 3, 3, 1, 1, 1, 0, 15, 0, 14, 14, 14, 7}, {"98100 stereo"}},
      // A sum that rises again starts over when it is small.
      {"rising again", {1, 1, 1, 0, 0, 0, 1, 1, 0, 14, 14, 14, 7}, {}},
      // A reading far from any carrier, 6 to 9, forgets the candidate at once and makes none.
      {"far above", {3, 3, 3, 9, 14, 14, 7}, {}},
      {"not far above", {3, 3, 3, 10, 14, 14, 7}, {"98050 stereo"}},
      {"far below", {6, 0, 0, 14, 14, 14, 7}, {}},
      {"not far below", {5, 0, 0, 14, 14, 14, 7}, {"98050 stereo"}},
      {"never positive", {14, 14, 14, 13, 13, 13, 7}, {}},
  };
  for (const std::uint32_t type : {13u, 15u}) {
    for (const auto& one : cases) {
      PlugTold(type, one.readings, {0x04});
      EXPECT_EQ(Found(98000, 98400), one.found) << one.name << " on tuner " << type;
    }
  }
}

TEST_F(FmScan, StereoTests) {
  const std::tuple<std::uint32_t, std::uint8_t, bool> cases[] = {
      {15, 0xFC, true}, {15, 0x05, false}, {15, 0x02, false},
      {21, 0x02, true}, {21, 0x07, true},  {21, 0x04, false}};
  for (const auto& [type, status, stereo] : cases) {
    PlugTold(type, kStation, {status});
    EXPECT_THAT(Found(98000, 98200), ElementsAre(stereo ? "98050 stereo" : "98050 mono"))
        << type << " " << +status;
  }
}

TEST_F(FmScan, FourReadings) {
  // Four for each probe.
  const Case<Bytes> cases[] = {
      // 8, then -4: the stored candidate counts, whichever side is nearer.
      {"crossing", {13, 13, 13, 13, 1, 1, 1, 1, 0}, {"70000 stereo"}},
      // 8, 0, -4.
      {"through zero", {13, 13, 13, 13, 0, 0, 15, 15, 1, 1, 1, 1, 0}, {"70050 stereo"}},
      // Below 6 nothing begins.
      {"too small", {14, 14, 14, 13, 1, 1, 1, 1, 0}, {}},
      // 8, 2, 4, -4: rising again forgets.
      {"rising again", {13, 13, 13, 13, 14, 14, 15, 15, 14, 14, 14, 14, 1, 1, 1, 1, 0}, {}},
  };
  for (const auto& one : cases) {
    PlugTold(19, one.readings, {0x04});
    EXPECT_EQ(Found(70000, 70400), one.found) << one.name;
  }
}

// One status of the five-byte receiver: AFC around 53, stereo bit, level.
ToldChip::Answer Receiver(int afc, bool stereo, std::uint8_t level) {
  return {0x80, 0x12, static_cast<std::uint8_t>((53 + afc) | (stereo ? 0x80 : 0)),
          static_cast<std::uint8_t>(level << 4), 0};
}

TEST_F(FmScan, ReceiverCrossing) {
  const ToldChip::Answer nothing = Receiver(-20, false, 0);
  const Case<std::deque<ToldChip::Answer>> cases[] = {
      {"from well above", {Receiver(10, true, 9), Receiver(-5, false, 9), nothing}, {"98050 mono"}},
      {"from near the middle",
       {Receiver(10, true, 9), Receiver(5, true, 9), Receiver(-5, false, 9), nothing},
       {"98050 stereo"}},
      {"near the middle without a start",
       {Receiver(5, true, 9), Receiver(-5, true, 9), nothing},
       {}},
      {"weak", {Receiver(10, true, 6), Receiver(-5, true, 9), nothing}, {}},
      {"rising again",
       {Receiver(10, true, 9), Receiver(2, true, 9), Receiver(4, true, 9), Receiver(-5, true, 9),
        nothing},
       {}},
  };
  for (const auto& one : cases) {
    PlugFm({.boardConfig = 0xE3});
    card->FitChip(0xC0, &tuner);
    tuner.answers = one.readings;
    const auto before = host::SleptMilliseconds();
    EXPECT_EQ(Found(98000, 98300), one.found) << one.name;
    EXPECT_EQ((host::SleptMilliseconds() - before) % 80, 0u);
    EXPECT_GE(host::SleptMilliseconds() - before, 5u * 80);
  }
}

TEST_F(FmScan, SiliconLock) {
  // From 98200 on.
  const Case<std::deque<std::uint32_t>> cases[] = {
      {"locked at 98350, one step back is a multiple of 100", {2, 2, 0, 1, 2}, {"98300 mono"}},
      {"locked at 98400, one step back and half of one", {2, 2, 2, 0, 1, 2}, {"98300 mono"}},
      {"without a start", {2, 1, 1, 2}, {}},
      {"interrupted", {0xFFFFFFFF, 0, 2, 1, 2}, {}},
  };
  for (const auto& one : cases) {
    PlugTuner(41);
    auto told = ComPtr<ToldFilter>::Adopt(new ToldFilter(card->CaptureFilter().Get(), 0x6E));
    ASSERT_EQ(ZELK_HWInit(told.Get(), card->FriendlyName().c_str(), card->TunerFilter().Get(), 0),
              S_OK);
    ZELK_FMInit();
    told->answers = one.readings;
    const auto before = host::SleptMilliseconds();
    EXPECT_EQ(Found(98200, 98600), one.found) << one.name;
    const auto probes = std::count_if(scanEvents.begin(), scanEvents.end(),
                                      [](const auto& event) { return event.starts_with("1004"); });
    // Each probe tunes twice, for 135 ms, and waits twice for the card to settle. The audio mode is
    // set around the scan, which tunes as well.
    EXPECT_EQ(host::SleptMilliseconds() - before, probes * (2u * 135 + 2 * 80) + 2 * 135);
    told.Reset();
  }
  EXPECT_THAT(TakeLog("TDA8275.log"), Contains("nFreq =  98350 "));
}

TEST_F(FmScan, LockStatusTakesASecondLook) {
  const Case<Bytes> cases[] = {
      {"second look confirms", {4, 0x13, 1, 3, 4}, {"98050 stereo"}},
      {"mono", {4, 0x03, 0, 4, 4}, {"98050 mono"}},
      {"second look denies", {4, 0x13, 1, 2, 4}, {}},
      {"last of several", {0x13, 0x12, 0x02, 0, 7, 4}, {"98100 mono"}},
      {"jump over the middle", {3, 4, 1, 4}, {}},
      {"never inside", {1, 0, 4, 0, 4}, {}},
  };
  for (const auto& one : cases) {
    PlugTold(1, {}, one.readings);
    EXPECT_EQ(Found(98000, 98400), one.found) << one.name;
    PlugToldQuillon(one.readings);
    EXPECT_EQ(Found(98000, 98400), one.found) << one.name << " on an MPEG-encoder card";
  }
  // The second look tunes the candidate with the other control word.
  PlugTold(1, {}, {0x13, 1, 4, 4});
  TakeTrace();
  Found(98000, 98100);
  EXPECT_THAT(TakeWrites("C2"), ElementsAre("07 DE 88 A5", "08 7E 88 A5", "08 7F 88 A5",
                                            "08 7E 88 A4", "08 7E 88 A5"));
  // An MPEG-encoder card's driver is just told the candidate again.
  PlugToldQuillon({0x13, 1, 4, 4});
  TakeTrace();
  Found(98000, 98100);
  EXPECT_THAT(TakeTrace(), Contains(StartsWith("tuner set TUNER.4 frequency=98000000")).Times(2));
}

TEST_F(FmScan, DiagnosticLines) {
  PlugTold(15, kStation, {0x14});
  std::ofstream("FMAutoScan.log") << "an earlier scan";
  Found(98000, 98200);
  EXPECT_THAT(TakeLog("FMAutoScan.log"),
              ElementsAre("Freq=98000    AFC= 3 3 2   Value= 8   StatusPL=14",
                          "Freq=98050    AFC= D D E   Value=-5   StatusPL=14   Lock=98050   "
                          "AudioMode=Stereo",
                          "Freq=98150    AFC= 7"));
  PlugTold(1, {}, {4, 0x03, 0, 4, 4});
  Found(98000, 98150);
  EXPECT_THAT(TakeLog("FMAutoScan.log"),
              ElementsAre("Freq=98000    AFC= 4", "Freq=98050    AFC= 3",
                          "Freq=98100    AFC= 0   Lock=98050   AudioMode=Mono"));
  PlugFm({.boardConfig = 0xE3});
  card->FitChip(0xC0, &tuner);
  tuner.answers = {Receiver(10, true, 9), Receiver(-5, false, 12)};
  Found(98000, 98100);
  EXPECT_THAT(TakeLog("FMAutoScan.log"),
              ElementsAre("Freq= 98000  PLL=0x12  AFC= 10  Level= 9  ST=1",
                          "Freq= 98050  PLL=0x12  AFC= -5  Level=12  ST=0   Lock=98050   "
                          "AudioMode=Mono"));
  PlugFm({.tunerType = 40});
  Found(98000, 98050);
  EXPECT_THAT(TakeLog("FMAutoScan.log"), ElementsAre("nStatusPLL: 2 \n"));
  EXPECT_THAT(TakeLog("TDA8275.log"), ElementsAre("nFreq =  98000 ", "nStatusPLL: 2 \n"));
}

TEST_F(FmScan, SeekUpEndsWithTheFirstStation) {
  PlugTold(15, {7, 3, 3, 2, 13, 13, 14, 7}, {0x04});
  EXPECT_EQ(ZELK_FMAllFreqScan(RecordScanEvent, ZELK_SCAN_START, 1, 98000, 0, 0), S_OK);
  EXPECT_THAT(scanEvents,
              ElementsAre("1001 0", "1004 98150", "1004 98200", "1003 98200 1", "1005 0"));
  // The station's own line is not written.
  EXPECT_EQ(TakeLog("FMAutoScan.log").size(), 2u);
}

TEST_F(FmScan, SeekDownThatFindsNothingWrapsBelowZero) {
  PlugFm({.tunerType = 1});
  EXPECT_EQ(ZELK_FMAllFreqScan(RecordScanEvent, ZELK_SCAN_START, 2, 88000, 0, 0), S_OK);
  EXPECT_EQ(scanEvents[1], "1004 87850");
  // The wrapped frequency lies above the band and ends the seek.
  EXPECT_EQ(scanEvents[scanEvents.size() - 2], "1004 4294967246");
  EXPECT_EQ(scanEvents.back(), "1005 0");
  EXPECT_THAT(scanEvents, ::testing::Not(Contains(StartsWith("1002"))));
}

TEST_F(FmScan, BandAndProgress) {
  PlugFm({.tunerType = 1});
  Found(0, 12345);
  // The card's own band, 87500 to 108000: (87550 - 87500) * 100 / 20500 = 0.2.
  EXPECT_EQ(Strings(scanEvents.begin(), scanEvents.begin() + 3),
            (Strings{"1001 0", "1002 0", "1004 87550"}));
  EXPECT_EQ(Strings(scanEvents.end() - 3, scanEvents.end()),
            (Strings{"1002 100", "1004 108000", "1005 0"}));
  EXPECT_EQ(scanEvents.size(), 2u + 2 * 410);
}

// The progress at the first probe, 50 kHz above the lower limit.
TEST_F(FmScan, ProgressIsTruncatedTowardZero) {
  PlugFm({.tunerType = 1});
  for (const auto& [low, high, percent] : {std::tuple{98000u, 99040u, "1002 4"},
                                           {98000u, 98045u, "1002 111"},
                                           // No width: covered at once.
                                           {98000u, 98000u, "1002 100"},
                                           // Ends exchanged: negative.
                                           {98000u, 96960u, "1002 4294967292"}}) {
    Found(low, high);
    EXPECT_EQ(scanEvents[1], percent) << low << "-" << high;
  }
}

TEST_F(FmScan, StopsAfter99Stations) {
  Bytes statuses;
  for (int i = 0; i < 120; ++i) statuses.insert(statuses.end(), {3, 1, 4});
  PlugTold(1, {}, statuses);
  EXPECT_EQ(Found(87500, 108000).size(), 99u);
}

TEST_F(FmScan, AudioModeIsStereoMeanwhile) {
  PlugFm({.tunerType = 1});
  ZELK_FMSetFreq(98000, nullptr);
  ZELK_FMSetAudioMode(0);
  TakeTrace();
  Found(98000, 98050);
  EXPECT_THAT(TakeWrites("C2"), ElementsAre("08 7E 88 A5", "08 7E 88 A5", "08 7E 88 A7"));
}

TEST_F(FmScan, CommandsAndRefusals) {
  PlugFm({.tunerType = 1});
  EXPECT_EQ(ZELK_FMAllFreqScan(RecordScanEvent, ZELK_SCAN_STOP, 0, 0, 0, 0), S_OK);
  EXPECT_EQ(ZELK_FMAllFreqScan(RecordScanEvent, 7, 0, 0, 0, 0), S_OK);
  EXPECT_THAT(scanEvents, ElementsAre("1005 0", "1005 0"));
  scanEvents.clear();
  // While one runs: a start is refused without a word, the TV scan's with E_FAIL, and either stop
  // stops both.
  int positions = 0;
  atScanEvent = [&](std::uint32_t event, std::uint32_t) {
    if (event != ZELK_EVENT_POSITION) return;
    const auto before = scanEvents.size();
    EXPECT_EQ(ZELK_FMAllFreqScan(ActOnScanEvent, ZELK_SCAN_START, 0, 0, 0, 0), S_OK);
    EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), E_FAIL);
    EXPECT_EQ(scanEvents.size(), before);
    if (++positions == 2) {
      EXPECT_EQ(ZELK_AllFreqScan(nullptr, ZELK_SCAN_STOP), S_OK);
    }
  };
  EXPECT_EQ(ZELK_FMAllFreqScan(ActOnScanEvent, ZELK_SCAN_START, 0, 0, 88000, 89000), S_OK);
  // Stopped at the end of the second probe.
  EXPECT_THAT(scanEvents,
              ElementsAre("1001 0", "1002 5", "1004 88050", "1002 10", "1004 88100", "1005 0"));
  EXPECT_EQ(ZELK_FMAllFreqScan(nullptr, ZELK_SCAN_START, 0, 0, 88000, 88100), S_OK);
}

// Its callback is the outer scan's from then on, which has none here.
TEST_F(FmScan, NestedScanTakesTheCallbackOver) {
  PlugFm({.tunerType = 1});
  atScanEvent = [](std::uint32_t, std::uint32_t) {
    EXPECT_EQ(ZELK_FMAllFreqScan(nullptr, 7, 0, 0, 107900, 108000), S_OK);
  };
  EXPECT_EQ(ZELK_FMAllFreqScan(ActOnScanEvent, ZELK_SCAN_START, 0, 0, 88000, 89000), S_OK);
  EXPECT_THAT(scanEvents, ElementsAre("1001 0"));
}

}  // namespace
}  // namespace zelk::test
