// Device categories: what the process put there, and the enumerator that lists it.
#include "platform/process/device_table.h"

#include <mutex>
#include <utility>

#include "platform/ignore_case.h"
#include "platform/process/moniker.h"

namespace zelk::host {
namespace {

constexpr CLSID kClsidDeviceMoniker = {
    0x4315D437, 0x5B8C, 0x11D0, {0xBD, 0x3B, 0x00, 0xA0, 0xC9, 0x11, 0xCE, 0x86}};
constexpr HRESULT kNoSuchProperty = static_cast<HRESULT>(0x80070002);

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
  DeviceMoniker(std::uint32_t token, std::wstring friendlyName, ComPtr<IUnknown> object)
      : NamedMoniker(kClsidDeviceMoniker,
                     L"@device:host:" + std::to_wstring(token) + L":" + friendlyName),
        friendlyName_(std::move(friendlyName)),
        object_(std::move(object)) {}

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

// Appends what another enumerator lists.
void AppendMonikers(ICreateDevEnum& source, REFCLSID category,
                    std::vector<ComPtr<IMoniker>>& monikers) {
  ComPtr<IEnumMoniker> list;
  if (FAILED(Obtain(list, [&](IEnumMoniker** place) {
        return source.CreateClassEnumerator(category, place, 0);
      }))) {
    return;
  }
  while (ComPtr<IMoniker> moniker = NextOf<IMoniker>(*list.Get()))
    monikers.push_back(std::move(moniker));
}

class DeviceEnum : public ComObject<ICreateDevEnum> {
 public:
  explicit DeviceEnum(ComPtr<ICreateDevEnum> others) : others_(std::move(others)) {}

  HRESULT STDMETHODCALLTYPE CreateClassEnumerator(REFCLSID clsidDeviceClass,
                                                  IEnumMoniker** ppEnumMoniker,
                                                  DWORD dwFlags) override {
    if (!ppEnumMoniker) return E_POINTER;
    *ppEnumMoniker = nullptr;
    if (dwFlags != 0) return E_INVALIDARG;
    std::vector<ComPtr<IMoniker>> monikers = DeviceTable::OfProcess().Monikers(clsidDeviceClass);
    if (others_) AppendMonikers(*others_.Get(), clsidDeviceClass, monikers);
    if (monikers.empty()) return S_FALSE;
    *ppEnumMoniker = EnumerateMonikers(std::move(monikers)).Detach();
    return S_OK;
  }

 private:
  const ComPtr<ICreateDevEnum> others_;
};

}  // namespace

DeviceTable& DeviceTable::OfProcess() {
  static auto* const table = new DeviceTable;  // devices may be removed by static destructors
  return *table;
}

std::uint32_t DeviceTable::Add(REFCLSID category, std::wstring friendlyName, IUnknown* object) {
  ComPtr<IUnknown> shared(object);
  const std::lock_guard lock(mutex_);
  const std::uint32_t token = nextToken_++;
  devices_.push_back({token, category, std::move(friendlyName), std::move(shared)});
  return token;
}

void DeviceTable::Remove(std::uint32_t token) {
  ComPtr<IUnknown> removed;  // released once the table is unlocked
  const std::lock_guard lock(mutex_);
  for (auto device = devices_.begin(); device != devices_.end(); ++device) {
    if (device->token != token) continue;
    removed = std::move(device->object);
    devices_.erase(device);
    return;
  }
}

bool DeviceTable::Empty() const {
  const std::lock_guard lock(mutex_);
  return devices_.empty();
}

std::vector<ComPtr<IMoniker>> DeviceTable::Monikers(REFCLSID category) const {
  const std::lock_guard lock(mutex_);
  std::vector<ComPtr<IMoniker>> monikers;
  for (const Device& device : devices_) {
    if (device.category == category) {
      monikers.push_back(ComPtr<IMoniker>::Adopt(
          new DeviceMoniker(device.token, device.friendlyName, device.object)));
    }
  }
  return monikers;
}

HRESULT CreateDeviceEnum(ComPtr<ICreateDevEnum> others, REFIID iid, void** object) {
  const auto created = ComPtr<ICreateDevEnum>::Adopt(new DeviceEnum(std::move(others)));
  return created->QueryInterface(iid, object);
}

}  // namespace zelk::host
