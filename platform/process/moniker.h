// What the host's monikers have in common, and the enumerator over a list of them.
#pragma once

#include <string>
#include <vector>

#include "platform/com_object.h"
#include "platform/com_ptr.h"

namespace zelk::host {

// A moniker that is known by its class and its display name; two with the same of both are equal.
// The operations that combine and store monikers are not offered.
class NamedMoniker : public ComObject<IMoniker> {
 public:
  NamedMoniker(REFCLSID classId, std::wstring displayName);

  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* pClassID) override;
  HRESULT STDMETHODCALLTYPE IsDirty() override;
  HRESULT STDMETHODCALLTYPE Load(IStream*) override;
  HRESULT STDMETHODCALLTYPE Save(IStream*, BOOL) override;
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override;
  HRESULT STDMETHODCALLTYPE BindToObject(IBindCtx*, IMoniker*, REFIID, void** ppvResult) override;
  HRESULT STDMETHODCALLTYPE BindToStorage(IBindCtx*, IMoniker*, REFIID, void** ppvObj) override;
  HRESULT STDMETHODCALLTYPE Reduce(IBindCtx*, DWORD, IMoniker**, IMoniker** ppmkReduced) override;
  HRESULT STDMETHODCALLTYPE ComposeWith(IMoniker*, BOOL, IMoniker** ppmkComposite) override;
  HRESULT STDMETHODCALLTYPE Enum(BOOL, IEnumMoniker** ppenumMoniker) override;
  HRESULT STDMETHODCALLTYPE IsEqual(IMoniker* pmkOtherMoniker) override;
  HRESULT STDMETHODCALLTYPE Hash(DWORD* pdwHash) override;
  HRESULT STDMETHODCALLTYPE IsRunning(IBindCtx*, IMoniker*, IMoniker*) override;
  HRESULT STDMETHODCALLTYPE GetTimeOfLastChange(IBindCtx*, IMoniker*, FILETIME*) override;
  HRESULT STDMETHODCALLTYPE Inverse(IMoniker** ppmk) override;
  HRESULT STDMETHODCALLTYPE CommonPrefixWith(IMoniker*, IMoniker** ppmkPrefix) override;
  HRESULT STDMETHODCALLTYPE RelativePathTo(IMoniker*, IMoniker** ppmkRelPath) override;
  HRESULT STDMETHODCALLTYPE GetDisplayName(IBindCtx*, IMoniker*,
                                           LPOLESTR* ppszDisplayName) override;
  HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, IMoniker*, LPOLESTR, ULONG*,
                                             IMoniker** ppmkOut) override;
  HRESULT STDMETHODCALLTYPE IsSystemMoniker(DWORD* pdwMksys) override;

 private:
  const CLSID classId_;
  const std::wstring displayName_;
};

// An enumerator over the monikers as they stand now, at the first of them.
ComPtr<IEnumMoniker> EnumerateMonikers(std::vector<ComPtr<IMoniker>> monikers);

}  // namespace zelk::host
