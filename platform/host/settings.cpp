// The settings folder and its files, and the profile calls that read them.
#include "platform/host/settings.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <utility>

#include "platform/control.h"
#include "platform/ignore_case.h"
#include "platform/process/profile_values.h"

namespace zelk::host {
namespace {

constexpr std::string_view kBlanks = " \t\r\f\v";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct NamedFolder {
  std::mutex mutex;
  std::string path;
};

NamedFolder& Folder() {
  static auto* const folder = new NamedFolder;  // outlives every static object that reads settings
  return *folder;
}

std::string FolderPath() {
  {
    NamedFolder& folder = Folder();
    const std::lock_guard lock(folder.mutex);
    if (!folder.path.empty()) return folder.path;
  }
  const char* const named = std::getenv("ZELKAPI_SETTINGS");
  return named ? named : "";
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view Unquote(std::string_view text) {
  const bool quoted = text.size() >= 2 && text.front() == text.back() &&
                      (text.front() == '"' || text.front() == '\'');
  return quoted ? text.substr(1, text.size() - 2) : text;
}

// The name in a "[name]" line, none for any other line.
std::optional<std::string_view> SectionName(std::string_view line) {
  const std::size_t end = line.rfind(']');
  if (line.empty() || line.front() != '[' || end == std::string_view::npos) return std::nullopt;
  return Trim(line.substr(1, end - 1));
}

// Calls `visit` with the trimmed lines of the first section of that name until it returns true.
// Says whether the section exists.
template <class Visit>
bool VisitSection(std::string_view fileName, std::string_view section, Visit visit) {
  const std::string path = SettingsPath(fileName);
  if (path.empty()) return false;
  std::ifstream file(path, std::ios::binary);
  std::string text;
  bool inside = false;
  for (bool first = true; std::getline(file, text); first = false) {
    std::string_view line = text;
    if (first && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
    line = Trim(line);
    if (line.empty() || line.front() == ';') continue;
    if (const auto name = SectionName(line)) {
      if (inside) break;
      inside = EqualIgnoringCase(*name, section);
    } else if (inside && visit(line)) {
      break;
    }
  }
  return inside;
}

// As Windows reads an integer: blanks and control characters, a sign, a base by its small letter,
// and digits up to the first character that is none. What goes beyond 32 bits is lost.
std::uint32_t ParseInteger(std::string text) {
  constexpr std::size_t kMostCharacters = 29;  // what comes behind them is not looked at
  text.resize(std::min(text.size(), kMostCharacters));
  const char* at = text.c_str();
  while (*at > 0 && *at <= ' ') ++at;
  const bool negative = *at == '-';
  if (negative || *at == '+') ++at;
  int base = 10;
  if (*at == '0') base = at[1] == 'x' ? 16 : at[1] == 'o' ? 8 : at[1] == 'b' ? 2 : 10;
  if (base != 10) at += 2;
  std::uint32_t value = 0;
  for (std::uint32_t digit = 0; std::from_chars(at, at + 1, digit, base).ec == std::errc{}; ++at)
    value = value * static_cast<std::uint32_t>(base) + digit;
  return negative ? 0 - value : value;
}

}  // namespace

void UseSettingsFolder(std::string path) {
  NamedFolder& folder = Folder();
  const std::lock_guard lock(folder.mutex);
  folder.path = std::move(path);
}

std::string SettingsPath(std::string_view fileName) {
  if (fileName.empty() || fileName.front() == '/') return std::string(fileName);
  const std::string folder = FolderPath();
  return folder.empty() ? std::string() : folder + '/' + std::string(fileName);
}

std::optional<std::string> FindSetting(std::string_view fileName, std::string_view section,
                                       std::string_view key) {
  std::optional<std::string> value;
  VisitSection(fileName, section, [&](std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || !EqualIgnoringCase(Trim(line.substr(0, equals)), key))
      return false;
    value = Unquote(Trim(line.substr(equals + 1)));
    return true;
  });
  return value ? value : FindAddedValue(fileName, section, key);
}

bool HasSettingsSection(std::string_view fileName, std::string_view section) {
  return VisitSection(fileName, section, [](std::string_view) { return false; });
}

}  // namespace zelk::host

DWORD GetPrivateProfileStringA(LPCSTR lpAppName, LPCSTR lpKeyName, LPCSTR lpDefault,
                               LPSTR lpReturnedString, DWORD nSize, LPCSTR lpFileName) {
  using namespace zelk::host;
  if (!lpReturnedString || nSize == 0) return 0;
  lpReturnedString[0] = '\0';
  // Without a section or a key Windows lists the names there are; nobody here asks for that.
  if (!lpAppName || !lpKeyName || !lpFileName) return 0;

  std::string value;
  if (const auto found = FindSetting(lpFileName, lpAppName, lpKeyName)) {
    value = *found;
  } else if (lpDefault) {
    value = lpDefault;
    value.erase(value.find_last_not_of(kBlanks) + 1);
  }
  const std::size_t length = std::min<std::size_t>(value.size(), nSize - 1);
  value.copy(lpReturnedString, length);
  lpReturnedString[length] = '\0';
  return static_cast<DWORD>(length);
}

UINT GetPrivateProfileIntA(LPCSTR lpAppName, LPCSTR lpKeyName, INT nDefault, LPCSTR lpFileName) {
  using namespace zelk::host;
  const auto fallback = static_cast<UINT>(nDefault);
  if (!lpAppName || !lpKeyName || !lpFileName) return fallback;
  const auto found = FindSetting(lpFileName, lpAppName, lpKeyName);
  if (!found || found->empty()) return fallback;
  return ParseInteger(*found);
}
