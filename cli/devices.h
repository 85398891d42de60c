// The capture and tuner devices of the system, by the names that their drivers' installers gave
// them.
#pragma once

#include <string>
#include <vector>

#include "platform/com_ptr.h"

namespace zelk::cli {

struct Device {
  std::string friendlyName;  // as the library takes it
  // What a person calls it: the friendly name, "NAME#2" for the second device of one name.
  std::string name;
  std::wstring path;  // of the hardware that it is on, empty when the device does not tell
  ComPtr<IMoniker> moniker;

  // Makes the device's filter. Null when the driver fails.
  ComPtr<IUnknown> MakeFilter() const;
};

std::vector<Device> CaptureDevices();
std::vector<Device> TunerDevices();

// The tuner that belongs to a capture device: the one on the same hardware, as their paths tell, or
// the one whose name begins most like the capture device's. Null when there is none.
const Device* TunerOf(const Device& capture, const std::vector<Device>& tuners);

}  // namespace zelk::cli
