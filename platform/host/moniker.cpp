// Monikers known by their display names.
#include "platform/host/moniker.h"

#include <cwchar>

#include "platform/enumerator.h"
#include "platform/host/ignore_case.h"

namespace zelk::host {
namespace {

// An operation that delivers nothing leaves no pointer behind.
template <class Pointer>
HRESULT NotOffered(Pointer* result) {
  if (result) *result = nullptr;
  return E_NOTIMPL;
}

}  // namespace

NamedMoniker::NamedMoniker(REFCLSID classId, std::wstring displayName)
    : classId_(classId), displayName_(std::move(displayName)) {}

HRESULT NamedMoniker::GetClassID(CLSID* pClassID) {
  if (!pClassID) return E_POINTER;
  *pClassID = classId_;
  return S_OK;
}

HRESULT NamedMoniker::IsDirty() { return S_FALSE; }
HRESULT NamedMoniker::Load(IStream*) { return E_NOTIMPL; }
HRESULT NamedMoniker::Save(IStream*, BOOL) { return E_NOTIMPL; }
HRESULT NamedMoniker::GetSizeMax(ULARGE_INTEGER*) { return E_NOTIMPL; }

HRESULT NamedMoniker::BindToObject(IBindCtx*, IMoniker*, REFIID, void** ppvResult) {
  return NotOffered(ppvResult);
}
HRESULT NamedMoniker::BindToStorage(IBindCtx*, IMoniker*, REFIID, void** ppvObj) {
  return NotOffered(ppvObj);
}
HRESULT NamedMoniker::Reduce(IBindCtx*, DWORD, IMoniker**, IMoniker** ppmkReduced) {
  return NotOffered(ppmkReduced);
}
HRESULT NamedMoniker::ComposeWith(IMoniker*, BOOL, IMoniker** ppmkComposite) {
  return NotOffered(ppmkComposite);
}
HRESULT NamedMoniker::Enum(BOOL, IEnumMoniker** ppenumMoniker) { return NotOffered(ppenumMoniker); }

// Goes by what every moniker can say of itself, so that monikers of any origin can be compared.
HRESULT NamedMoniker::IsEqual(IMoniker* pmkOtherMoniker) {
  if (!pmkOtherMoniker) return E_INVALIDARG;
  CLSID otherClass{};
  if (FAILED(pmkOtherMoniker->GetClassID(&otherClass)) || otherClass != classId_) return S_FALSE;
  LPOLESTR otherName = nullptr;
  if (FAILED(pmkOtherMoniker->GetDisplayName(nullptr, nullptr, &otherName)) || !otherName)
    return S_FALSE;
  const bool equal = EqualIgnoringCase<wchar_t>(displayName_, otherName);
  CoTaskMemFree(otherName);
  return equal ? S_OK : S_FALSE;
}

// Equal monikers have equal hashes: letters count without case here as well.
HRESULT NamedMoniker::Hash(DWORD* pdwHash) {
  if (!pdwHash) return E_POINTER;
  DWORD hash = 2166136261;  // FNV-1a
  for (const wchar_t letter : displayName_)
    hash = (hash ^ static_cast<DWORD>(FoldCase(letter))) * 16777619;
  *pdwHash = hash;
  return S_OK;
}

HRESULT NamedMoniker::IsRunning(IBindCtx*, IMoniker*, IMoniker*) { return E_NOTIMPL; }
HRESULT NamedMoniker::GetTimeOfLastChange(IBindCtx*, IMoniker*, FILETIME*) { return E_NOTIMPL; }
HRESULT NamedMoniker::Inverse(IMoniker** ppmk) { return NotOffered(ppmk); }
HRESULT NamedMoniker::CommonPrefixWith(IMoniker*, IMoniker** ppmkPrefix) {
  return NotOffered(ppmkPrefix);
}
HRESULT NamedMoniker::RelativePathTo(IMoniker*, IMoniker** ppmkRelPath) {
  return NotOffered(ppmkRelPath);
}

HRESULT NamedMoniker::GetDisplayName(IBindCtx*, IMoniker*, LPOLESTR* ppszDisplayName) {
  if (!ppszDisplayName) return E_POINTER;
  *ppszDisplayName = nullptr;
  const std::size_t letters = displayName_.size() + 1;
  auto* const copy = static_cast<LPOLESTR>(CoTaskMemAlloc(letters * sizeof(OLECHAR)));
  if (!copy) return E_OUTOFMEMORY;
  std::wmemcpy(copy, displayName_.c_str(), letters);
  *ppszDisplayName = copy;
  return S_OK;
}

HRESULT NamedMoniker::ParseDisplayName(IBindCtx*, IMoniker*, LPOLESTR, ULONG*, IMoniker** ppmkOut) {
  return NotOffered(ppmkOut);
}
HRESULT NamedMoniker::IsSystemMoniker(DWORD*) { return E_NOTIMPL; }

ComPtr<IEnumMoniker> EnumerateMonikers(std::vector<ComPtr<IMoniker>> monikers) {
  return ComPtr<IEnumMoniker>::Adopt(new Enumerator<IEnumMoniker, IMoniker>(std::move(monikers)));
}

}  // namespace zelk::host
