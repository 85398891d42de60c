// The QL2 card's devices as members of a filter graph: where they are found, their pins, the format
// of pin "656", and who holds whom.
#include "platform/com_object.h"
#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

struct Device {
  CLSID category;
  const wchar_t* name;
  std::size_t pins;
};
const Device kCapture = {kCategoryVideoInput, kQl2CaptureName, 3};
const Device kTuner = {kCategoryTvTuner, kQl2TunerName, 2};
const Device kEncoder = {kCategoryEncoder, kQl2EncoderName, 3};
const Device kDevices[] = {kCapture, kTuner, kEncoder, {kCategoryTvAudio, kQl2TvAudioName, 2}};

using Ql2FiltersTest = Ql2CardTest;

ComPtr<IBaseFilter> Filter(const Device& device) {
  return test::FindDevice<IBaseFilter>(device.category, device.name);
}

ComPtr<IPin> FindPin(IBaseFilter* filter, const wchar_t* id) {
  ComPtr<IPin> pin;
  EXPECT_EQ(filter->FindPin(id, pin.Receive()), S_OK);
  return pin;
}

// The stream configuration of pin "656".
ComPtr<IAMStreamConfig> Stream() {
  ComPtr<IAMStreamConfig> stream;
  EXPECT_EQ(Query(FindPin(Filter(kCapture).Get(), L"656").Get(), stream), S_OK);
  return stream;
}

// An object's identity, and a valid pointer for as long as somebody holds the object.
IUnknown* IdentityOf(IUnknown* object) {
  ComPtr<IUnknown> identity;
  EXPECT_EQ(Query(object, identity), S_OK);
  return identity.Get();
}

std::wstring NameOf(IPin* pin) {
  PIN_INFO info{};
  EXPECT_EQ(pin->QueryPinInfo(&info), S_OK);
  const auto filter = ComPtr<IBaseFilter>::Adopt(info.pFilter);
  EXPECT_TRUE(filter);
  return info.achName;
}

// A filter's name in its graph, and which graph that is.
std::pair<std::wstring, IFilterGraph*> MembershipOf(const ComPtr<IBaseFilter>& filter) {
  FILTER_INFO info{};
  EXPECT_EQ(filter->QueryFilterInfo(&info), S_OK);
  return {info.achName, ComPtr<IFilterGraph>::Adopt(info.pGraph).Get()};
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

TEST_F(Ql2FiltersTest, FiltersForgetTheirGraph) {
  Plug({});
  ComPtr<IGraphBuilder> graph;
  ASSERT_EQ(test::Create(kClsidFilterGraph, graph), S_OK);
  for (const Device& device : kDevices) {
    EXPECT_EQ(graph->AddFilter(Filter(device).Get(), device.name), S_OK);
    EXPECT_EQ(MembershipOf(Filter(device)),
              std::pair(std::wstring(device.name), static_cast<IFilterGraph*>(graph.Get())));
  }
  const std::wstring longName(200, L'x');
  EXPECT_EQ(Filter(kCapture)->JoinFilterGraph(graph.Get(), longName.c_str()), S_OK);
  EXPECT_EQ(MembershipOf(Filter(kCapture)).first, longName.substr(0, 127)) << "cut to its place";

  EXPECT_EQ(graph->RemoveFilter(Filter(kTuner).Get()), S_OK);
  graph.Reset();
  for (const Device& device : kDevices) EXPECT_EQ(MembershipOf(Filter(device)).second, nullptr);
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
};

TEST_F(Ql2FiltersTest, StateAndClock) {
  Plug({});
  const ComPtr<IBaseFilter> filter = Filter(kTuner);
  const auto stateAfter = [&](HRESULT done) {
    FILTER_STATE state{};
    EXPECT_EQ(done, S_OK);
    EXPECT_EQ(filter->GetState(0, &state), S_OK);
    return state;
  };
  EXPECT_EQ(stateAfter(filter->Pause()), State_Paused);
  EXPECT_EQ(stateAfter(filter->Run(0)), State_Running);
  EXPECT_EQ(stateAfter(filter->Stop()), State_Stopped);

  const auto clock = ComPtr<Clock>::Adopt(new Clock);
  for (IReferenceClock* const source : {clock.Get(), static_cast<Clock*>(nullptr)}) {
    ComPtr<IReferenceClock> answered;
    EXPECT_EQ(filter->SetSyncSource(source), S_OK);
    EXPECT_EQ(test::References(clock.Get()), source ? 2U : 1U);
    EXPECT_EQ(filter->GetSyncSource(answered.Receive()), S_OK);
    EXPECT_EQ(answered.Get(), source);
  }
}

TEST_F(Ql2FiltersTest, PinsOfEachFilter) {
  Plug({});
  OwnedType format;
  ASSERT_EQ(Stream()->GetFormat(&format.type), S_OK);
  for (const Device& device : kDevices) {
    const ComPtr<IBaseFilter> filter = Filter(device);
    ComPtr<IEnumPins> pins;
    ASSERT_EQ(filter->EnumPins(pins.Receive()), S_OK);
    std::size_t count = 0;
    ComPtr<IPin> pin, other;
    for (; pins->Next(1, pin.Receive(), nullptr) == S_OK; ++count) {
      const bool video = NameOf(pin.Get()) == L"656";
      LPWSTR id = nullptr;
      ASSERT_EQ(pin->QueryId(&id), S_OK);
      EXPECT_EQ(FindPin(filter.Get(), id).Get(), pin.Get());
      CoTaskMemFree(id);
      EXPECT_EQ(pin->ConnectedTo(other.Receive()), VFW_E_NOT_CONNECTED);
      ComPtr<IAMStreamConfig> stream;
      EXPECT_EQ(Query(pin.Get(), stream), video ? S_OK : E_NOINTERFACE);
      EXPECT_NE(IdentityOf(pin.Get()), IdentityOf(filter.Get()));
      ComPtr<IEnumMediaTypes> types;
      ASSERT_EQ(pin->EnumMediaTypes(types.Receive()), S_OK);
      OwnedType own, none;
      EXPECT_EQ(types->Next(1, &own.type, nullptr), video ? S_OK : S_FALSE);
      EXPECT_EQ(types->Next(1, &none.type, nullptr), S_FALSE);
      EXPECT_EQ(pin->QueryAccept(format.type), video ? S_OK : S_FALSE);
    }
    EXPECT_EQ(count, device.pins);
    EXPECT_EQ(filter->FindPin(L"none", other.Receive()), VFW_E_NOT_FOUND);
  }
}

TEST_F(Ql2FiltersTest, FormatsOfTheVideoPin) {
  for (const bool videoInfo2 : {false, true}) {
    Plug({.videoInfo2 = videoInfo2});
    const ComPtr<IAMStreamConfig> stream = Stream();
    OwnedType own;
    ASSERT_EQ(stream->GetFormat(&own.type), S_OK);
    BITMAPINFOHEADER& picture = PictureIn(*own.type);
    const auto set = [&](int width, int height) {
      picture.biWidth = width;
      picture.biHeight = height;
      return stream->SetFormat(own.type);
    };
    EXPECT_EQ(set(720, 576), S_OK) << "the largest picture";
    // The application changes the size in pixels; the driver works out the rest.
    Listen();
    EXPECT_EQ(set(352, 288), S_OK);
    EXPECT_THAT(trace_.Take(), testing::Contains("capture pin 656 set-format 352x288"));
    OwnedType after;
    ASSERT_EQ(stream->GetFormat(&after.type), S_OK);
    const BITMAPINFOHEADER& made = PictureIn(*after.type);
    constexpr DWORD kUyvy = 0x59565955, kBytes = 352 * 288 * 2;
    EXPECT_EQ(std::tuple(made.biWidth, made.biPlanes, made.biBitCount, made.biCompression),
              std::tuple(352, 1, 16, kUyvy));
    // Both records begin alike. There are 25 pictures a second.
    const auto& header = *reinterpret_cast<const VIDEOINFOHEADER*>(after.type->pbFormat);
    EXPECT_EQ(std::tuple(made.biSizeImage, after.type->lSampleSize, header.dwBitRate,
                         header.AvgTimePerFrame),
              std::tuple(kBytes, kBytes, kBytes * 8 * 25, 400000));

    for (const auto& [width, height] :
         {std::pair{736, 576}, {720, 584}, {721, 576}, {720, 574}, {0, 576}, {720, -576}})
      EXPECT_EQ(set(width, height), VFW_E_TYPE_NOT_ACCEPTED) << width << 'x' << height;
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

// What an application still holds after the card has gone stays valid.
TEST_F(Ql2FiltersTest, PinsOutliveTheCard) {
  Plug({});
  const ComPtr<IAMStreamConfig> stream = Stream();
  EXPECT_EQ(card_->LiveReferences(), 1);
  ComPtr<IEnumPins> pins;
  Filter(kEncoder)->EnumPins(pins.Receive());
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
