// The system device enumerator of a process that has devices of its own: while there are any, a
// class object of the process answers in the system's place and lists the system's devices behind
// its own.
#include <stdexcept>
#include <utility>

#include "platform/com_object.h"
#include "platform/control.h"
#include "platform/process/device_table.h"

namespace zelk::host {
namespace {

class DeviceEnumClass : public ComObject<IClassFactory> {
 public:
  explicit DeviceEnumClass(ComPtr<ICreateDevEnum> system) : system_(std::move(system)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    return outer ? CLASS_E_NOAGGREGATION : CreateDeviceEnum(system_, iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  const ComPtr<ICreateDevEnum> system_;
};

DWORD registration = 0;

void EnterClass() {
  // The system's own, while it can still be reached. A system without one has no devices.
  ComPtr<ICreateDevEnum> system;
  CreateInstance(kClsidSystemDeviceEnum, CLSCTX_INPROC_SERVER, system);
  const auto deviceEnum = ComPtr<IClassFactory>::Adopt(new DeviceEnumClass(std::move(system)));
  if (FAILED(CoRegisterClassObject(kClsidSystemDeviceEnum, deviceEnum.Get(), CLSCTX_INPROC_SERVER,
                                   REGCLS_MULTIPLEUSE, &registration))) {
    throw std::runtime_error("devices need a thread that has initialised COM");
  }
}

}  // namespace

std::uint32_t AddDevice(REFCLSID category, std::wstring friendlyName, IUnknown* object) {
  if (registration == 0) EnterClass();
  return DeviceTable::OfProcess().Add(category, std::move(friendlyName), object);
}

void RemoveDevice(std::uint32_t token) {
  DeviceTable::OfProcess().Remove(token);
  if (registration == 0 || !DeviceTable::OfProcess().Empty()) return;
  CoRevokeClassObject(std::exchange(registration, 0));
}

}  // namespace zelk::host
