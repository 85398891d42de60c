// The settings folder on Windows: its profile files are read by Windows itself, its registry values
// are put into a key that goes with the system's session, and that key is opened.
#include "platform/windows/settings.h"

#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "platform/control.h"
#include "platform/process/calls.h"
#include "platform/process/profile_values.h"
#include "platform/windows/imports.h"

namespace zelk::host {
namespace {

const auto systemProfileInt =
    SystemFunction("kernel32.dll", "GetPrivateProfileIntA", &GetPrivateProfileIntA);
const auto systemProfileString =
    SystemFunction("kernel32.dll", "GetPrivateProfileStringA", &GetPrivateProfileStringA);
const auto systemOpenKey = SystemFunction("advapi32.dll", "RegOpenKeyExA", &RegOpenKeyExA);
const auto systemUserLocale =
    SystemFunction("kernel32.dll", "GetUserDefaultLCID", &GetUserDefaultLCID);
const auto systemLocaleInfo = SystemFunction("kernel32.dll", "GetLocaleInfoA", &GetLocaleInfoA);

constexpr const char* kRegistryFile = "registry.ini";
constexpr const char* kLocaleFile = "locale.ini";
constexpr const char* kLocaleSection = "locale";
constexpr LCID kEnglishUnitedStates = 0x0409;
constexpr DWORD kLongestSection = 32767;

std::string& Folder() {
  static auto* const folder = new std::string;  // outlives every static object that reads settings
  return *folder;
}

// A file's path: a plain name stands in the settings folder, Windows would look for it in its own.
class PathOf {
 public:
  explicit PathOf(LPCSTR file) : file_(file) {
    if (file && !Folder().empty() && std::strpbrk(file, "\\/:") == nullptr)
      path_ = Folder() + '\\' + file;
  }
  LPCSTR Get() const { return path_.empty() ? file_ : path_.c_str(); }

 private:
  LPCSTR file_;
  std::string path_;
};

std::optional<std::string> AddedValue(LPCSTR file, LPCSTR section, LPCSTR key) {
  if (!file || !section || !key) return std::nullopt;
  return FindAddedValue(file, section, key);
}

std::string Setting(LPCSTR file, LPCSTR section, LPCSTR key) {
  char value[64];
  systemProfileString(section, key, "", value, sizeof value, PathOf(file).Get());
  return value;
}

// A key of this process's own that holds what the section names, as text.
void FillKey(HKEY key, const char* line) {
  for (; *line != '\0'; line += std::strlen(line) + 1) {
    const char* const equals = std::strchr(line, '=');
    if (!equals) continue;
    const std::string name(line, equals);
    RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(equals + 1),
                   static_cast<DWORD>(std::strlen(equals + 1) + 1));
  }
}

const char* RootName(HKEY key) {
  if (key == HKEY_CURRENT_USER) return "HKEY_CURRENT_USER\\";
  if (key == HKEY_LOCAL_MACHINE) return "HKEY_LOCAL_MACHINE\\";
  return nullptr;
}

}  // namespace

void UseSettingsFolder(std::string folder) {
  TakeOverCalls();
  if (folder.empty()) {
    Folder().clear();
    return;
  }
  char full[MAX_PATH];
  const DWORD length = GetFullPathNameA(folder.c_str(), sizeof full, full, nullptr);
  Folder().assign(full, length < sizeof full ? length : 0);
}

// The fallback that takes effect: what the process added to the file goes before the caller's own.
UINT WINAPI ProfileInt(LPCSTR section, LPCSTR key, INT fallback, LPCSTR file) {
  if (const auto added = AddedValue(file, section, key)) fallback = StrToIntA(added->c_str());
  return systemProfileInt(section, key, fallback, PathOf(file).Get());
}

DWORD WINAPI ProfileString(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR text, DWORD size,
                           LPCSTR file) {
  const auto added = AddedValue(file, section, key);
  return systemProfileString(section, key, added ? added->c_str() : fallback, text, size,
                             PathOf(file).Get());
}

LSTATUS WINAPI OpenRegistryKey(HKEY key, LPCSTR subKey, DWORD options, REGSAM access,
                               HKEY* result) {
  const char* const root = RootName(key);
  if (Folder().empty() || !root || !subKey) {
    return systemOpenKey(key, subKey, options, access, result);
  }
  std::vector<char> section(kLongestSection);
  if (GetPrivateProfileSectionA((std::string(root) + subKey).c_str(), section.data(),
                                kLongestSection, PathOf(kRegistryFile).Get()) == 0) {
    return ERROR_FILE_NOT_FOUND;
  }
  const std::string name = "Software\\ZElkAPI settings " + std::to_string(GetCurrentProcessId());
  RegDeleteKeyA(HKEY_CURRENT_USER, name.c_str());  // what an earlier question left
  const LSTATUS created =
      RegCreateKeyExA(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                      KEY_ALL_ACCESS, nullptr, result, nullptr);
  if (created == ERROR_SUCCESS) FillKey(*result, section.data());
  return created;
}

LCID WINAPI UserLocale() {
  if (Folder().empty()) return systemUserLocale();
  const auto locale = static_cast<LCID>(
      std::strtoul(Setting(kLocaleFile, kLocaleSection, "lcid").c_str(), nullptr, 16));
  return locale != 0 ? locale : kEnglishUnitedStates;
}

int WINAPI LocaleInfo(LCID locale, LCTYPE type, LPSTR text, int size) {
  const std::string country = Folder().empty() || type != LOCALE_IDEFAULTCOUNTRY
                                  ? std::string()
                                  : Setting(kLocaleFile, kLocaleSection, "country");
  if (country.empty()) return systemLocaleInfo(locale, type, text, size);
  const int needed = static_cast<int>(country.size()) + 1;
  if (size == 0) return needed;
  if (!text || size < needed) return 0;
  std::memcpy(text, country.c_str(), country.size() + 1);
  return needed;
}

}  // namespace zelk::host
