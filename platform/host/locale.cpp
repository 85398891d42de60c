// The user's locale, read from "locale.ini" of the settings folder, and the number reading that
// goes with it.
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/host/settings.h"
#include "platform/host/win32.h"

namespace {

constexpr const char* kLocaleFile = "locale.ini";
constexpr const char* kLocaleSection = "locale";
constexpr LCID kEnglishUnitedStates = 0x0409;
constexpr const char* kUnitedStates = "1";  // dialling code
constexpr LCID kUserDefault = 0x0400;
constexpr LCID kSystemDefault = 0x0800;

}  // namespace

LCID GetUserDefaultLCID() {
  const auto text = zelk::host::FindSetting(kLocaleFile, kLocaleSection, "lcid");
  const auto lcid = text ? static_cast<LCID>(std::strtoul(text->c_str(), nullptr, 16)) : 0;
  return lcid != 0 ? lcid : kEnglishUnitedStates;
}

int GetLocaleInfoA(LCID Locale, LCTYPE LCType, LPSTR lpLCData, int cchData) {
  const bool known =
      Locale == kUserDefault || Locale == kSystemDefault || Locale == GetUserDefaultLCID();
  if (!known || LCType != LOCALE_IDEFAULTCOUNTRY || cchData < 0) return 0;
  const std::string country =
      zelk::host::FindSetting(kLocaleFile, kLocaleSection, "country").value_or(kUnitedStates);
  const int needed = static_cast<int>(country.size()) + 1;
  if (cchData == 0) return needed;
  if (!lpLCData || cchData < needed) return 0;
  std::memcpy(lpLCData, country.c_str(), static_cast<std::size_t>(needed));
  return needed;
}

// Decimal alone: "0x41" is 0. Numbers out of range wrap.
int StrToIntA(LPCSTR pszSrc) {
  if (!pszSrc) return 0;
  while (*pszSrc == ' ' || (*pszSrc >= '\t' && *pszSrc <= '\r')) ++pszSrc;
  const bool negative = *pszSrc == '-';
  if (negative || *pszSrc == '+') ++pszSrc;
  std::uint32_t value = 0;
  for (; *pszSrc >= '0' && *pszSrc <= '9'; ++pszSrc)
    value = value * 10 + static_cast<std::uint32_t>(*pszSrc - '0');
  return static_cast<int>(negative ? 0 - value : value);
}
