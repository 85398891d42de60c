// The filter graph, which holds filters but connects none, and the capture graph builder that is
// told about it.
#include <algorithm>
#include <cwchar>
#include <string>

#include "platform/enumerator.h"
#include "platform/host/system_classes.h"

namespace zelk::host {
namespace {

bool SameObject(IUnknown* left, IUnknown* right) {
  if (left == right) return true;
  ComPtr<IUnknown> leftIdentity;
  ComPtr<IUnknown> rightIdentity;
  return SUCCEEDED(Query(left, leftIdentity)) && SUCCEEDED(Query(right, rightIdentity)) &&
         leftIdentity.Get() == rightIdentity.Get();
}

class FilterGraph : public ComObject<IGraphBuilder> {
 public:
  // A filter whose name is taken, or that has none, gets a made-up one.
  HRESULT STDMETHODCALLTYPE AddFilter(IBaseFilter* pFilter, LPCWSTR pName) override {
    if (!pFilter) return E_POINTER;
    if (Find(pFilter) != members_.end()) return E_FAIL;
    const bool taken = pName && FindName(pName) != members_.end();
    std::wstring name = pName && !taken ? std::wstring(pName) : MakeUpName(pName);
    const HRESULT joined = pFilter->JoinFilterGraph(this, name.c_str());
    if (FAILED(joined)) return joined;
    // The newest filter is enumerated first.
    members_.insert(members_.begin(), {std::move(name), ComPtr<IBaseFilter>(pFilter)});
    return taken ? VFW_S_DUPLICATE_NAME : S_OK;
  }

  HRESULT STDMETHODCALLTYPE RemoveFilter(IBaseFilter* pFilter) override {
    if (!pFilter) return E_POINTER;
    const auto found = Find(pFilter);
    if (found == members_.end()) return VFW_E_NOT_FOUND;
    const ComPtr<IBaseFilter> filter = std::move(found->filter);
    members_.erase(found);
    return filter->JoinFilterGraph(nullptr, nullptr);
  }

  HRESULT STDMETHODCALLTYPE EnumFilters(IEnumFilters** ppEnum) override {
    if (!ppEnum) return E_POINTER;
    std::vector<ComPtr<IBaseFilter>> filters;
    for (const Member& member : members_) filters.push_back(member.filter);
    *ppEnum = new Enumerator<IEnumFilters, IBaseFilter>(std::move(filters));
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE FindFilterByName(LPCWSTR pName, IBaseFilter** ppFilter) override {
    if (!ppFilter || !pName) return E_POINTER;
    *ppFilter = nullptr;
    const auto found = FindName(pName);
    if (found == members_.end()) return VFW_E_NOT_FOUND;
    *ppFilter = ComPtr<IBaseFilter>(found->filter).Detach();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE ConnectDirect(IPin*, IPin*, const AM_MEDIA_TYPE*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Reconnect(IPin*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Disconnect(IPin*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetDefaultSyncSource() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Connect(IPin*, IPin*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Render(IPin*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RenderFile(LPCWSTR, LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AddSourceFilter(LPCWSTR, LPCWSTR, IBaseFilter**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetLogFile(DWORD_PTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Abort() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ShouldOperationContinue() override { return E_NOTIMPL; }

 protected:
  // Filters hold no reference to their graph, so they must hear that it has gone.
  ~FilterGraph() override {
    for (const Member& member : members_) member.filter->JoinFilterGraph(nullptr, nullptr);
  }

 private:
  struct Member {
    std::wstring name;
    ComPtr<IBaseFilter> filter;
  };
  using Members = std::vector<Member>;

  Members::iterator Find(IBaseFilter* filter) {
    return std::find_if(members_.begin(), members_.end(), [&](const Member& member) {
      return SameObject(member.filter.Get(), filter);
    });
  }

  Members::iterator FindName(const std::wstring& name) {
    return std::find_if(members_.begin(), members_.end(),
                        [&](const Member& member) { return member.name == name; });
  }

  std::wstring MakeUpName(LPCWSTR wanted) {
    std::wstring stem = wanted ? std::wstring(wanted) + L" " : std::wstring();
    for (unsigned number = 1;; ++number) {
      wchar_t digits[16];
      std::swprintf(digits, std::size(digits), L"%04u", number);
      if (std::wstring name = stem + digits; FindName(name) == members_.end()) return name;
    }
  }

  Members members_;
};

class CaptureGraphBuilder : public ComObject<ICaptureGraphBuilder2> {
 public:
  HRESULT STDMETHODCALLTYPE SetFiltergraph(IGraphBuilder* pfg) override {
    if (!pfg) return E_POINTER;
    if (graph_) return E_UNEXPECTED;  // the graph cannot be changed
    graph_ = ComPtr<IGraphBuilder>(pfg);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetFiltergraph(IGraphBuilder** ppfg) override {
    if (!ppfg) return E_POINTER;
    *ppfg = ComPtr<IGraphBuilder>(graph_).Detach();
    return *ppfg ? S_OK : E_UNEXPECTED;
  }

  HRESULT STDMETHODCALLTYPE SetOutputFileName(const GUID*, LPCOLESTR, IBaseFilter**,
                                              IFileSinkFilter**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE FindInterface(const GUID*, const GUID*, IBaseFilter*, REFIID,
                                          void**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE RenderStream(const GUID*, const GUID*, IUnknown*, IBaseFilter*,
                                         IBaseFilter*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ControlStream(const GUID*, const GUID*, IBaseFilter*, REFERENCE_TIME*,
                                          REFERENCE_TIME*, WORD, WORD) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE AllocCapFile(LPCOLESTR, DWORDLONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CopyCaptureFile(LPOLESTR, LPOLESTR, int,
                                            IAMCopyCaptureFileProgress*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE FindPin(IUnknown*, PIN_DIRECTION, const GUID*, const GUID*, BOOL, int,
                                    IPin**) override {
    return E_NOTIMPL;
  }

 private:
  ComPtr<IGraphBuilder> graph_;
};

}  // namespace

HRESULT CreateFilterGraph(REFIID iid, void** object) {
  const auto created = ComPtr<IGraphBuilder>::Adopt(new FilterGraph);
  return created->QueryInterface(iid, object);
}

HRESULT CreateCaptureGraphBuilder(REFIID iid, void** object) {
  const auto created = ComPtr<ICaptureGraphBuilder2>::Adopt(new CaptureGraphBuilder);
  return created->QueryInterface(iid, object);
}

}  // namespace zelk::host
