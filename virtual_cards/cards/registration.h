// What a plugged-in card registers with the system, for as long as the objects live.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/com.h"
#include "platform/win32.h"

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

// A plain name as devices have it.
std::wstring WideName(std::string_view plain);
// What an installer calls the tuner of a card whose capture device has this name: "... TV Tuner"
// for
// "... Video Capture".
std::string TunerNameBeside(std::string captureName);

struct ModuleEntryPoint {
  const char* name;
  FARPROC address;
};

// A library that LoadLibraryA finds under a plain file name.
class ModuleRegistration {
 public:
  ModuleRegistration(std::string fileName, const std::vector<ModuleEntryPoint>& entries);
  ~ModuleRegistration();
  ModuleRegistration(const ModuleRegistration&) = delete;
  ModuleRegistration& operator=(const ModuleRegistration&) = delete;

 private:
  std::string fileName_;
};

// A value that an installer has left in a profile file of a plain name. What the user's own file
// says goes before it.
class ProfileRegistration {
 public:
  ProfileRegistration(std::string file, std::string section, std::string key, std::string value);
  ~ProfileRegistration();
  ProfileRegistration(const ProfileRegistration&) = delete;
  ProfileRegistration& operator=(const ProfileRegistration&) = delete;

 private:
  std::uint32_t token_;
};

}  // namespace zelk::virtual_cards
