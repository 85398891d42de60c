// The card as software: trace lines, refusals, malformed requests, references.
#include "plugged_card.h"

namespace zelk::virtual_cards {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Saa713xRequests : public PluggedCardTest {
 protected:
  void Listen() { card_->AttachTrace(&trace_); }

  RecordedTrace trace_;
};

TEST_F(Saa713xRequests, TraceOfTakingTheInterfaces) {
  Plug({.chipId = 0x7133});
  Listen();
  Interfaces on(*card_);
  ULONG word = 0;
  on.device->GetBoardConfig(&word);
  on.device->GetChipId(&word);
  on.decoder->GetStatus(&word);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("capture query IKsPropertySet", "capture query IAMAnalogVideoDecoder",
                          "tuner query IKsPropertySet", "tuner query IAMTVTuner", "vamp service",
                          "vamp device 0", "vamp query-device", "vamp i2c", "vamp gpio",
                          "vamp decoder", "vamp board-config -> 00000001",
                          "vamp chip-id -> 00007133", "vamp decoder-status -> 00000000"));
}

TEST_F(Saa713xRequests, TraceOfTheTvAudioDevice) {
  Plug({});
  Listen();
  ComPtr<ICreateDevEnum> enumerator;
  ComPtr<IEnumMoniker> monikers;
  ComPtr<IMoniker> moniker;
  ComPtr<IAMTVAudio> audio;
  ASSERT_EQ(CoCreateInstance(kClsidSystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER,
                             IidOf<ICreateDevEnum>(), enumerator.ReceiveVoid()),
            S_OK);
  ASSERT_EQ(enumerator->CreateClassEnumerator(kCategoryTvAudio, monikers.Receive(), 0), S_OK);
  ASSERT_EQ(monikers->Next(1, moniker.Receive(), nullptr), S_OK);
  ASSERT_EQ(moniker->BindToObject(nullptr, nullptr, IidOf<IAMTVAudio>(), audio.ReceiveVoid()),
            S_OK);
  EXPECT_EQ(audio->put_TVAudioMode(1), S_OK);
  EXPECT_EQ(audio->put_TVAudioMode(7), E_INVALIDARG);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("tv-audio bind", "tv-audio mode 1", "tv-audio mode 7 -> 80070057"));
  monikers.Reset();
  moniker.Reset();
  card_.reset();
  EXPECT_EQ(enumerator->CreateClassEnumerator(kCategoryTvAudio, monikers.Receive(), 0), S_FALSE)
      << "an unplugged card leaves its category";
}

TEST_F(Saa713xRequests, TraceOfBusAndLines) {
  Plug({}, AirWith(175250));
  Interfaces on(*card_);
  Listen();
  on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  Sleep(60);
  on.Read(0xC3);
  on.ReadAt(0xA0, 0x21);
  on.Read(0x96);
  on.gpio->SetLine(27, 1);
  on.Line(3);
  card_->AttachTrace(nullptr);
  on.Line(3);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("i2c select C2", "i2c write C2: 0D 62 CE 90", "i2c select C3",
                          "i2c read C3 -> C2", "i2c select A0", "i2c read A0[21] -> 00",
                          "i2c select 96", "i2c read 96 -> nak", "gpio 27 := 1", "gpio 3 -> 0"));
}

TEST_F(Saa713xRequests, TraceOfProperties) {
  Plug({});
  Interfaces on(*card_);
  Listen();
  ULONG word = 0;
  on.SetOwn(0x70, 1);
  on.GetOwn(0x74, word);
  on.SetOwn(0x74, 5);
  on.Notify(1);
  on.Tune(175250000, 49);
  on.tvTuner->put_Mode(AMTUNER_MODE_TV);
  on.Locked();
  KSPROPERTY_VIDEODECODER_S standard{};
  standard.Value = AnalogVideo_PAL_B;
  on.capture->Set(kPropsetVideoDecoder, 1, &standard, sizeof standard, &standard, sizeof standard);
  DWORD returned = 0;
  on.capture->Get(kPropsetVideoDecoder, 1, &standard, sizeof standard, &standard, sizeof standard,
                  &returned);
  BYTE stereo = 9;
  on.capture->Get(kOwnSet, 0x6F, &stereo, 1, &stereo, 1, &returned);
  on.capture->QuerySupported(kOwnSet, 0x74, &returned);
  EXPECT_THAT(trace_.Take(),
              ElementsAre("capture set ZELK_SAA.70 00000001", "capture get ZELK_SAA.74 -> 00007134",
                          "capture set ZELK_SAA.74 00000005 -> 80070490",
                          "capture set VAMP_TUNE.3 00000001 00000031 00000010 00000001",
                          "tuner set TUNER.4 frequency=175250000 flags=1 channel=4 country=49",
                          "tuner mode 1", "capture horizontal-locked -> 0",
                          "capture set VIDEODECODER.1 00000010",
                          "capture get VIDEODECODER.1 -> 00000010", "capture get ZELK_SAA.6F -> 00",
                          "capture query-supported ZELK_SAA.74 -> 00000001"));
}

TEST_F(Saa713xRequests, RefusedRequestsDoNotReachTheHardware) {
  Plug({});
  Interfaces on(*card_);
  Listen();
  card_->Refuse("i2c write C2", E_UNEXPECTED);
  constexpr auto kDenied = static_cast<HRESULT>(0x80070005);
  card_->Refuse("gpio 27", kDenied);
  card_->Refuse("capture set ZELK_SAA.71", E_FAIL);
  EXPECT_EQ(on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90}), E_UNEXPECTED);
  EXPECT_EQ(on.gpio->SetLine(27, 0), kDenied);
  EXPECT_EQ(on.SetOwn(0x71, 7), E_FAIL);
  EXPECT_EQ(on.SetOwn(0x72, 8), S_OK);
  EXPECT_EQ(card_->TunedKHz(), 0);
  EXPECT_TRUE(card_->GpioOutput(27));
  EXPECT_EQ(card_->DriverProperty(0x71), 0u);
  EXPECT_EQ(card_->DriverProperty(0x72), 8u);
  EXPECT_THAT(trace_.Take(), ElementsAre("i2c select C2", "i2c write C2: 0D 62 CE 90 -> 8000FFFF",
                                         "gpio 27 := 0 -> 80070005",
                                         "capture set ZELK_SAA.71 00000007 -> 80004005",
                                         "capture set ZELK_SAA.72 00000008"));
  card_->ClearRefusals();
  EXPECT_EQ(on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90}), S_OK);
  EXPECT_EQ(card_->TunedKHz(), 175225);
}

// The ways in which a transfer fails: by the bus's own status, by that status on order, by a code.
TEST_F(Saa713xRequests, FailedTransfers) {
  Plug({});
  Interfaces on(*card_);
  BYTE byte = 0x55;
  ULONG status = 0;
  on.i2c->SelectDevice(0x96);
  EXPECT_EQ(on.i2c->Read(&byte, 1, &status), S_OK);
  EXPECT_EQ(status, kVampBusFailed);
  EXPECT_EQ(on.i2c->ReadAt(0x21, &byte, 1, &status), E_FAIL);
  EXPECT_EQ(on.i2c->Write(&byte, 1, &status), E_FAIL);
  EXPECT_EQ(status, kVampBusFailed);
  EXPECT_EQ(byte, 0x55);

  card_->Refuse("i2c read A0", static_cast<HRESULT>(kVampBusFailed));
  on.i2c->SelectDevice(0xA0);
  EXPECT_EQ(on.i2c->Read(&byte, 1, &status), S_OK);
  EXPECT_EQ(status, kVampBusFailed);
  card_->ClearRefusals();
  EXPECT_EQ(on.i2c->ReadAt(0x22, &byte, 1, &status), S_OK);
  EXPECT_EQ(status, 0u);
  EXPECT_EQ(byte, 0xFB);
  EXPECT_EQ(on.i2c->Read(nullptr, 1, &status), E_POINTER);
  EXPECT_EQ(on.i2c->Read(&byte, 1, nullptr), E_POINTER);
}

TEST_F(Saa713xRequests, RefusedQueriesLeaveNothing) {
  Plug({});
  card_->Refuse("capture query IKsPropertySet", E_NOINTERFACE);
  card_->Refuse("vamp service", E_OUTOFMEMORY);
  {
    const auto filter = card_->CaptureFilter();
    void* object = &object;
    EXPECT_EQ(filter->QueryInterface(IidOf<IKsPropertySet>(), &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    ComPtr<IAMAnalogVideoDecoder> decoder;
    EXPECT_EQ(Query(filter.Get(), decoder), S_OK);
    ComPtr<IAMTVTuner> tuner;
    EXPECT_EQ(Query(filter.Get(), tuner), E_NOINTERFACE);
    object = &object;
    EXPECT_EQ(CoCreateInstance(kClsidVampService, nullptr, CLSCTX_INPROC_SERVER,
                               IidOf<IVampService>(), &object),
              E_OUTOFMEMORY);
    EXPECT_EQ(object, nullptr);
  }
  EXPECT_EQ(card_->LiveReferences(), 0);
}

TEST_F(Saa713xRequests, MalformedPropertyRequests) {
  Plug({});
  Interfaces on(*card_);
  constexpr GUID kUnknownSet = {0x12345678, 0x1234, 0x5678, {1, 2, 3, 4, 5, 6, 7, 8}};
  ULONG words[16] = {};
  DWORD returned = 0;
  struct Case {
    GUID set;
    DWORD id;
    DWORD instanceBytes, bytes;
    HRESULT get, set_;
  };
  const Case cases[] = {
      {kUnknownSet, 1, 4, 4, E_PROP_SET_UNSUPPORTED, E_PROP_SET_UNSUPPORTED},
      {kOwnSet, 0x64, 4, 4, E_PROP_ID_UNSUPPORTED, E_PROP_ID_UNSUPPORTED},
      {kOwnSet, 0x6D, 4, 4, S_OK, E_PROP_ID_UNSUPPORTED},
      {kOwnSet, 0x71, 4, 8, E_INVALIDARG, E_INVALIDARG},
      {kOwnSet, 0x71, 8, 4, E_INVALIDARG, E_INVALIDARG},
      {kOwnSet, 0x6F, 4, 4, E_INVALIDARG, E_PROP_ID_UNSUPPORTED},
      {kTuneSet, 3, 16, 16, E_PROP_ID_UNSUPPORTED, E_INVALIDARG},  // phase 0
      {kTuneSet, 3, 12, 12, E_PROP_ID_UNSUPPORTED, E_INVALIDARG},
      {kPropsetVideoDecoder, 1, 28, 28, E_INVALIDARG, E_INVALIDARG},
      {kPropsetVideoDecoder, 2, 32, 32, E_PROP_ID_UNSUPPORTED, E_PROP_ID_UNSUPPORTED},
      {kPropsetTuner, 4, 56, 56, E_PROP_SET_UNSUPPORTED, E_PROP_SET_UNSUPPORTED},
  };
  for (const bool traced : {false, true}) {
    if (traced) Listen();
    for (const Case& one : cases) {
      EXPECT_EQ(
          on.capture->Get(one.set, one.id, words, one.instanceBytes, words, one.bytes, &returned),
          one.get);
      EXPECT_EQ(on.capture->Set(one.set, one.id, words, one.instanceBytes, words, one.bytes),
                one.set_);
    }
    EXPECT_EQ(on.capture->Set(kOwnSet, 0x71, nullptr, 4, nullptr, 4), E_POINTER);
    EXPECT_EQ(on.capture->Get(kOwnSet, 0x71, words, 4, words, 4, nullptr), E_POINTER);
    EXPECT_EQ(on.videoDecoder->get_HorizontalLocked(nullptr), E_POINTER);
    EXPECT_EQ(on.gpio->ReadLine(3, nullptr), E_POINTER);
    EXPECT_EQ(on.device->GetI2c(nullptr), E_POINTER);
    EXPECT_EQ(on.tuner->Set(kPropsetTuner, 4, words, 52, words, 52), E_INVALIDARG);
  }
  EXPECT_THAT(trace_.Lines(), testing::Contains("capture set "
                                                "{12345678-1234-5678-0102-030405060708}.1 00000000"
                                                " -> 80070492"));
}

TEST_F(Saa713xRequests, ReferencesAreCounted) {
  Plug({});
  EXPECT_EQ(card_->LiveReferences(), 0);
  {
    const auto capture = card_->CaptureFilter();
    EXPECT_EQ(card_->LiveReferences(), 1);
    ComPtr<IKsPropertySet> properties;
    Query(capture.Get(), properties);
    EXPECT_EQ(card_->LiveReferences(), 2);
  }
  {
    const Interfaces on(*card_);
    EXPECT_EQ(card_->LiveReferences(), 8);
  }
  EXPECT_EQ(card_->LiveReferences(), 0);
}

TEST_F(Saa713xRequests, ObjectsOutliveTheCard) {
  Plug({}, AirWith(175250));
  Listen();
  Interfaces on(*card_);
  on.Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  card_.reset();
  trace_.Take();
  Sleep(60);
  EXPECT_TRUE(on.Locked());
  EXPECT_EQ(on.Read(0xC2) & 0x47, 0x42);
  EXPECT_THAT(trace_.Lines(), IsEmpty()) << "the listener may be gone";
  ComPtr<IVampService> service;
  EXPECT_EQ(CoCreateInstance(kClsidVampService, nullptr, CLSCTX_INPROC_SERVER,
                             IidOf<IVampService>(), service.ReceiveVoid()),
            REGDB_E_CLASSNOTREG);
}

}  // namespace
}  // namespace zelk::virtual_cards
