#include "common/log.h"

#include <cstring>

#include "platform/win32.h"

namespace zelk {
namespace {

// A file may grow past this by one record; the next record starts it anew.
constexpr DWORD kMaxLogBytes = 0x100000;

HANDLE OpenLog(const char* fileName) {
  return CreateFileA(fileName, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

void AppendLogMessage(const char* message, const char* fileName) {
  HANDLE file = OpenLog(fileName);
  if (file == INVALID_HANDLE_VALUE) return;
  if (GetFileSize(file, nullptr) > kMaxLogBytes) {
    CloseHandle(file);
    DeleteFileA(fileName);
    file = OpenLog(fileName);
    if (file == INVALID_HANDLE_VALUE) return;
  }
  SetFilePointer(file, 0, nullptr, FILE_END);
  DWORD written = 0;
  WriteFile(file, "\r\n", 2, &written, nullptr);
  WriteFile(file, message, static_cast<DWORD>(std::strlen(message)), &written, nullptr);
  CloseHandle(file);
}

}  // namespace zelk
