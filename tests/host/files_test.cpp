#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "platform/host/win32.h"
#include "tests/support/temp_folder.h"

namespace zelk::testing {
namespace {

HANDLE Open(const std::string& path, DWORD disposition,
            DWORD access = GENERIC_READ | GENERIC_WRITE) {
  return CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                     FILE_ATTRIBUTE_NORMAL, nullptr);
}

TEST(Files, AreCreatedKeptOrEmptiedAndReadBack) {
  const TempFolder folder;
  const std::string path = folder / "a.log";
  EXPECT_EQ(Open(path, OPEN_EXISTING), INVALID_HANDLE_VALUE);
  EXPECT_EQ(Open(folder.Path(), OPEN_EXISTING, GENERIC_READ), INVALID_HANDLE_VALUE);
  EXPECT_EQ(Open(path, 1), INVALID_HANDLE_VALUE);  // CREATE_NEW is not offered

  const int lowestFree = open("/dev/null", O_RDONLY);
  ::close(lowestFree);
  HANDLE file = Open(path, OPEN_ALWAYS);
  EXPECT_TRUE(fcntl(lowestFree, F_GETFD) & FD_CLOEXEC);
  DWORD count = 0;
  EXPECT_TRUE(WriteFile(file, "one", 3, &count, nullptr));
  EXPECT_TRUE(CloseHandle(file));

  file = Open(path, OPEN_ALWAYS);
  EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_END), 3U);
  EXPECT_TRUE(WriteFile(file, "two", 3, &count, nullptr));
  EXPECT_EQ(GetFileSize(file, nullptr), 6U);
  EXPECT_EQ(SetFilePointer(file, 1, nullptr, FILE_BEGIN), 1U);
  std::array<char, 8> bytes{};
  EXPECT_TRUE(ReadFile(file, bytes.data(), bytes.size(), &count, nullptr));
  EXPECT_EQ(std::string_view(bytes.data(), count), "netwo");
  EXPECT_TRUE(ReadFile(file, bytes.data(), bytes.size(), &count, nullptr));
  EXPECT_EQ(count, 0U);  // the end of a file is no failure
  EXPECT_TRUE(CloseHandle(file));

  file = Open(path, CREATE_ALWAYS);
  EXPECT_EQ(GetFileSize(file, nullptr), 0U);
  LONG high = 1;
  EXPECT_EQ(SetFilePointer(file, -16, &high, FILE_BEGIN), 0xFFFFFFF0U);
  EXPECT_TRUE(WriteFile(file, "across 4 GiB mark", 17, &count, nullptr));
  DWORD sizeHigh = 0;
  EXPECT_EQ(GetFileSize(file, &sizeHigh), 1U);
  EXPECT_EQ(sizeHigh, 2U);
  EXPECT_TRUE(CloseHandle(file));
  EXPECT_FALSE(WriteFile(file, "x", 1, &count, nullptr));
  EXPECT_TRUE(DeleteFileA(path.c_str()));
  EXPECT_FALSE(DeleteFileA(path.c_str()));
}

}  // namespace
}  // namespace zelk::testing
