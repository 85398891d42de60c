// The devices that the process itself put into categories of the system device enumerator.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/com_ptr.h"
#include "platform/mutex.h"

namespace zelk::host {

class DeviceTable {
 public:
  static DeviceTable& OfProcess();

  // Answers a token for Remove.
  std::uint32_t Add(REFCLSID category, std::wstring friendlyName, IUnknown* object);
  void Remove(std::uint32_t token);
  bool Empty() const;
  // In the order in which the devices were added. They stay valid when their devices go.
  std::vector<ComPtr<IMoniker>> Monikers(REFCLSID category) const;

 private:
  struct Device {
    std::uint32_t token;
    CLSID category;
    std::wstring friendlyName;
    ComPtr<IUnknown> object;
  };

  mutable Mutex mutex_;
  std::vector<Device> devices_;
  std::uint32_t nextToken_ = 1;
};

// A system device enumerator that lists the table's devices and behind them those of `others`
// (null: nothing more).
HRESULT CreateDeviceEnum(ComPtr<ICreateDevEnum> others, REFIID iid, void** object);

}  // namespace zelk::host
