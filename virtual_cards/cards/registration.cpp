#include "virtual_cards/cards/registration.h"

#include <stdexcept>
#include <utility>

// The only place in the cards that speaks to the system as no driver does.
#include "platform/control.h"

namespace zelk::virtual_cards {

ClassRegistration::ClassRegistration(REFCLSID classId, IUnknown* classObject) {
  const HRESULT code = CoRegisterClassObject(classId, classObject, CLSCTX_INPROC_SERVER,
                                             REGCLS_MULTIPLEUSE, &cookie_);
  if (FAILED(code)) throw std::runtime_error("a virtual card's COM class cannot be registered");
}

ClassRegistration::~ClassRegistration() { CoRevokeClassObject(cookie_); }

DeviceRegistration::DeviceRegistration(REFCLSID category, std::wstring friendlyName,
                                       IUnknown* device)
    : token_(host::AddDevice(category, std::move(friendlyName), device)) {}

DeviceRegistration::~DeviceRegistration() { host::RemoveDevice(token_); }

std::wstring WideName(std::string_view plain) { return {plain.begin(), plain.end()}; }

std::string TunerNameBeside(std::string captureName) {
  for (const std::string_view word : {"Video Capture", "Capture"}) {
    const std::size_t at = captureName.find(word);
    if (at != std::string::npos) return captureName.replace(at, word.size(), "TV Tuner");
  }
  return captureName + " TV Tuner";
}

ModuleRegistration::ModuleRegistration(std::string fileName,
                                       const std::vector<ModuleEntryPoint>& entries)
    : fileName_(std::move(fileName)) {
  std::vector<host::ModuleEntry> table;
  for (const ModuleEntryPoint& entry : entries) table.push_back({entry.name, entry.address});
  host::RegisterModule(fileName_, table);
}

ModuleRegistration::~ModuleRegistration() { host::UnregisterModule(fileName_); }

ProfileRegistration::ProfileRegistration(std::string file, std::string section, std::string key,
                                         std::string value)
    : token_(host::AddProfileValue(std::move(file), std::move(section), std::move(key),
                                   std::move(value))) {}

ProfileRegistration::~ProfileRegistration() { host::RemoveProfileValue(token_); }

}  // namespace zelk::virtual_cards
