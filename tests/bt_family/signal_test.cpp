// Signal presence on every kind of module, reading by reading, with a chip on the bus that says
// what it is told.
#include "tests/bt_family/noted_card.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

class BtSignal : public NotedCardTest {
 protected:
  Reading Ask(NotedChip& chip, std::deque<std::uint8_t> answers, bool withOffset = true) {
    chip.Tell(std::move(answers));
    return fm ? AskSignal(ZELK_FMIsSignalPresent, withOffset)
              : AskSignal(ZELK_IsSignalPresent, withOffset);
  }
  void PlugNoted(const CardSetUp& wanted, std::uint32_t type, bool forFm) {
    fm = forFm;
    forFm ? PlugFm(wanted, {.tunerType = type}) : PlugTv(wanted, {.tunerType = type});
    FitNotedChips();
  }
  bool fm = false;
};

// Offset and strength of the three-bit reading are the same in television and FM.
TEST_F(BtSignal, PllTuner) {
  for (const CardSetUp& wanted : kSetUps) {
    SCOPED_TRACE(wanted.name);
    PlugNoted(wanted, 1, false);
    for (std::uint8_t code = 0; code < 8; ++code) {
      EXPECT_EQ(Ask(*pll, {static_cast<std::uint8_t>(0xC8 | code)}), kPllReadings[code]) << +code;
      EXPECT_EQ(Ask(*pll, {code}, false).strength, code);
    }
    PlugNoted(wanted, 1, true);
    for (const std::uint32_t status : {0x52u, 0xFAu, 0x12u, 0x42u, 0x53u, 0x56u, 0x50u}) {
      Reading reading = kPllReadings[status & 7];
      reading.present = status == 0x52 || status == 0xFA;
      EXPECT_EQ(Ask(*pll, {static_cast<std::uint8_t>(status)}), reading) << std::hex << status;
    }
    EXPECT_EQ(Ask(*pll, {0x53}, false).strength, 3u);
  }
}

TEST_F(BtSignal, Demodulator) {
  const auto expectAll = [&](auto isPresent) {
    for (std::uint8_t code = 0; code < 16; ++code) {
      const auto status = static_cast<std::uint8_t>(0xE1 | code << 1);
      Reading expected = DemodulatorReading(code, isPresent(code));
      // In television one step beside the middle is full strength on these cards.
      if (!fm && (code == 1 || code == 14)) expected.strength = 5;
      EXPECT_EQ(Ask(*demodulator, {status}), expected);
      EXPECT_EQ(Ask(*demodulator, {status}, false),
                (Reading{S_OK, expected.present, code, kUntouched}));
    }
  };
  for (const CardSetUp& wanted : kSetUps) {
    for (const std::uint32_t type : {12u, 13u, 14u, 15u, 20u, 21u}) {
      SCOPED_TRACE(std::string(wanted.name) + " tuner type " + std::to_string(type));
      PlugNoted(wanted, type, false);
      expectAll([](std::uint8_t code) { return code <= 2 || code >= 13; });
      if (type % 2 == 0) continue;
      PlugNoted(wanted, type, true);
      expectAll([](std::uint8_t code) { return code == 0 || code == 15; });
    }
  }
}

TEST_F(BtSignal, SiliconTuner) {
  for (const CardSetUp& wanted : {kBt878, kBt878Tuner, kBt878Io}) {
    SCOPED_TRACE(wanted.name);
    PlugNoted(wanted, 40, false);
    EXPECT_EQ(Ask(*silicon, {0x80}), (Reading{S_OK, 1, 64, 0.0}));
    EXPECT_EQ(TakeNotes(), std::vector<std::string>{"96: 1B"});
    EXPECT_EQ(Ask(*silicon, {0x90}), (Reading{S_OK, 1, 48, 16 * -13.2}));
    EXPECT_EQ(Ask(*silicon, {0x91}), (Reading{S_OK, 0, 47, 17 * -13.2}));
    EXPECT_EQ(Ask(*silicon, {0xF0}), (Reading{S_OK, 1, 48, 16 * 13.2}));
    // No lock at first: the second reading counts, 80 ms later.
    EXPECT_EQ(Ask(*silicon, {0x20, 0x81}), (Reading{S_OK, 1, 63, -13.2}));
    EXPECT_EQ(Ask(*silicon, {0x80, 0x20}), (Reading{S_OK, 1, 64, 0.0}));
    EXPECT_EQ(Ask(*silicon, {0x20, 0x7B}), (Reading{S_OK, 0, 59, 5 * 13.2}));
    // Just below the carrier three readings count without a lock.
    EXPECT_EQ(Ask(*silicon, {0x20, 0x7C}).present, 1u);
    EXPECT_EQ(Ask(*silicon, {0x20, 0x7E}).present, 1u);
    EXPECT_EQ(Ask(*silicon, {0x20, 0x7F}).present, 0u);
  }
}

// The byte of a read that fails is taken for what it says, and the failure is the result; only a
// PLL in FM says nothing then, and a read that never began says that there is no carrier.
TEST_F(BtSignal, FailedReads) {
  struct Case {
    CardSetUp setUp;
    std::uint32_t type;
    bool forFm;
    const char* refused;  // the PLL and the demodulator would answer 0x53, the TDA8290 0x90
    Reading expected;
  };
  constexpr double kNothing = kUntouched;
  const Case cases[] = {
      {kBt878, 1, false, "i2c stop", {kRefused, 1, 3, 62.5}},
      {kBt878, 13, false, "i2c stop", {kRefused, 0, 0, 162.5}},
      {kBt878, 40, false, "i2c stop", {kRefused, 1, 48, 16 * -13.2}},
      {kBt878, 1, true, "i2c stop", {kRefused, kUntouched, kUntouched, kNothing}},
      {kBt878, 13, true, "i2c read 86", {kRefused, 1, 5, -12.5}},
      {kBt878, 21, true, "i2c read 86", {kRefused, 1, 5, -12.5}},
      {kCx2388x, 1, false, "i2c read C0", {E_FAIL, 0, 0, -125.0}},
      {kCx2388x, 13, false, "i2c read 86", {E_FAIL, 1, 5, -12.5}},
      {kCx2388x, 24, false, "i2c read 86", {E_FAIL, 0, 0, kNothing}},
      {kCx2388x, 1, true, "i2c read C0", {E_FAIL, kUntouched, kUntouched, kNothing}},
      {kCx2388x, 15, true, "i2c read 86", {E_FAIL, 1, 5, -12.5}},
      {kCx2388x, 1, false, "i2c select C0", {E_FAIL, 0, 0, kNothing}},
      {kCx2388x, 13, false, "i2c select 86", {E_FAIL, 0, 0, kNothing}},
      {kCx2388x, 13, true, "i2c select 86", {E_FAIL, 0, 0, kNothing}},
      {kCx2388x, 1, true, "i2c select C0", {E_FAIL, kUntouched, kUntouched, kNothing}},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(std::string(one.setUp.name) + " tuner type " + std::to_string(one.type) +
                 (one.forFm ? " in FM, " : " in TV, ") + one.refused);
    PlugNoted(one.setUp, one.type, one.forFm);
    for (NotedChip* const chip : {&*pll, &*demodulator}) chip->Tell({0x53});
    silicon->Tell({0x90});
    card->Refuse(one.refused, kRefused);
    EXPECT_EQ(AskSignal(one.forFm ? ZELK_FMIsSignalPresent : ZELK_IsSignalPresent), one.expected);
  }
}

TEST_F(BtSignal, Waits) {
  const auto slept = [&](auto query) {
    Slept();
    query(nullptr, nullptr, nullptr);
    return Slept();
  };
  const auto tune = [](auto...) { ZELK_SetFreq(175250, nullptr); };
  // Slices of 5 ms: 16 ms take 20, 32 take 35.
  for (const auto& [wanted, tuning, fmWait] :
       {std::tuple(kBt878, 4u * 20, 80u), {kCx2388x, 20u, 35u}}) {
    PlugTv(wanted, {});
    EXPECT_EQ(slept(ZELK_IsSignalPresent), 80u + 20);
    EXPECT_EQ(slept(tune), tuning);
    PlugFm(wanted, {});
    EXPECT_EQ(slept(ZELK_FMIsSignalPresent), fmWait + 20);
  }
}

}  // namespace
}  // namespace zelk::test
