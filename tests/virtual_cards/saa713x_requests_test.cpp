// The card as software: trace lines, refusals, malformed requests, references.
#include "plugged_card.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr GUID kUnknownSet = {0x12345678, 0x1234, 0x5678, {1, 2, 3, 4, 5, 6, 7, 8}};

using Saa713xRequests = PluggedCardTest;

// The lines that the driver library's own traces do not have.
TEST_F(Saa713xRequests, TraceOfRequests) {
  Plug({});
  Interfaces on(*card_);
  Listen();
  on.Read(0x96);
  on.SetOwn(0x74, 5);
  ULONG word = 0;
  BYTE stereo = 9;
  GetProperty(on.capture.Get(), kOwnSet, 0x6F, stereo);
  on.capture->QuerySupported(kOwnSet, 0x74, &word);
  SetProperty(on.capture.Get(), kUnknownSet, 1, word);
  EXPECT_THAT(
      trace_.Take(),
      ElementsAre("i2c select 96", "i2c read 96 -> nak",
                  "capture set ZELK_SAA.74 00000005 -> 80070490", "capture get ZELK_SAA.6F -> 00",
                  "capture query-supported ZELK_SAA.74 -> 00000001",
                  "capture set {12345678-1234-5678-0102-030405060708}.1 00000001 -> 80070492"));
}

TEST_F(Saa713xRequests, RefusedRequestsDoNotReachTheHardware) {
  Plug({});
  Interfaces on(*card_);
  Listen();
  card_->Refuse("i2c write C2", E_UNEXPECTED);
  card_->Refuse("gpio 27", E_OUTOFMEMORY);
  card_->Refuse("capture set ZELK_SAA.71", E_FAIL);
  EXPECT_EQ(on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90}), E_UNEXPECTED);
  EXPECT_EQ(on.gpio->SetLine(27, 0), E_OUTOFMEMORY);
  EXPECT_EQ(on.SetOwn(0x71, 7), E_FAIL);
  EXPECT_EQ(on.SetOwn(0x72, 8), S_OK);
  EXPECT_EQ(card_->TunedKHz(), 0);
  EXPECT_TRUE(card_->GpioOutput(27));
  EXPECT_EQ(card_->DriverProperty(0x71), 0u);
  EXPECT_EQ(card_->DriverProperty(0x72), 8u);
  EXPECT_THAT(trace_.Take(), ElementsAre("i2c select C2", "i2c write C2: 0D 62 CE 90 -> 8000FFFF",
                                         "gpio 27 := 0 -> 8007000E",
                                         "capture set ZELK_SAA.71 00000007 -> 80004005",
                                         "capture set ZELK_SAA.72 00000008"));
  card_->ClearRefusals();
  EXPECT_EQ(on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90}), S_OK);
  EXPECT_EQ(card_->TunedKHz(), 175225);
}

// The ways in which a transfer fails: by the bus's own status, by that status on order, and a write
// by its code too.
TEST_F(Saa713xRequests, FailedTransfers) {
  Plug({});
  Interfaces on(*card_);
  BYTE byte = 0x55;
  ULONG status = 0;
  card_->Refuse("i2c read A0", static_cast<HRESULT>(kVampBusFailed));
  for (const ULONG device : {0x96u, 0xA0u}) {
    on.i2c->SelectDevice(device);
    EXPECT_EQ(on.i2c->Read(&byte, 1, &status), S_OK);
    EXPECT_EQ(std::exchange(status, 0), kVampBusFailed);
  }
  on.i2c->SelectDevice(0x96);
  EXPECT_EQ(on.i2c->Write(&byte, 1, &status), E_FAIL);
  EXPECT_EQ(status, kVampBusFailed);
  EXPECT_EQ(byte, 0x55);
  EXPECT_EQ(on.i2c->Read(nullptr, 1, &status), E_POINTER);
  EXPECT_EQ(on.i2c->Read(&byte, 1, nullptr), E_POINTER);
}

TEST_F(Saa713xRequests, RefusedQueriesLeaveNothing) {
  Plug({});
  card_->Refuse("capture query IKsPropertySet", E_NOINTERFACE);
  void* object = &object;
  EXPECT_EQ(card_->CaptureFilter()->QueryInterface(IidOf<IKsPropertySet>(), &object),
            E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
}

TEST_F(Saa713xRequests, MalformedRequests) {
  Plug({});
  Interfaces on(*card_);
  constexpr HRESULT kNoId = E_PROP_ID_UNSUPPORTED, kNoSet = E_PROP_SET_UNSUPPORTED;
  ULONG words[16] = {};
  DWORD returned = 0, support = 99;
  // Set, property, both lengths, and the results of reading and writing.
  const std::tuple<GUID, DWORD, DWORD, DWORD, HRESULT, HRESULT> cases[] = {
      {kUnknownSet, 1, 4, 4, kNoSet, kNoSet},
      {kOwnSet, 0x64, 4, 4, kNoId, kNoId},
      {kOwnSet, 0x6D, 4, 4, S_OK, kNoId},
      {kOwnSet, 0x71, 4, 8, E_INVALIDARG, E_INVALIDARG},
      {kOwnSet, 0x71, 8, 4, E_INVALIDARG, E_INVALIDARG},
      {kOwnSet, 0x6F, 4, 4, E_INVALIDARG, kNoId},
      {kTuneSet, 3, 16, 16, kNoId, E_INVALIDARG},  // phase 0
      {kTuneSet, 3, 12, 12, kNoId, E_INVALIDARG},
      {kPropsetVideoDecoder, 1, 28, 28, E_INVALIDARG, E_INVALIDARG},
      {kPropsetVideoDecoder, 2, 32, 32, kNoId, kNoId},
      {kPropsetTuner, 4, 56, 56, kNoSet, kNoSet}};
  for (const bool traced : {false, true}) {
    if (traced) Listen();
    for (const auto& [set, id, instanceBytes, bytes, get, put] : cases) {
      returned = 99;
      EXPECT_EQ(on.capture->Get(set, id, words, instanceBytes, words, bytes, &returned), get) << id;
      EXPECT_EQ(returned, get == S_OK ? bytes : 99) << id;
      EXPECT_EQ(on.capture->Set(set, id, words, instanceBytes, words, bytes), put) << id;
    }
    EXPECT_EQ(on.capture->QuerySupported(kOwnSet, 0x64, &support), kNoId);
    EXPECT_EQ(support, 0u);
    EXPECT_EQ(on.capture->Set(kOwnSet, 0x71, nullptr, 4, nullptr, 4), E_POINTER);
    EXPECT_EQ(on.capture->Get(kOwnSet, 0x71, words, 4, words, 4, nullptr), E_POINTER);
    EXPECT_EQ(on.videoDecoder->get_HorizontalLocked(nullptr), E_POINTER);
    EXPECT_EQ(on.gpio->ReadLine(3, nullptr), E_POINTER);
    EXPECT_EQ(on.device->GetI2c(nullptr), E_POINTER);
    EXPECT_EQ(on.tuner->Set(kPropsetTuner, 4, words, 52, words, 52), E_INVALIDARG);
  }
  const auto audio = test::FindDevice<IAMTVAudio>(kCategoryTvAudio, L"SAA713x TV Audio");
  ASSERT_TRUE(audio);
  EXPECT_EQ(audio->put_TVAudioMode(7), E_INVALIDARG);
}

TEST_F(Saa713xRequests, ObjectsOutliveTheCard) {
  Plug({});
  Listen();
  Interfaces on(*card_);
  card_.reset();
  trace_.Take();
  EXPECT_NE(on.Read(0xC2), -1);
  EXPECT_THAT(trace_.Lines(), IsEmpty()) << "the listener may be gone";
  ComPtr<IVampService> service;
  EXPECT_EQ(test::Create(kClsidVampService, service), REGDB_E_CLASSNOTREG);
}

}  // namespace
}  // namespace zelk::virtual_cards
