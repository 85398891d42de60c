// The card's own filter graph: its devices found, put together, shown to a graph editor, taken
// apart.
#include <algorithm>
#include <string_view>
#include <utility>

#include "backends/quillon/quillon_device.h"
#include "platform/device_category.h"
#include "platform/win32.h"

namespace zelk {
namespace {

// Whatever name the card was accepted under, its devices have these.
constexpr const OLECHAR* kCaptureNames[] = {L"Korvane Telmora Video Capture (QL2)"};
constexpr const OLECHAR* kTunerNames[] = {L"Korvane Telmora Tuner (QL2)"};
constexpr const OLECHAR* kEncoderNames[] = {L"Korvane Telmora Encoder (QL2)"};

template <class Interface>
bool CreateObject(REFCLSID classId, ComPtr<Interface>& object) {
  return CreateInstance(classId, CLSCTX_INPROC_SERVER, object) == S_OK;
}

// Empty when there is none.
ComPtr<IRunningObjectTable> RunningObjects() {
  ComPtr<IRunningObjectTable> table;
  Obtain(table, [](IRunningObjectTable** place) { return GetRunningObjectTable(0, place); });
  return table;
}

ComPtr<IBaseFilter> FindFilterByName(REFCLSID category, std::wstring_view name) {
  const ComPtr<IEnumMoniker> monikers = EnumerateCategory(category);
  if (!monikers) return {};
  monikers->Reset();
  while (const ComPtr<IMoniker> moniker = NextOf<IMoniker>(*monikers.Get())) {
    const DeviceName deviceName(*moniker.Get());
    if (deviceName.Get() && name == deviceName.Get()) {
      return BindDevice<IBaseFilter>(*moniker.Get());
    }
  }
  return {};
}

// Finds the first of the devices and adds it to the graph.
template <std::size_t Count>
ComPtr<IBaseFilter> AddDevice(IGraphBuilder& graph, REFCLSID category,
                              const OLECHAR* const (&names)[Count]) {
  for (const OLECHAR* const name : names) {
    ComPtr<IBaseFilter> filter = FindFilterByName(category, name);
    if (!filter) continue;
    graph.AddFilter(filter.Get(), name);
    return filter;
  }
  return {};
}

// The machine's TV-audio device, the first one; a card works without. The graph keeps the filter.
void AddTvAudioFilter(IGraphBuilder& graph) {
  const ComPtr<IEnumMoniker> monikers = EnumerateCategory(kCategoryTvAudio);
  if (!monikers) return;
  monikers->Reset();
  const ComPtr<IMoniker> moniker = NextOf<IMoniker>(*monikers.Get());
  if (!moniker) return;
  if (const auto filter = BindDevice<IBaseFilter>(*moniker.Get())) {
    const DeviceName name(*moniker.Get());
    graph.AddFilter(filter.Get(), name.Get() ? name.Get() : L"No Name");
  }
  // The enumeration goes one device further; what is there stays as it is.
  NextOf<IMoniker>(*monikers.Get());
}

// Eight lower-case hexadecimal digits.
OLECHAR* AppendHex(OLECHAR* at, std::uint32_t value) {
  for (int shift = 28; shift >= 0; shift -= 4) *at++ = L"0123456789abcdef"[(value >> shift) & 0xF];
  return at;
}

OLECHAR* AppendText(OLECHAR* at, std::wstring_view text) {
  return std::copy(text.begin(), text.end(), at);
}

}  // namespace

HRESULT QuillonDevice::CreateGraph() {
  return CreateObject(kClsidFilterGraph, Graph) &&
                 CreateObject(kClsidCaptureGraphBuilder2, CaptureGraphBuilder)
             ? S_OK
             : E_FAIL;
}

bool QuillonDevice::BuildGraph() {
  CaptureFilter = AddDevice(*Graph.Get(), kCategoryVideoInput, kCaptureNames);
  if (!CaptureFilter) return false;
  if (FAILED(Query(CaptureFilter.Get(), CaptureProps))) {
    ReleaseInterfaces();
    return false;
  }

  // Quirk: lock 0 is to be held while the tuner's filter is added, but SetHWLock refuses, with its
  // line in the log, as long as the card is not initialised. Only the reading reaches the driver.
  std::uint32_t lock = 0;
  GetHWLock(0, &lock);
  SetHWLock(0, 1);
  TunerFilter = AddDevice(*Graph.Get(), kCategoryTvTuner, kTunerNames);
  SetHWLock(0, lock);
  if (!TunerFilter) return false;

  EncoderFilter = AddDevice(*Graph.Get(), kCategoryEncoder, kEncoderNames);
  if (!EncoderFilter) return false;
  AddTvAudioFilter(*Graph.Get());
  if (DebugApi) RegisterGraph();
  return true;
}

// Shows the graph in the running object table, where a graph editor finds it, in place of an
// earlier entry.
void QuillonDevice::RegisterGraph() {
  UnregisterGraph();
  ComPtr<IRunningObjectTable> table = RunningObjects();
  if (!table) return;
  OLECHAR name[64];
  OLECHAR* end = AppendText(name, L"FilterGraph ");
  end = AppendHex(end, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(Graph.Get())));
  end = AppendText(end, L" pid ");
  end = AppendHex(end, GetCurrentProcessId());
  *end = L'\0';
  ComPtr<IMoniker> moniker;
  HRESULT code =
      Obtain(moniker, [&](IMoniker** place) { return CreateItemMoniker(L"!", name, place); });
  DWORD cookie = 0;
  if (SUCCEEDED(code)) code = table->Register(0, Graph.Get(), moniker.Get(), &cookie);
  moniker.Reset();
  table.Reset();
  if (FAILED(code)) {
    Log("Failed to register filter graph with ROT!");
    return;
  }
  // The application may have been let in meanwhile and have had the graph registered too.
  UnregisterGraph();
  RotCookie = cookie;
}

void QuillonDevice::UnregisterGraph() {
  const DWORD cookie = std::exchange(RotCookie, 0);
  if (cookie == 0) return;
  if (const auto table = RunningObjects()) table->Revoke(cookie);
}

void QuillonDevice::ReleaseInterfaces() {
  if (Graph) {
    for (const ComPtr<IBaseFilter>* filter : {&CaptureFilter, &TunerFilter, &EncoderFilter}) {
      if (*filter) Graph->RemoveFilter(filter->Get());
    }
  }
  CaptureFilter.Reset();
  TunerFilter.Reset();
  Graph.Reset();
  CaptureGraphBuilder.Reset();
  CaptureProps.Reset();
  EncoderFilter.Reset();
  EncoderProps.Reset();
  TunerProps.Reset();
}

}  // namespace zelk
