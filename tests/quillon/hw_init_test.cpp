// Discovery: names, devices, the graph and what the board is found to be.
#include "platform/com_object.h"
#include "tests/quillon/quillon_test.h"
#include "virtual_cards/cards/registration.h"

namespace zelk::test {
namespace {

using ::testing::MatchesRegex;
using virtual_cards::Ql2Options;

const std::string kNotReady = "Quillon SetHWLock(): Hardware not initial";
const std::string kBuildFails = "Quillon: Build graph fail";
// The log behind the two settings of lock 0.
const Lines kLocked(2, kNotReady);
const Lines kLockedThenFailed = {kNotReady, kNotReady, kBuildFails};

// The names of the running object table's entries.
std::vector<std::wstring> RunningObjects(ComPtr<IUnknown>* first = nullptr) {
  std::vector<std::wstring> names;
  ComPtr<IRunningObjectTable> table;
  ComPtr<IEnumMoniker> monikers;
  EXPECT_EQ(GetRunningObjectTable(0, table.Receive()), S_OK);
  EXPECT_EQ(table->EnumRunning(monikers.Receive()), S_OK);
  if (!monikers) return names;
  while (const ComPtr<IMoniker> moniker = NextOf<IMoniker>(*monikers.Get())) {
    LPOLESTR name = nullptr;
    EXPECT_EQ(moniker->GetDisplayName(nullptr, nullptr, &name), S_OK);
    names.emplace_back(name);
    CoTaskMemFree(name);
    if (first && !*first) {
      EXPECT_EQ(table->GetObject(moniker.Get(), first->Receive()), S_OK);
    }
  }
  return names;
}

class QuillonHwInit : public QuillonTest {
 protected:
  ZELK_HWInfo InfoOf(const Ql2Options& options) {
    Plug(options);
    EXPECT_EQ(Init(), S_OK);
    return Info();
  }
};

struct Tuner {
  std::uint32_t code, type, low, high, fm;
  bool receiver = false;  // FM by a chip of its own
};
constexpr Tuner kTuners[] = {{10, 14, 48250, 863250, 0},       {11, 15, 48250, 863250, 1},
                             {16, 12, 50250, 900250, 0},       {17, 13, 50250, 900250, 1},
                             {24, 22, 45250, 900250, 0},       {25, 23, 50250, 900250, 1},
                             {26, 20, 45000, 900250, 0},       {48, 50, 90250, 772250, 0},
                             {49, 50, 90250, 772250, 1, true}, {50, 51, 45250, 863250, 0},
                             {51, 51, 45250, 863250, 1, true}, {52, 49, 50250, 863250, 0},
                             {53, 49, 50250, 863250, 1, true}};

// Only the code's low byte counts.
TEST_F(QuillonHwInit, EveryTunerCode) {
  for (std::uint32_t code = 0; code <= 0x100 + 10; ++code) {
    SCOPED_TRACE("tuner code " + std::to_string(code));
    Tuner expected = {code, 21, 45000, 900250, 1};
    for (const Tuner& row : kTuners) {
      if (row.code == (code & 0xFF)) expected = row;
    }
    EXPECT_THAT(
        Words(InfoOf({.tunerCode = code, .friendlyName = kName})),
        ElementsAre(expected.fm, 0, 0, 87500, 108000, 1, 1, expected.low, expected.high, 1));
    EXPECT_EQ(TunerType(), expected.type);
    EXPECT_EQ(ZELK_GetTunerType(nullptr), S_OK);
    ZELK_FMInit();
    EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr) == 1, expected.receiver);
  }
}

TEST_F(QuillonHwInit, ABoardThatDoesNotTellItsTuner) {
  InfoOf({.tunerInfo = false});
  EXPECT_EQ(TunerType(), 21u);
  // One that offers to tell and then fails.
  Plug({.tunerCode = 10});
  card->Refuse("capture get QL2_BOARD.112", E_FAIL);
  EXPECT_EQ(Init(), S_OK);
  EXPECT_EQ(TunerType(), 21u);
}

TEST_F(QuillonHwInit, TheUsersCountryDecidesOnTheFmBand) {
  for (const auto& [country, code, low, high] :
       {std::tuple("7", 11u, 62000u, 108000u),
        {"421", 11, 66000, 108000},
        {"81", 11, 76000, 91000},
        {"49", 11, 87500, 108000},
        // The Japanese board without a Japanese user, and the other way round.
        {"7", 49, 62000, 108000},
        {"81", 51, 76000, 91000}}) {
    UserCountry(country);
    const ZELK_HWInfo info = InfoOf({.tunerCode = code});
    EXPECT_EQ(info.FmLowKHz, low) << country;
    EXPECT_EQ(info.FmHighKHz, high) << country;
  }
}

TEST_F(QuillonHwInit, Names) {
  const std::string stem = "Korvane Telmora Video Capture (";
  for (const char* rest :
       {"QL2)", "P260)", "P260, Philips FM1286MK2 Tuner)", "P260, Philips FI1236MK3 Tuner)",
        "P260, Philips FM1216MK3 Tuner)", "P260, Philips FI1216MK3 Tuner)",
        "P260, Philips FQ1236MK5 Tuner)", "P260, Philips FQ1216MK5 Tuner)",
        "P260, Philips FM1216MK5 Tuner)", "P260, Philips FM1236MK5 Tuner)", "P260, Japan)",
        "P260 with FM, Japan)", "P260, Europe)", "P260 with FM, Europe)", "P260, NTSC)",
        "P260 with FM, NTSC)"}) {
    const std::string name = stem + rest;
    Plug({.friendlyName = name});
    EXPECT_EQ(Init(), S_OK) << name;
    EXPECT_EQ(TakeLog(), kLocked) << name;
  }
  for (const char* name : {"Korvane Telmora Video Capture (ql2)", "", "Korvane Telmora"}) {
    Plug({.friendlyName = name});
    EXPECT_EQ(Init(), E_FAIL) << name;
    EXPECT_THAT(TakeLog(),
                ElementsAre("Quillon: Device is not Quillon series product from Korvane"));
  }
  EXPECT_EQ(ZELK_HWInit(nullptr, kName, nullptr, 0), E_FAIL);
  EXPECT_EQ(ZELK_HWInit(card->CaptureFilter().Get(), nullptr, nullptr, 0), E_FAIL);
  EXPECT_EQ(TakeLog(), Lines(2, "Quillon: get video capture filter fail"));
}

// A card without a TV-audio device is a whole card.
TEST_F(QuillonHwInit, MissingDevices) {
  for (const auto& [options, log] :
       {std::pair(Ql2Options{.captureDevice = false, .friendlyName = kName}, Lines{kBuildFails}),
        {{.tunerDevice = false, .friendlyName = kName}, kLockedThenFailed},
        {{.encoderDevice = false, .friendlyName = kName}, kLockedThenFailed},
        {{.tvAudio = false, .friendlyName = kName}, kLocked}}) {
    Plug(options);
    EXPECT_EQ(Init(), options.tvAudio ? E_FAIL : S_OK);
    EXPECT_EQ(TakeLog(), log);
  }
}

// Stands in the place of a class that cannot be created.
class NoFactory final : public ComObject<IUnknown> {};

TEST_F(QuillonHwInit, SystemWithoutFilterGraphs) {
  for (const CLSID& graph : {kClsidFilterGraph, kClsidCaptureGraphBuilder2}) {
    Plug({.friendlyName = kName});
    TakeLog();
    {
      const virtual_cards::ClassRegistration none(graph,
                                                  ComPtr<IUnknown>::Adopt(new NoFactory).Get());
      EXPECT_EQ(Init(), E_FAIL);
      EXPECT_THAT(TakeLog(), ElementsAre("Quillon: Get FGM fail"));
    }
    EXPECT_EQ(Init(), S_OK);
  }
}

TEST_F(QuillonHwInit, EachRequestRefused) {
  const std::tuple<const char*, HRESULT, Lines> cases[] = {
      {"capture query IBaseFilter", E_FAIL, {kBuildFails}},
      {"capture query IKsPropertySet", E_FAIL, {kBuildFails}},
      {"capture query-supported QL2_BOARD.106", S_OK, kLocked},
      {"capture get QL2_BOARD.106", S_OK, kLocked},
      {"tuner query IBaseFilter", E_FAIL, kLockedThenFailed},
      {"encoder query IBaseFilter", E_FAIL, kLockedThenFailed},
      {"tv-audio query IBaseFilter", S_OK, kLocked},
      {"encoder query IKsPropertySet", E_FAIL, kLocked},
      {"tuner query IKsPropertySet", E_FAIL, kLocked},
      {"capture query-supported QL2_BOARD.111", S_OK, kLocked},
      {"capture set QL2_BOARD.111", S_OK, kLocked},
      {"capture query-supported QL2_BOARD.112", S_OK, kLocked},
      {"capture get QL2_BOARD.112", S_OK, kLocked},
  };
  for (const auto& [request, result, log] : cases) {
    SCOPED_TRACE(request);
    Plug({.friendlyName = kName});
    card->Refuse(request, kRefused);
    TakeLog();
    EXPECT_EQ(Init(), result);
    EXPECT_EQ(TakeLog(), log);
    EXPECT_TRUE(result == S_OK || card->LiveReferences() == 0);
  }
}

// Everything in its order: the graph's devices, the reading of lock 0, the board's own set-up.
TEST_F(QuillonHwInit, WhatTheCardHears) {
  Plug({.tunerCode = 11, .friendlyName = kName});
  TakeTrace();
  ASSERT_EQ(Init(), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("capture query IBaseFilter", "capture query IKsPropertySet",
                                       "capture query-supported QL2_BOARD.106 -> 00000003",
                                       "capture get QL2_BOARD.106 -> 00", "tuner query IBaseFilter",
                                       "encoder query IBaseFilter", "tv-audio query IBaseFilter",
                                       "capture query IKsPropertySet",
                                       "encoder query IKsPropertySet", "tuner query IKsPropertySet",
                                       "capture query-supported QL2_BOARD.111 -> 00000002",
                                       "capture set QL2_BOARD.111 01",
                                       "capture query-supported QL2_BOARD.112 -> 00000001",
                                       "capture get QL2_BOARD.112 -> 00000000 0000000B"));
  EXPECT_EQ(card->Lock(0), 0u);
}

TEST_F(QuillonHwInit, TheGraphIsShownOnRequestAlone) {
  Plug({.friendlyName = kName});
  ASSERT_EQ(Init(), S_OK);
  EXPECT_THAT(RunningObjects(), IsEmpty());

  ShowGraph();
  ASSERT_EQ(Init(), S_OK);
  {
    ComPtr<IUnknown> object;
    const auto entries = RunningObjects(&object);
    ASSERT_EQ(entries.size(), 1u);
    const std::string name(entries[0].begin(), entries[0].end());
    EXPECT_THAT(name, MatchesRegex("!FilterGraph \\w\\w\\w\\w\\w\\w\\w\\w pid "
                                   "\\w\\w\\w\\w\\w\\w\\w\\w"));
    // What a graph editor would find there: the four devices by name.
    ComPtr<IGraphBuilder> graph;
    ASSERT_EQ(Query(object.Get(), graph), S_OK);
    ComPtr<IEnumFilters> filters;
    ASSERT_EQ(graph->EnumFilters(filters.Receive()), S_OK);
    std::vector<std::wstring> names;
    while (const ComPtr<IBaseFilter> filter = NextOf<IBaseFilter>(*filters.Get())) {
      FILTER_INFO info = {};
      filter->QueryFilterInfo(&info);
      const auto owner = ComPtr<IFilterGraph>::Adopt(info.pGraph);
      names.emplace_back(info.achName);
    }
    EXPECT_THAT(names, ::testing::UnorderedElementsAre(
                           L"Korvane Telmora Video Capture (QL2)", L"Korvane Telmora Tuner (QL2)",
                           L"Korvane Telmora Encoder (QL2)", ::testing::_));
  }
  // Another initialisation is another entry, in place of the first.
  ASSERT_EQ(Init(), S_OK);
  EXPECT_EQ(RunningObjects().size(), 1u);
  ZELK_Free();
  EXPECT_THAT(RunningObjects(), IsEmpty());
  EXPECT_EQ(card->LiveReferences(), 0);
}

}  // namespace
}  // namespace zelk::test
