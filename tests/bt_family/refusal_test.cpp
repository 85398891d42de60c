// Operations that come too early or in the wrong mode: every one of them, on both families.
#include "tests/bt_family/noted_card.h"
#include "tests/support/operations.h"

namespace zelk::test {
namespace {

class BtRefusal : public NotedCardTest {
 protected:
  template <class Device>
  void Expect(const CardSetUp& wanted, const char* tag) {
    Plug(wanted, {.tunerType = 1});
    const auto line = [&](const Operation<Device>& one, const char* refusal, bool needsDriver) {
      // Only the locks say on a Bt878 what they miss.
      if (!wanted.cx2388x && !needsDriver) return Strings{};
      return Strings{std::string(tag) + " " + one.name + refusal};
    };
    Device device;
    for (const Operation<Device>& one : kOperations<Device>) {
      EXPECT_EQ(one.call(device), E_FAIL) << one.name;
      EXPECT_EQ(TakeLog(), line(one, one.tooEarly, one.needs == Needs::AnyMode));
    }

    const auto capture = card->CaptureFilter();
    ASSERT_EQ(device.HWInit(capture.Get(), card->FriendlyName().c_str(), nullptr), S_OK);
    TakeLog();
    const auto expectWrongMode = [&](Needs given) {
      for (const Operation<Device>& one : kOperations<Device>) {
        if (one.needs == Needs::Nothing || one.needs == given) continue;
        if (one.needs == Needs::AnyMode && given != Needs::Nothing) continue;
        EXPECT_EQ(one.call(device), VFW_E_WRONG_STATE) << one.name;
        const char* const refusal = one.needs == Needs::TV   ? "(): Current mode not TV"
                                    : one.needs == Needs::FM ? "(): Current mode not FM"
                                                             : "(): Current mode not TV or FM";
        EXPECT_EQ(TakeLog(), line(one, refusal, one.needs == Needs::AnyMode));
      }
    };
    expectWrongMode(Needs::Nothing);
    device.InitialTV();
    expectWrongMode(Needs::TV);
    device.InitialFM(1);
    expectWrongMode(Needs::FM);
    EXPECT_EQ(device.SetHWLock(2, 1), E_FAIL);
    EXPECT_EQ(device.GetHWLock(2, &word), E_FAIL);
  }
};

TEST_F(BtRefusal, Bt878) { Expect<Bt878Device>(kBt878, "BT878"); }
TEST_F(BtRefusal, Cx2388x) { Expect<Bt88xDevice>(kCx2388x, "BT88X"); }

TEST_F(BtRefusal, LocksNeedADriver) {
  for (const CardSetUp& wanted : {kBt878Io, kCx2388xIo}) {
    PlugTv(wanted, {});
    EXPECT_EQ(ZELK_SetHWLock(0, 1), E_FAIL);
    EXPECT_EQ(ZELK_GetHWLock(5, &word), E_FAIL);
    const std::string tag = wanted.cx2388x ? "BT88X" : "BT878";
    EXPECT_EQ(TakeLog(), (Strings{tag + " SetHWLock() no video caprture filter",
                                  tag + " GetHWLock() no video caprture filter"}));
  }
}

// A sequence is refused before anything of it goes out.
TEST_F(BtRefusal, SequencesHave64BytesAtMost) {
  const std::uint8_t bytes[65] = {};
  for (const CardSetUp& wanted : {kBt878, kBt878Io, kCx2388x, kCx2388xIo}) {
    PlugNoted(wanted);
    EXPECT_EQ(Device().I2CWriteSequence(0x86, bytes, 65), E_FAIL);
    EXPECT_TRUE(TakeNotes().empty());
    EXPECT_EQ(Device().I2CWriteSequence(0x86, bytes, 64), S_OK);
    EXPECT_EQ(TakeNotes().at(0).size(), 3u + 64 * 3);
  }
}

}  // namespace
}  // namespace zelk::test
