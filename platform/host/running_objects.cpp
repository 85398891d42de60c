// The running object table and the item monikers that name its entries.
#include <mutex>

#include "platform/process/moniker.h"

namespace zelk::host {
namespace {

constexpr CLSID kClsidItemMoniker = {
    0x00000304, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
constexpr DWORD kKeepsAlive = 1;

// Keeps every object alive that is registered with it, whatever the flags ask for: nothing here
// could tell the table that an object has gone.
class RunningObjectTable : public ComObject<IRunningObjectTable> {
 public:
  HRESULT STDMETHODCALLTYPE Register(DWORD grfFlags, IUnknown* punkObject, IMoniker* pmkObjectName,
                                     DWORD* pdwRegister) override {
    if (!punkObject || !pmkObjectName || !pdwRegister || (grfFlags & ~kKeepsAlive) != 0)
      return E_INVALIDARG;
    const bool known = static_cast<bool>(Find(pmkObjectName));
    Entry entry{0, ComPtr<IUnknown>(punkObject), ComPtr<IMoniker>(pmkObjectName)};
    const std::lock_guard lock(mutex_);
    entry.token = nextToken_++;
    *pdwRegister = entry.token;
    entries_.push_back(std::move(entry));
    return known ? MK_S_MONIKERALREADYREGISTERED : S_OK;
  }

  HRESULT STDMETHODCALLTYPE Revoke(DWORD dwRegister) override {
    Entry revoked;  // released once the table is unlocked
    const std::lock_guard lock(mutex_);
    for (auto entry = entries_.begin(); entry != entries_.end(); ++entry) {
      if (entry->token != dwRegister) continue;
      revoked = std::move(*entry);
      entries_.erase(entry);
      return S_OK;
    }
    return E_INVALIDARG;
  }

  HRESULT STDMETHODCALLTYPE IsRunning(IMoniker* pmkObjectName) override {
    if (!pmkObjectName) return E_INVALIDARG;
    return Find(pmkObjectName) ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE GetObject(IMoniker* pmkObjectName, IUnknown** ppunkObject) override {
    if (!ppunkObject) return E_POINTER;
    *ppunkObject = nullptr;
    if (!pmkObjectName) return E_INVALIDARG;
    *ppunkObject = Find(pmkObjectName).Detach();
    return *ppunkObject ? S_OK : MK_E_UNAVAILABLE;
  }

  HRESULT STDMETHODCALLTYPE NoteChangeTime(DWORD, FILETIME*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTimeOfLastChange(IMoniker*, FILETIME*) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE EnumRunning(IEnumMoniker** ppenumMoniker) override {
    if (!ppenumMoniker) return E_POINTER;
    std::vector<ComPtr<IMoniker>> names;
    for (Entry& entry : Snapshot()) names.push_back(std::move(entry.name));
    *ppenumMoniker = EnumerateMonikers(std::move(names)).Detach();
    return S_OK;
  }

 private:
  struct Entry {
    DWORD token = 0;
    ComPtr<IUnknown> object;
    ComPtr<IMoniker> name;
  };

  std::vector<Entry> Snapshot() {
    const std::lock_guard lock(mutex_);
    return entries_;
  }

  // Compares with nothing locked: monikers are the callers' own code.
  ComPtr<IUnknown> Find(IMoniker* name) {
    for (Entry& entry : Snapshot())
      if (entry.name->IsEqual(name) == S_OK) return entry.object;
    return {};
  }

  std::mutex mutex_;
  std::vector<Entry> entries_;
  DWORD nextToken_ = 1;
};

}  // namespace
}  // namespace zelk::host

HRESULT GetRunningObjectTable(DWORD reserved, IRunningObjectTable** pprot) {
  if (!pprot) return E_POINTER;
  *pprot = nullptr;
  if (reserved != 0) return E_INVALIDARG;
  static auto* const table = new zelk::host::RunningObjectTable;  // lives as long as the process
  *pprot = zelk::ComPtr<IRunningObjectTable>(table).Detach();
  return S_OK;
}

HRESULT CreateItemMoniker(LPCOLESTR lpszDelim, LPCOLESTR lpszItem, IMoniker** ppmk) {
  using namespace zelk::host;
  if (!ppmk) return E_POINTER;
  *ppmk = nullptr;
  if (!lpszItem) return E_INVALIDARG;
  *ppmk = new NamedMoniker(kClsidItemMoniker, std::wstring(lpszDelim ? lpszDelim : L"") + lpszItem);
  return S_OK;
}
