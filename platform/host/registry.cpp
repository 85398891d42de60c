// Registry values, read from "registry.ini" of the settings folder: a section is a key.
#include <cstring>
#include <new>
#include <string>

#include "platform/host/settings.h"
#include "platform/host/win32.h"

// An open key. The name is Windows' own for what an HKEY points to.
struct HKEY__ {
  std::string path;
};

namespace {

constexpr const char* kRegistryFile = "registry.ini";
constexpr LSTATUS kAccessDenied = 5;
constexpr LSTATUS kInvalidHandle = 6;
constexpr LSTATUS kInvalidParameter = 87;

const char* RootName(HKEY key) {
  if (key == HKEY_CURRENT_USER) return "HKEY_CURRENT_USER";
  if (key == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE";
  return nullptr;
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD ulOptions, REGSAM samDesired,
                      HKEY* phkResult) {
  if (!phkResult || !lpSubKey || ulOptions != 0) return kInvalidParameter;
  *phkResult = nullptr;
  const char* const root = RootName(hKey);
  if (!root) return kInvalidHandle;
  if ((samDesired & ~KEY_READ) != 0) return kAccessDenied;  // nothing can be written

  std::string path = std::string(root) + '\\' + lpSubKey;
  if (!zelk::host::HasSettingsSection(kRegistryFile, path)) return ERROR_FILE_NOT_FOUND;
  *phkResult = new HKEY__{std::move(path)};
  return ERROR_SUCCESS;
}

LSTATUS RegQueryValueExA(HKEY hKey, LPCSTR lpValueName, LPDWORD lpReserved, LPDWORD lpType,
                         LPBYTE lpData, LPDWORD lpcbData) {
  if (!hKey || RootName(hKey)) return kInvalidHandle;
  if (!lpValueName || lpReserved || (lpData && !lpcbData)) return kInvalidParameter;
  const auto value = zelk::host::FindSetting(kRegistryFile, hKey->path, lpValueName);
  if (!value) return ERROR_FILE_NOT_FOUND;

  if (lpType) *lpType = REG_SZ;
  const auto needed = static_cast<DWORD>(value->size() + 1);
  const DWORD room = lpcbData ? *lpcbData : 0;
  if (lpcbData) *lpcbData = needed;
  if (!lpData) return ERROR_SUCCESS;
  if (room < needed) return ERROR_MORE_DATA;
  std::memcpy(lpData, value->c_str(), needed);
  return ERROR_SUCCESS;
}

LSTATUS RegCloseKey(HKEY hKey) {
  if (!hKey) return kInvalidHandle;
  if (!RootName(hKey)) delete hKey;
  return ERROR_SUCCESS;
}
