// Which cards are accepted, what each refusal says, and that nothing is held after it.
#include "tests/bt_family/noted_card.h"

namespace zelk::test {
namespace {

class BtHwInit : public BtTest {
 protected:
  void ExpectRefused(const Strings& log) {
    TakeLog();
    EXPECT_EQ(Init(), E_FAIL);
    EXPECT_EQ(TakeLog(), log);
    EXPECT_EQ(card->LiveReferences(), 0);
    EXPECT_EQ(host::ModuleLoadCount(setUp.Library()), 0);
  }
};

TEST_F(BtHwInit, AcceptedNames) {
  const std::pair<CardSetUp, Strings> families[] = {
      {kBt878, {"Varnel Capture", "Telmora Capture", "Korvane, Telmora WDM Video Capture (878)"}},
      {kCx2388x,
       {"Korvane, Telmora N57/N68 Video Capture", "Varnel 2388x Video Capture",
        "Hollis INC. GX-DW7/PCI WDM Video Capture", "Hollis INC. GX-DW7/PCI Video Capture",
        "Korvane, Telmora WDM Video Capture (88x)", "Korvane Telmora Video Capture (QL2)"}}};
  for (const auto& [wanted, names] : families) {
    for (const std::string& name : names) {
      Plug(wanted, {.friendlyName = name});
      EXPECT_EQ(Init(), S_OK) << name;
      std::string other = name;
      other[0] = 'v';
      Plug(wanted, {.friendlyName = other});
      ExpectRefused({wanted.cx2388x ? "BT88X: Device is not BT88X series product from Korvane"
                                    : "BT878: Device is not BT878 series product from Korvane"});
    }
  }
}

TEST_F(BtHwInit, EachRequestRefused) {
  for (const CardSetUp& wanted : {kBt878Tuner, kCx2388xTuner}) {
    for (const auto& [request, log] :
         {std::pair("capture query IKsPropertySet",
                    "Get Video Capture IKsPropertySet interface fail"),
          {"tuner query IKsPropertySet", "Get Tuner IKsPropertySet interface fail"},
          {"i2c setup", wanted.cx2388x ? "Initial I2C HW Mode fail" : "Initial I2C fail"}}) {
      SCOPED_TRACE(log);
      Plug(wanted, {});
      card->Refuse(request, E_NOINTERFACE);
      ExpectRefused({std::string(wanted.cx2388x ? "BT88X: " : "BT878: ") + log});
      // The same card is accepted once the cause has gone.
      card->ClearRefusals();
      EXPECT_EQ(Init(), S_OK);
    }
  }
}

constexpr char kInitFails[] = "BT88X HWInit call g_pBT880_INIT_IO() function fail";
constexpr char kI2cFails[] = "BT88X HWInit call g_pBT880_I2CISINITOK() function fail";

TEST_F(BtHwInit, IoLibraries) {
  // Without a library on the machine.
  EXPECT_EQ(ZELK_HWInit(nullptr, "Telmora Capture", nullptr, 0), E_FAIL);
  EXPECT_THAT(CardFixture::TakeLog(kBt878.Log()), IsEmpty());
  EXPECT_THAT(CardFixture::TakeLog(kCx2388x.Log()), ElementsAre("BT88X load PioGate880.dll fail"));

  const std::tuple<CardSetUp, bool, Strings, Strings> cases[] = {
      {kBt878Io, true, {}, {"io INIT_IO -> 0", "io I2CISINITOK -> 0", "io FREE_IO"}},
      {kBt878Io, false, {}, {"io INIT_IO -> 1", "io I2CISINITOK -> 0", "io FREE_IO"}},
      {kCx2388xIo,
       true,
       {kInitFails, kI2cFails},
       {"io InitIO -> 0", "io I2CIsInitOK -> 0", "io FreeIO"}},
      {kCx2388xIo, false, {kI2cFails}, {"io InitIO -> 1", "io I2CIsInitOK -> 0", "io FreeIO"}}};
  for (const auto& [wanted, initFails, log, trace] : cases) {
    Plug(wanted, {.initFails = initFails, .i2cFails = true});
    TakeTrace();
    ExpectRefused(log);
    EXPECT_EQ(TakeTrace(), trace);
  }

  // A library is given back before it is unloaded, by ZELK_Free and by the next card.
  for (const CardSetUp& wanted : {kBt878Io, kCx2388xIo}) {
    Plug(wanted, {});
    EXPECT_EQ(Init(), S_OK);
    EXPECT_EQ(host::ModuleLoadCount(wanted.Library()), 1);
    EXPECT_EQ(Init(), S_OK);
    EXPECT_EQ(host::ModuleLoadCount(wanted.Library()), 1);
    TakeTrace();
    ZELK_Free();
    EXPECT_THAT(TakeTrace(), ElementsAre(wanted.cx2388x ? "io FreeIO" : "io FREE_IO"));
    EXPECT_EQ(host::ModuleLoadCount(wanted.Library()), 0);
  }
}

TEST_F(BtHwInit, EachMissingEntryPoint) {
  const char* const ofBt878[] = {"INIT_IO",     "FREE_IO",    "I2CISINITOK",  "I2CINITSWMODE",
                                 "I2CSWSTART",  "I2CSWWRITE", "I2CSWREAD",    "I2CSWSTOP",
                                 "READDECODER", "SETGPIEBIT", "GETGPDATABITS"};
  for (const std::string name : ofBt878) {
    SCOPED_TRACE(name);
    Plug(kBt878Io, {.tunerType = 15, .missingEntryPoints = {name}});
    const bool needed = name == "INIT_IO" || name == "I2CISINITOK";
    EXPECT_EQ(Init(), needed ? E_FAIL : S_OK);
    if (needed) {
      EXPECT_EQ(host::ModuleLoadCount("PioGate.dll"), 0);
      continue;
    }
    std::uint32_t locked = 77;
    EXPECT_EQ(Slot<Bt878Device>()->IsSignalPresent_DECODER(&locked, nullptr), S_OK);
    EXPECT_EQ(locked, 0u);
    EXPECT_EQ(ZELK_GetRemoteData(nullptr), name == "SETGPIEBIT" ? E_FAIL : S_OK);
    // Without a bus no chip acknowledges.
    const bool bus = name != "I2CINITSWMODE" && name != "I2CSWSTART" && name != "I2CSWWRITE";
    EXPECT_EQ(TunerType(), bus ? 15u : 4u);
  }
  const char* const ofCx2388x[] = {"InitIO",      "FreeIO",     "I2CIsInitOK",   "I2CInitSWMode",
                                   "I2CSWStart",  "I2CSWWrite", "I2CSWRead",     "I2CSWStop",
                                   "ReadDecoder", "SetGPIEBit", "GetGPDataBits", "SetGPIOPort",
                                   "GetGPData",   "SetGPData"};
  for (const std::string name : ofCx2388x) {
    SCOPED_TRACE(name);
    Plug(kCx2388xIo, {.missingEntryPoints = {name}});
    TakeTrace();
    // Whichever is missing, the other two or three are called.
    ExpectRefused(name == "InitIO" ? Strings{kI2cFails} : Strings{});
    Strings calls = {"io InitIO -> 1", "io I2CIsInitOK -> 1", "io FreeIO"};
    if (name == "InitIO") calls = {"io I2CIsInitOK -> 0", "io FreeIO"};
    std::erase_if(calls, [&](const std::string& call) { return call.starts_with("io " + name); });
    EXPECT_EQ(TakeTrace(), calls);
  }
}

}  // namespace
}  // namespace zelk::test
