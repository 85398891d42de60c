// The COM run-time: class objects, task memory, strings and variants.
#include <cstdlib>
#include <cwchar>
#include <mutex>
#include <vector>

#include "platform/com_ptr.h"
#include "platform/host/com.h"
#include "platform/host/system_classes.h"

namespace {

constexpr HRESULT kChangedMode = static_cast<HRESULT>(0x80010106);
constexpr DWORD kInProcess = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER;

struct SystemClass {
  CLSID classId;
  HRESULT (*create)(REFIID iid, void** object);
};

constexpr SystemClass kSystemClasses[] = {
    {zelk::kClsidSystemDeviceEnum, zelk::host::CreateSystemDeviceEnum},
    {zelk::kClsidFilterGraph, zelk::host::CreateFilterGraph},
    {zelk::kClsidCaptureGraphBuilder2, zelk::host::CreateCaptureGraphBuilder},
};

struct Registration {
  DWORD token;
  CLSID classId;
  DWORD context;
  zelk::ComPtr<IUnknown> object;
};

struct ClassTable {
  std::mutex mutex;
  std::vector<Registration> registrations;
  DWORD nextToken = 1;
};

ClassTable& Table() {
  static auto* const table = new ClassTable;  // classes may be revoked by static destructors
  return *table;
}

// The newest registration of the class, so that a process can put its own in the place of another.
zelk::ComPtr<IUnknown> FindRegistered(REFCLSID classId, DWORD context) {
  ClassTable& table = Table();
  const std::lock_guard lock(table.mutex);
  for (auto entry = table.registrations.rbegin(); entry != table.registrations.rend(); ++entry)
    if (entry->classId == classId && (entry->context & context) != 0) return entry->object;
  return {};
}

struct Apartment {
  int initialisations = 0;
  DWORD mode = 0;
};
thread_local Apartment apartment;

}  // namespace

HRESULT CoInitializeEx(LPVOID pvReserved, DWORD dwCoInit) {
  if (pvReserved) return E_INVALIDARG;
  const DWORD mode = dwCoInit & COINIT_APARTMENTTHREADED;
  if (apartment.initialisations > 0 && apartment.mode != mode) return kChangedMode;
  apartment.mode = mode;
  return apartment.initialisations++ == 0 ? S_OK : S_FALSE;
}

void CoUninitialize() {
  if (apartment.initialisations > 0) --apartment.initialisations;
}

HRESULT CoCreateInstance(REFCLSID rclsid, IUnknown* pUnkOuter, DWORD dwClsContext, REFIID riid,
                         LPVOID* ppv) {
  if (!ppv) return E_POINTER;
  *ppv = nullptr;
  if (pUnkOuter) return CLASS_E_NOAGGREGATION;
  if (const zelk::ComPtr<IUnknown> object = FindRegistered(rclsid, dwClsContext)) {
    zelk::ComPtr<IClassFactory> factory;
    const HRESULT result = zelk::Query(object.Get(), factory);
    return FAILED(result) ? result : factory->CreateInstance(nullptr, riid, ppv);
  }
  if (dwClsContext & CLSCTX_INPROC_SERVER) {
    for (const SystemClass& entry : kSystemClasses)
      if (entry.classId == rclsid) return entry.create(riid, ppv);
  }
  return REGDB_E_CLASSNOTREG;
}

HRESULT CoRegisterClassObject(REFCLSID rclsid, IUnknown* pUnk, DWORD dwClsContext, DWORD flags,
                              DWORD* lpdwRegister) {
  if (!lpdwRegister || !pUnk) return E_POINTER;
  *lpdwRegister = 0;
  if ((dwClsContext & kInProcess) == 0 || (dwClsContext & ~kInProcess) != 0 ||
      flags != REGCLS_MULTIPLEUSE)
    return E_INVALIDARG;
  zelk::ComPtr<IUnknown> object(pUnk);
  ClassTable& table = Table();
  const std::lock_guard lock(table.mutex);
  *lpdwRegister = table.nextToken++;
  table.registrations.push_back({*lpdwRegister, rclsid, dwClsContext, std::move(object)});
  return S_OK;
}

HRESULT CoRevokeClassObject(DWORD dwRegister) {
  zelk::ComPtr<IUnknown> revoked;  // released once the table is unlocked
  ClassTable& table = Table();
  const std::lock_guard lock(table.mutex);
  for (auto entry = table.registrations.begin(); entry != table.registrations.end(); ++entry) {
    if (entry->token != dwRegister) continue;
    revoked = std::move(entry->object);
    table.registrations.erase(entry);
    return S_OK;
  }
  return E_INVALIDARG;
}

LPVOID CoTaskMemAlloc(std::size_t cb) { return std::malloc(cb); }
void CoTaskMemFree(LPVOID pv) { std::free(pv); }

// A BSTR points behind its length: the number of bytes without the terminator.
BSTR SysAllocString(const OLECHAR* psz) {
  if (!psz) return nullptr;
  const std::size_t bytes = std::wcslen(psz) * sizeof(OLECHAR);
  auto* const block =
      static_cast<std::uint32_t*>(std::malloc(sizeof(std::uint32_t) + bytes + sizeof(OLECHAR)));
  if (!block) return nullptr;
  *block = static_cast<std::uint32_t>(bytes);
  std::memcpy(block + 1, psz, bytes + sizeof(OLECHAR));
  return reinterpret_cast<BSTR>(block + 1);
}

void SysFreeString(BSTR bstrString) {
  if (bstrString) std::free(reinterpret_cast<std::uint32_t*>(bstrString) - 1);
}

void VariantInit(VARIANT* pvarg) { *pvarg = VARIANT{}; }

HRESULT VariantClear(VARIANT* pvarg) {
  if (!pvarg) return E_INVALIDARG;
  switch (pvarg->vt) {
    case VT_BSTR:
      SysFreeString(pvarg->bstrVal);
      break;
    case VT_UNKNOWN:
      zelk::ComPtr<IUnknown>::Adopt(pvarg->punkVal);
      break;
    case VT_EMPTY:
    case VT_I4:
      break;
    default:
      return DISP_E_BADVARTYPE;
  }
  VariantInit(pvarg);
  return S_OK;
}
