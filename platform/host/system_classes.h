// The classes that the host itself offers to CoCreateInstance.
#pragma once

#include "platform/host/com.h"

namespace zelk::host {

HRESULT CreateSystemDeviceEnum(REFIID iid, void** object);
HRESULT CreateFilterGraph(REFIID iid, void** object);
HRESULT CreateCaptureGraphBuilder(REFIID iid, void** object);

}  // namespace zelk::host
