// What a plugged-in card registers with the system, for as long as the objects live.
#pragma once

#include <cstdint>
#include <string>

#include "platform/com.h"

namespace zelk::virtual_cards {

// A class that CoCreateInstance finds. Throws std::runtime_error when the system refuses it.
class ClassRegistration {
 public:
  ClassRegistration(REFCLSID classId, IUnknown* classObject);
  ~ClassRegistration();
  ClassRegistration(const ClassRegistration&) = delete;
  ClassRegistration& operator=(const ClassRegistration&) = delete;

 private:
  DWORD cookie_ = 0;
};

// A device in a category of the system device enumerator.
class DeviceRegistration {
 public:
  DeviceRegistration(REFCLSID category, std::wstring friendlyName, IUnknown* device);
  ~DeviceRegistration();
  DeviceRegistration(const DeviceRegistration&) = delete;
  DeviceRegistration& operator=(const DeviceRegistration&) = delete;

 private:
  std::uint32_t token_;
};

}  // namespace zelk::virtual_cards
