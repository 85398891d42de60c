#include "cli/devices.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "platform/device_category.h"

namespace zelk::cli {
namespace {

// The names of the cards that the library knows are plain.
std::string Narrow(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t letter : text) narrow += letter < 0x80 ? static_cast<char>(letter) : '?';
  return narrow;
}

std::wstring TextOf(const DeviceText& text) { return text.Get() ? text.Get() : L""; }

std::vector<Device> DevicesOf(REFCLSID category) {
  std::vector<Device> devices;
  const ComPtr<IEnumMoniker> monikers = EnumerateCategory(category);
  if (!monikers) return devices;
  while (ComPtr<IMoniker> moniker = NextOf<IMoniker>(*monikers.Get())) {
    Device device;
    device.friendlyName = Narrow(TextOf(DeviceName(*moniker.Get())));
    const auto same = std::count_if(devices.begin(), devices.end(), [&](const Device& other) {
      return other.friendlyName == device.friendlyName;
    });
    device.name = device.friendlyName + (same > 0 ? '#' + std::to_string(same + 1) : "");
    device.path = TextOf(DeviceText(*moniker.Get(), L"DevicePath"));
    device.moniker = std::move(moniker);
    devices.push_back(std::move(device));
  }
  return devices;
}

template <class Text>
std::ptrdiff_t SharedBeginning(const Text& left, const Text& right) {
  const auto [end, other] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
  return end - left.begin();
}

}  // namespace

ComPtr<IUnknown> Device::MakeFilter() const { return BindDevice<IUnknown>(*moniker.Get()); }

std::vector<Device> CaptureDevices() { return DevicesOf(kCategoryVideoInput); }
std::vector<Device> TunerDevices() { return DevicesOf(kCategoryTvTuner); }

const Device* TunerOf(const Device& capture, const std::vector<Device>& tuners) {
  const auto likeness = [&](const Device& tuner) {
    return std::tuple(SharedBeginning(capture.path, tuner.path),
                      SharedBeginning(capture.friendlyName, tuner.friendlyName));
  };
  const auto best = std::max_element(
      tuners.begin(), tuners.end(),
      [&](const Device& left, const Device& right) { return likeness(left) < likeness(right); });
  return best == tuners.end() ? nullptr : &*best;
}

}  // namespace zelk::cli
