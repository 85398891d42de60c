#include <gtest/gtest.h>
#include <stdlib.h>

#include <array>

#include "platform/control.h"
#include "tests/support/temp_folder.h"

namespace zelk::testing {
namespace {

class Settings : public ::testing::Test {
 protected:
  Settings() { host::UseSettingsFolder(folder_.Path()); }
  ~Settings() override { host::UseSettingsFolder(""); }

  static std::string Read(const char* section, const char* key, const std::string& file = "a.ini") {
    std::array<char, 64> text{};
    const DWORD length =
        GetPrivateProfileStringA(section, key, "absent  ", text.data(), text.size(), file.c_str());
    EXPECT_EQ(length, std::string_view(text.data()).size());
    return text.data();
  }

  TempFolder folder_;
};

TEST_F(Settings, ProfileFilesAreReadAsWindowsReadsThem) {
  folder_.Write("a.ini",
                "\xEF\xBB\xBF[First]\r\n  Name =  two words \t\r\n;Hidden=1\r\n"
                "quoted=\" kept \"\r\nsingle='a'\r\nhalf=\"open\r\nempty=\r\nformula=a=b;c\r\n"
                "name=late\r\n"
                "[ Second ] \r\nonly=second\r\n[FIRST]\r\nonly=again\r\n");
  const std::array<const char*, 3> texts[] = {
      {"fIRST", "NAME", "two words"}, {"First", ";Hidden", "absent"}, {"First", "quoted", " kept "},
      {"First", "single", "a"},       {"First", "half", "\"open"},    {"First", "empty", ""},
      {"First", "formula", "a=b;c"},  {"second", "only", "second"},   {"First", "only", "absent"}};
  for (const auto& [section, key, expected] : texts) EXPECT_EQ(Read(section, key), expected) << key;

  std::array<char, 4> cut{'x', 'x', 'x', 'x'};
  EXPECT_EQ(GetPrivateProfileStringA("First", "name", nullptr, cut.data(), 4, "a.ini"), 3U);
  EXPECT_STREQ(cut.data(), "two");
  EXPECT_EQ(GetPrivateProfileStringA("First", "none", nullptr, cut.data(), 4, "a.ini"), 0U);
  EXPECT_STREQ(cut.data(), "");
}

// What GetPrivateProfileIntA was seen to answer on a 32-bit system.
TEST_F(Settings, IntegersAreReadAsWindowsReadsThem) {
  const std::pair<int, std::vector<std::string>> cases[] = {
      {0, {"+-5", "- 5", "abc", "\2405", "' '", "0X1", "0x", "'0x 1'", "0B1", "0O1", "4294967296"}},
      {1, {"1", "0x1", "0x1g", "0b12", "0o18", std::string(28, '0') + "12"}},
      {7, {"+7", "7 8", "7abc", "' \t7'"}},
      {17, {"017", "0x11", "0b10001", "0o21"}},
      {255, {"0xfF"}},
      {-16, {"-16", "-0x10"}},
      {-1, {"4294967295", "-4294967297"}},
      {1215752191, {"99999999999"}},
      {77, {""}}};
  for (const auto& [expected, texts] : cases) {
    for (const std::string& text : texts) {
      folder_.Write("a.ini", "[s]\r\nk=" + text + "\r\n");
      EXPECT_EQ(static_cast<int>(GetPrivateProfileIntA("s", "k", 77, "a.ini")), expected) << text;
    }
  }
  EXPECT_EQ(static_cast<int>(GetPrivateProfileIntA("s", "none", -3, "a.ini")), -3);
}

TEST_F(Settings, PlainNamesLieInTheSettingsFolderAlone) {
  const TempFolder other;
  other.Write("a.ini", "[s]\nk=other\n");
  const std::filesystem::path current = std::filesystem::current_path();
  std::filesystem::current_path(other.Path());
  EXPECT_EQ(Read("s", "k"), "absent");
  std::filesystem::current_path(current);
  EXPECT_EQ(Read("s", "k", other / "a.ini"), "other");
  folder_.Write("a.ini", "[s]\nk=folder\n");
  EXPECT_EQ(Read("s", "k"), "folder");
  folder_.Write("a.ini", "[s]\nk=edited\n");
  EXPECT_EQ(Read("s", "k"), "edited");

  host::UseSettingsFolder("");
  setenv("ZELKAPI_SETTINGS", other.Path().c_str(), 1);
  EXPECT_EQ(Read("s", "k"), "other");
  unsetenv("ZELKAPI_SETTINGS");
  EXPECT_EQ(Read("s", "k"), "absent");
}

TEST_F(Settings, InstalledValuesStandBehindTheUsersOwn) {
  const std::uint32_t first = host::AddProfileValue("a.ini", "Info", "one", "1");
  const std::uint32_t second = host::AddProfileValue("a.ini", "Info", "one", "2");
  EXPECT_EQ(Read("info", "ONE"), "2");
  EXPECT_EQ(Read("Info", "two"), "absent");
  EXPECT_EQ(Read("Info", "one", "b.ini"), "absent");
  folder_.Write("a.ini", "[Info]\none=own\n");
  EXPECT_EQ(Read("Info", "one"), "own");
  folder_.Write("a.ini", "[Info]\nthree=3\n");
  EXPECT_EQ(Read("Info", "one"), "2");
  host::RemoveProfileValue(second);
  EXPECT_EQ(Read("Info", "one"), "1");
  host::UseSettingsFolder("");
  EXPECT_EQ(GetPrivateProfileIntA("Info", "one", 7, "a.ini"), 1U);
  host::RemoveProfileValue(first);
  EXPECT_EQ(GetPrivateProfileIntA("Info", "one", 7, "a.ini"), 7U);
}

TEST_F(Settings, RegistryValuesNeedRoomForTheirTerminator) {
  HKEY key = nullptr;
  const auto open = [&](const char* path) {
    return RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_READ, &key);
  };
  EXPECT_EQ(open("Control Panel\\International"), ERROR_FILE_NOT_FOUND);
  folder_.Write("registry.ini",
                "[HKEY_CURRENT_USER\\Control Panel\\International]\nLocale=00000409\n");
  EXPECT_EQ(open("Control Panel"), ERROR_FILE_NOT_FOUND);
  ASSERT_EQ(open("control panel\\International"), ERROR_SUCCESS);

  std::array<BYTE, 16> data;
  data.fill('x');
  DWORD type = 0;
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExA(key, "Locale", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
  EXPECT_EQ(size, 9U);
  EXPECT_EQ(type, REG_SZ);
  size = 8;
  EXPECT_EQ(RegQueryValueExA(key, "Locale", nullptr, nullptr, data.data(), &size), ERROR_MORE_DATA);
  EXPECT_EQ(size, 9U);
  EXPECT_EQ(data[0], 'x');
  EXPECT_EQ(RegQueryValueExA(key, "locale", nullptr, nullptr, data.data(), &size), ERROR_SUCCESS);
  EXPECT_STREQ(reinterpret_cast<char*>(data.data()), "00000409");
  EXPECT_EQ(RegQueryValueExA(key, "None", nullptr, nullptr, nullptr, &size), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
}

TEST_F(Settings, LocaleIsTheUnitedStatesUnlessSetOtherwise) {
  std::array<char, 6> country{};
  EXPECT_EQ(GetLocaleInfoA(0x0409, LOCALE_IDEFAULTCOUNTRY, country.data(), 6), 2);
  EXPECT_STREQ(country.data(), "1");
  folder_.Write("locale.ini", "[locale]\nlcid=0404\ncountry=886\n");
  EXPECT_EQ(GetUserDefaultLCID(), 0x0404U);
  EXPECT_EQ(GetLocaleInfoA(0x0404, LOCALE_IDEFAULTCOUNTRY, country.data(), 3), 0);
  EXPECT_EQ(GetLocaleInfoA(0x0404, LOCALE_IDEFAULTCOUNTRY, country.data(), 6), 4);
  EXPECT_EQ(StrToIntA(country.data()), 886);
}

TEST(Text, IsCutAt1024Bytes) {
  std::array<char, 1100> text{};
  text.fill('x');
  EXPECT_EQ(wsprintfA(text.data(), "%s", std::string(2000, 'a').c_str()), 1023);
  EXPECT_EQ(text[1023], '\0');
  EXPECT_EQ(text[1024], 'x');
}

}  // namespace
}  // namespace zelk::testing
