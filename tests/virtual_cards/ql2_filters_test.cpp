// The QL2 card's devices as members of a filter graph: where they are found, their pins, the format
// of pin "656", and who holds whom.
#include <cstring>

#include "platform/com_object.h"
#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

struct Device {
  CLSID category;
  const wchar_t* name;
  std::size_t pins;
};
const Device kDevices[] = {
    {kCategoryVideoInput, kQl2CaptureName, 3},
    {kCategoryTvTuner, kQl2TunerName, 2},
    {kCategoryEncoder, kQl2EncoderName, 3},
    {kCategoryTvAudio, kQl2TvAudioName, 2},
};

class Ql2FiltersTest : public Ql2CardTest {
 protected:
  static ComPtr<IBaseFilter> Filter(const Device& device) {
    return FindDevice<IBaseFilter>(device.category, device.name);
  }
  static ComPtr<IPin> FindPin(IBaseFilter* filter, const wchar_t* id) {
    ComPtr<IPin> pin;
    EXPECT_EQ(filter->FindPin(id, pin.Receive()), S_OK);
    return pin;
  }
  // The stream configuration of pin "656".
  static ComPtr<IAMStreamConfig> Stream() {
    ComPtr<IAMStreamConfig> stream;
    EXPECT_EQ(Query(FindPin(Filter(kDevices[0]).Get(), L"656").Get(), stream), S_OK);
    return stream;
  }
};

std::wstring NameOf(IPin* pin) {
  PIN_INFO info{};
  EXPECT_EQ(pin->QueryPinInfo(&info), S_OK);
  const auto filter = ComPtr<IBaseFilter>::Adopt(info.pFilter);
  EXPECT_TRUE(filter);
  return info.achName;
}

// A media type that the caller owns.
class OwnedType {
 public:
  ~OwnedType() {
    if (!type) return;
    CoTaskMemFree(type->pbFormat);
    CoTaskMemFree(type);
  }
  AM_MEDIA_TYPE* type = nullptr;
};

BITMAPINFOHEADER& PictureIn(AM_MEDIA_TYPE& type) {
  if (type.formattype == kFormatVideoInfo2)
    return reinterpret_cast<VIDEOINFOHEADER2*>(type.pbFormat)->bmiHeader;
  return reinterpret_cast<VIDEOINFOHEADER*>(type.pbFormat)->bmiHeader;
}

TEST_F(Ql2FiltersTest, DevicesAreInTheirCategoriesWhilePluggedIn) {
  Plug({});
  for (const Device& device : kDevices) EXPECT_TRUE(Filter(device)) << device.name;
  ComPtr<IUnknown> capture, tuner;
  Query(Filter(kDevices[0]).Get(), capture);
  Query(Filter(kDevices[1]).Get(), tuner);
  ComPtr<IUnknown> own;
  Query(card_->CaptureFilter().Get(), own);
  EXPECT_EQ(capture.Get(), own.Get()) << "one object, one identity";
  Query(card_->TunerFilter().Get(), own);
  EXPECT_EQ(tuner.Get(), own.Get());
  own.Reset();
  capture.Reset();
  tuner.Reset();
  Unplug();
  for (const Device& device : kDevices) EXPECT_FALSE(Filter(device));
}

TEST_F(Ql2FiltersTest, FiltersForgetTheirGraph) {
  Plug({});
  ComPtr<IGraphBuilder> graph;
  ASSERT_EQ(CoCreateInstance(kClsidFilterGraph, nullptr, CLSCTX_INPROC_SERVER,
                             IidOf<IGraphBuilder>(), graph.ReceiveVoid()),
            S_OK);
  FILTER_INFO info{};
  for (const Device& device : kDevices) {
    const ComPtr<IBaseFilter> filter = Filter(device);
    EXPECT_EQ(graph->AddFilter(filter.Get(), device.name), S_OK);
    EXPECT_EQ(filter->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(ComPtr<IFilterGraph>::Adopt(info.pGraph).Get(), graph.Get());
    EXPECT_STREQ(info.achName, device.name);
  }
  // A name that does not fit is cut.
  const std::wstring longName(200, L'x');
  EXPECT_EQ(Filter(kDevices[0])->JoinFilterGraph(graph.Get(), longName.c_str()), S_OK);
  EXPECT_EQ(Filter(kDevices[0])->QueryFilterInfo(&info), S_OK);
  EXPECT_EQ(ComPtr<IFilterGraph>::Adopt(info.pGraph).Get(), graph.Get());
  EXPECT_EQ(std::wstring(info.achName), longName.substr(0, std::size(info.achName) - 1));

  EXPECT_EQ(graph->RemoveFilter(Filter(kDevices[1]).Get()), S_OK);
  graph.Reset();
  for (const Device& device : kDevices) {
    EXPECT_EQ(Filter(device)->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(info.pGraph, nullptr);
  }
  EXPECT_EQ(card_->LiveReferences(), 0);
}

class Clock final : public ComObject<IReferenceClock> {
 public:
  HRESULT STDMETHODCALLTYPE GetTime(REFERENCE_TIME*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AdviseTime(REFERENCE_TIME, REFERENCE_TIME, DWORD_PTR,
                                       DWORD_PTR*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE AdvisePeriodic(REFERENCE_TIME, REFERENCE_TIME, DWORD_PTR,
                                           DWORD_PTR*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD_PTR) override { return E_NOTIMPL; }
  ULONG References() {
    AddRef();
    return Release();
  }
};

TEST_F(Ql2FiltersTest, StateAndClock) {
  Plug({});
  const ComPtr<IBaseFilter> filter = Filter(kDevices[1]);
  const auto now = [&] {
    FILTER_STATE state{};
    EXPECT_EQ(filter->GetState(0, &state), S_OK);
    return state;
  };
  filter->Pause();
  EXPECT_EQ(now(), State_Paused);
  filter->Run(0);
  EXPECT_EQ(now(), State_Running);
  filter->Stop();
  EXPECT_EQ(now(), State_Stopped);

  const auto clock = ComPtr<Clock>::Adopt(new Clock);
  ComPtr<IReferenceClock> answered;
  EXPECT_EQ(filter->SetSyncSource(clock.Get()), S_OK);
  EXPECT_EQ(clock->References(), 2U);
  EXPECT_EQ(filter->GetSyncSource(answered.Receive()), S_OK);
  EXPECT_EQ(answered.Get(), clock.Get());
  filter->SetSyncSource(nullptr);
  EXPECT_EQ(filter->GetSyncSource(answered.Receive()), S_OK);
  EXPECT_FALSE(answered);
  EXPECT_EQ(clock->References(), 1U);
}

TEST_F(Ql2FiltersTest, PinsOfEachFilter) {
  Plug({});
  for (const Device& device : kDevices) {
    const ComPtr<IBaseFilter> filter = Filter(device);
    ComPtr<IEnumPins> pins;
    ASSERT_EQ(filter->EnumPins(pins.Receive()), S_OK);
    std::size_t count = 0;
    for (ComPtr<IPin> pin; pins->Next(1, pin.Receive(), nullptr) == S_OK; ++count) {
      LPWSTR id = nullptr;
      ASSERT_EQ(pin->QueryId(&id), S_OK);
      EXPECT_EQ(FindPin(filter.Get(), id).Get(), pin.Get());
      CoTaskMemFree(id);
      ComPtr<IPin> other;
      EXPECT_EQ(pin->ConnectedTo(other.Receive()), VFW_E_NOT_CONNECTED);
      ComPtr<IAMStreamConfig> stream;
      EXPECT_EQ(Query(pin.Get(), stream), NameOf(pin.Get()) == L"656" ? S_OK : E_NOINTERFACE);
      ComPtr<IUnknown> pinIdentity, filterIdentity;
      Query(pin.Get(), pinIdentity);
      Query(filter.Get(), filterIdentity);
      EXPECT_NE(pinIdentity.Get(), filterIdentity.Get());
    }
    EXPECT_EQ(count, device.pins);
    ComPtr<IPin> missing;
    EXPECT_EQ(filter->FindPin(L"none", missing.Receive()), VFW_E_NOT_FOUND);
  }
}

TEST_F(Ql2FiltersTest, EnumeratorOfPins) {
  Plug({});
  ComPtr<IEnumPins> pins, clone;
  ASSERT_EQ(Filter(kDevices[0])->EnumPins(pins.Receive()), S_OK);
  IPin* several[5] = {};
  ULONG fetched = 0;
  EXPECT_EQ(pins->Next(5, several, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 3U);
  for (IPin* pin : several) ComPtr<IPin>::Adopt(pin);
  EXPECT_EQ(pins->Reset(), S_OK);
  EXPECT_EQ(pins->Skip(2), S_OK);
  EXPECT_EQ(pins->Clone(clone.Receive()), S_OK);
  ComPtr<IPin> pin, same;
  EXPECT_EQ(pins->Next(1, pin.Receive(), nullptr), S_OK);
  EXPECT_EQ(clone->Next(1, same.Receive(), nullptr), S_OK);
  EXPECT_EQ(pin.Get(), same.Get());
  EXPECT_EQ(pins->Skip(1), S_FALSE);
}

TEST_F(Ql2FiltersTest, FormatsOfTheVideoPin) {
  for (const bool videoInfo2 : {false, true}) {
    Plug({.videoInfo2 = videoInfo2});
    const ComPtr<IAMStreamConfig> stream = Stream();
    OwnedType own;
    ASSERT_EQ(stream->GetFormat(&own.type), S_OK);
    BITMAPINFOHEADER& picture = PictureIn(*own.type);
    // The application changes the size in pixels; the driver works out the rest.
    picture.biWidth = 352;
    picture.biHeight = 288;
    EXPECT_EQ(stream->SetFormat(own.type), S_OK);
    EXPECT_EQ(card_->Picture(), (PictureSize{352, 288}));
    OwnedType after;
    ASSERT_EQ(stream->GetFormat(&after.type), S_OK);
    EXPECT_EQ(PictureIn(*after.type).biWidth, 352);
    EXPECT_EQ(PictureIn(*after.type).biSizeImage, 352U * 288 * 2);

    for (const auto& [width, height] :
         {std::pair{736, 576}, {720, 584}, {721, 576}, {720, 574}, {0, 576}, {720, -576}}) {
      picture.biWidth = width;
      picture.biHeight = height;
      EXPECT_EQ(stream->SetFormat(own.type), VFW_E_TYPE_NOT_ACCEPTED) << width << 'x' << height;
    }
    picture.biWidth = 480;
    picture.biHeight = 480;
    for (int wrong = 0; wrong < 5; ++wrong) {
      AM_MEDIA_TYPE type = *own.type;
      if (wrong == 0) type.majortype = kFormatVideoInfo;
      if (wrong == 1) type.formattype = videoInfo2 ? kFormatVideoInfo : kFormatVideoInfo2;
      if (wrong == 2) --type.cbFormat;
      if (wrong == 3) type.pbFormat = nullptr;
      if (wrong == 4) type.subtype = kMediaTypeVideo;
      EXPECT_EQ(stream->SetFormat(&type), VFW_E_TYPE_NOT_ACCEPTED) << wrong;
    }
    EXPECT_EQ(stream->SetFormat(nullptr), E_POINTER);
    EXPECT_EQ(card_->Picture(), (PictureSize{352, 288}));
  }
}

TEST_F(Ql2FiltersTest, MediaTypesOfThePins) {
  Plug({});
  const ComPtr<IBaseFilter> filter = Filter(kDevices[0]);
  const ComPtr<IPin> video = FindPin(filter.Get(), L"656");
  ComPtr<IEnumMediaTypes> types;
  ASSERT_EQ(video->EnumMediaTypes(types.Receive()), S_OK);
  OwnedType own;
  EXPECT_EQ(types->Next(1, &own.type, nullptr), S_OK);
  EXPECT_EQ(video->QueryAccept(own.type), S_OK);
  AM_MEDIA_TYPE* none = nullptr;
  EXPECT_EQ(types->Next(1, &none, nullptr), S_FALSE);
  const ComPtr<IPin> vbi = FindPin(filter.Get(), L"VBI");
  EXPECT_EQ(vbi->QueryAccept(own.type), S_FALSE);
  ASSERT_EQ(vbi->EnumMediaTypes(types.Receive()), S_OK);
  EXPECT_EQ(types->Next(1, &none, nullptr), S_FALSE);
}

TEST_F(Ql2FiltersTest, TraceAndRefusalsOfThePin) {
  Plug({});
  const ComPtr<IBaseFilter> filter = Filter(kDevices[0]);
  const ComPtr<IPin> pin = FindPin(filter.Get(), L"656");
  RecordedTrace trace;
  card_->AttachTrace(&trace);
  ComPtr<IEnumPins> pins;
  filter->EnumPins(pins.Receive());
  NameOf(pin.Get());
  ComPtr<IAMStreamConfig> stream;
  Query(pin.Get(), stream);
  OwnedType own;
  stream->GetFormat(&own.type);
  stream->SetFormat(own.type);
  EXPECT_THAT(trace.Take(), testing::ElementsAre("capture enum-pins", "capture pin 656 info",
                                                 "capture pin 656 query IAMStreamConfig",
                                                 "capture pin 656 get-format",
                                                 "capture pin 656 set-format 720x576"));
  card_->Refuse("capture enum-pins", E_FAIL);
  EXPECT_EQ(filter->EnumPins(pins.Receive()), E_FAIL);
  EXPECT_FALSE(pins);
}

// What an application still holds after the card has gone stays valid.
TEST_F(Ql2FiltersTest, PinsOutliveTheCard) {
  Plug({});
  ComPtr<IAMStreamConfig> stream = Stream();
  EXPECT_EQ(card_->LiveReferences(), 1);
  ComPtr<IEnumPins> pins;
  Filter(kDevices[2])->EnumPins(pins.Receive());
  EXPECT_GT(card_->LiveReferences(), 1);
  card_.reset();
  OwnedType own;
  EXPECT_EQ(stream->GetFormat(&own.type), S_OK);
  ComPtr<IPin> pin;
  EXPECT_EQ(pins->Next(1, pin.Receive(), nullptr), S_OK);
  pins.Reset();
  EXPECT_EQ(NameOf(pin.Get()), L"656 In");
}

}  // namespace
}  // namespace zelk::virtual_cards
