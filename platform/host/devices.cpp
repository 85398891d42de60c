// Device categories: what the process put there, and the system device enumerator that lists it.
#include <mutex>

#include "platform/host/control.h"
#include "platform/host/ignore_case.h"
#include "platform/host/moniker.h"
#include "platform/host/system_classes.h"

namespace zelk::host {
namespace {

constexpr CLSID kClsidDeviceMoniker = {
    0x4315D437, 0x5B8C, 0x11D0, {0xBD, 0x3B, 0x00, 0xA0, 0xC9, 0x11, 0xCE, 0x86}};
constexpr HRESULT kNoSuchProperty = static_cast<HRESULT>(0x80070002);

struct Device {
  std::uint32_t token;
  CLSID category;
  std::wstring friendlyName;
  ComPtr<IUnknown> object;
};

struct DeviceTable {
  std::mutex mutex;
  std::vector<Device> devices;
  std::uint32_t nextToken = 1;
};

DeviceTable& Table() {
  static auto* const table = new DeviceTable;  // devices may be removed by static destructors
  return *table;
}

class DeviceProperties : public ComObject<IPropertyBag> {
 public:
  explicit DeviceProperties(std::wstring friendlyName) : friendlyName_(std::move(friendlyName)) {}

  // The type in `pVar` asks for a conversion; a name converts to nothing but text.
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR pszPropName, VARIANT* pVar, IErrorLog*) override {
    if (!pszPropName || !pVar) return E_POINTER;
    if (!EqualIgnoringCase<wchar_t>(pszPropName, L"FriendlyName")) return kNoSuchProperty;
    if (pVar->vt != VT_EMPTY && pVar->vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
    BSTR const text = SysAllocString(friendlyName_.c_str());
    if (!text) return E_OUTOFMEMORY;
    pVar->vt = VT_BSTR;
    pVar->bstrVal = text;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR, VARIANT*) override { return E_NOTIMPL; }

 private:
  const std::wstring friendlyName_;
};

class DeviceMoniker : public NamedMoniker {
 public:
  // Two cards of one make have the same friendly name; the number keeps their monikers apart.
  explicit DeviceMoniker(const Device& device)
      : NamedMoniker(kClsidDeviceMoniker,
                     L"@device:host:" + std::to_wstring(device.token) + L":" + device.friendlyName),
        friendlyName_(device.friendlyName),
        object_(device.object) {}

  HRESULT STDMETHODCALLTYPE BindToObject(IBindCtx*, IMoniker* pmkToLeft, REFIID riidResult,
                                         void** ppvResult) override {
    if (!ppvResult) return E_POINTER;
    *ppvResult = nullptr;
    if (pmkToLeft) return E_INVALIDARG;
    return object_ ? object_->QueryInterface(riidResult, ppvResult) : E_FAIL;
  }

  HRESULT STDMETHODCALLTYPE BindToStorage(IBindCtx*, IMoniker* pmkToLeft, REFIID riid,
                                          void** ppvObj) override {
    if (!ppvObj) return E_POINTER;
    *ppvObj = nullptr;
    if (pmkToLeft) return E_INVALIDARG;
    const auto properties = ComPtr<IPropertyBag>::Adopt(new DeviceProperties(friendlyName_));
    return properties->QueryInterface(riid, ppvObj);
  }

 private:
  const std::wstring friendlyName_;
  const ComPtr<IUnknown> object_;
};

class SystemDeviceEnum : public ComObject<ICreateDevEnum> {
 public:
  HRESULT STDMETHODCALLTYPE CreateClassEnumerator(REFCLSID clsidDeviceClass,
                                                  IEnumMoniker** ppEnumMoniker,
                                                  DWORD dwFlags) override {
    if (!ppEnumMoniker) return E_POINTER;
    *ppEnumMoniker = nullptr;
    if (dwFlags != 0) return E_INVALIDARG;
    std::vector<ComPtr<IMoniker>> monikers;
    {
      DeviceTable& table = Table();
      const std::lock_guard lock(table.mutex);
      for (const Device& device : table.devices) {
        if (device.category == clsidDeviceClass)
          monikers.push_back(ComPtr<IMoniker>::Adopt(new DeviceMoniker(device)));
      }
    }
    if (monikers.empty()) return S_FALSE;
    *ppEnumMoniker = EnumerateMonikers(std::move(monikers)).Detach();
    return S_OK;
  }
};

}  // namespace

std::uint32_t AddDevice(REFCLSID category, std::wstring friendlyName, IUnknown* object) {
  ComPtr<IUnknown> shared(object);
  DeviceTable& table = Table();
  const std::lock_guard lock(table.mutex);
  const std::uint32_t token = table.nextToken++;
  table.devices.push_back({token, category, std::move(friendlyName), std::move(shared)});
  return token;
}

void RemoveDevice(std::uint32_t token) {
  ComPtr<IUnknown> removed;  // released once the table is unlocked
  DeviceTable& table = Table();
  const std::lock_guard lock(table.mutex);
  for (auto device = table.devices.begin(); device != table.devices.end(); ++device) {
    if (device->token != token) continue;
    removed = std::move(device->object);
    table.devices.erase(device);
    return;
  }
}

HRESULT CreateSystemDeviceEnum(REFIID iid, void** object) {
  const auto created = ComPtr<ICreateDevEnum>::Adopt(new SystemDeviceEnum);
  return created->QueryInterface(iid, object);
}

}  // namespace zelk::host
