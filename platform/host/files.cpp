// Files over POSIX. Sharing cannot be forbidden to others here, so a file is opened only by those
// who allow it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "platform/host/win32.h"

namespace {

constexpr DWORD kInvalidFilePointer = 0xFFFFFFFF;
constexpr mode_t kNewFileMode = 0666;

// Handles are multiples of four, as on Windows, and never null.
HANDLE HandleOf(int descriptor) {
  return reinterpret_cast<HANDLE>((static_cast<std::intptr_t>(descriptor) + 1) * 4);
}

// An invalid handle gives a descriptor that every POSIX call refuses.
int DescriptorOf(HANDLE handle) {
  const auto value = reinterpret_cast<std::intptr_t>(handle);
  return value > 0 && value % 4 == 0 ? static_cast<int>(value / 4 - 1) : -1;
}

std::optional<int> AccessFlags(DWORD access) {
  switch (access) {
    case GENERIC_READ:
      return O_RDONLY;
    case GENERIC_WRITE:
      return O_WRONLY;
    case GENERIC_READ | GENERIC_WRITE:
      return O_RDWR;
    default:
      return std::nullopt;
  }
}

std::optional<int> DispositionFlags(DWORD disposition) {
  switch (disposition) {
    case OPEN_EXISTING:
      return 0;
    case OPEN_ALWAYS:
      return O_CREAT;
    case CREATE_ALWAYS:
      return O_CREAT | O_TRUNC;
    default:
      return std::nullopt;
  }
}

bool IsDirectory(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode);
}

}  // namespace

HANDLE CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                   SECURITY_ATTRIBUTES* lpSecurityAttributes, DWORD dwCreationDisposition,
                   DWORD dwFlagsAndAttributes, HANDLE hTemplateFile) {
  const std::optional<int> access = AccessFlags(dwDesiredAccess);
  const std::optional<int> disposition = DispositionFlags(dwCreationDisposition);
  const bool plain = !lpSecurityAttributes && !hTemplateFile &&
                     (dwFlagsAndAttributes == 0 || dwFlagsAndAttributes == FILE_ATTRIBUTE_NORMAL) &&
                     dwShareMode == (FILE_SHARE_READ | FILE_SHARE_WRITE);
  if (!lpFileName || !access || !disposition || !plain) return INVALID_HANDLE_VALUE;

  const int descriptor = open(lpFileName, *access | *disposition | O_CLOEXEC, kNewFileMode);
  if (descriptor < 0) return INVALID_HANDLE_VALUE;
  if (IsDirectory(descriptor)) {
    close(descriptor);
    return INVALID_HANDLE_VALUE;
  }
  return HandleOf(descriptor);
}

DWORD GetFileSize(HANDLE hFile, LPDWORD lpFileSizeHigh) {
  struct stat status {};
  if (fstat(DescriptorOf(hFile), &status) != 0) return INVALID_FILE_SIZE;
  const auto size = static_cast<std::uint64_t>(status.st_size);
  if (lpFileSizeHigh) *lpFileSizeHigh = static_cast<DWORD>(size >> 32);
  return static_cast<DWORD>(size);
}

DWORD SetFilePointer(HANDLE hFile, LONG lDistanceToMove, LONG* lpDistanceToMoveHigh,
                     DWORD dwMoveMethod) {
  if (dwMoveMethod != FILE_BEGIN && dwMoveMethod != FILE_END) return kInvalidFilePointer;
  // With a high half the low half has no sign of its own.
  std::int64_t distance = lDistanceToMove;
  if (lpDistanceToMoveHigh) {
    const auto high = static_cast<std::uint64_t>(static_cast<std::uint32_t>(*lpDistanceToMoveHigh));
    distance = static_cast<std::int64_t>(high << 32 | static_cast<std::uint32_t>(lDistanceToMove));
  }
  const off_t position =
      lseek(DescriptorOf(hFile), distance, dwMoveMethod == FILE_BEGIN ? SEEK_SET : SEEK_END);
  if (position < 0) return kInvalidFilePointer;
  if (lpDistanceToMoveHigh) *lpDistanceToMoveHigh = static_cast<LONG>(position >> 32);
  return static_cast<DWORD>(position);
}

BOOL ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead,
              LPDWORD lpNumberOfBytesRead, OVERLAPPED* lpOverlapped) {
  if (!lpNumberOfBytesRead || lpOverlapped) return FALSE;
  *lpNumberOfBytesRead = 0;
  auto* const bytes = static_cast<BYTE*>(lpBuffer);
  while (*lpNumberOfBytesRead < nNumberOfBytesToRead) {
    const ssize_t got = read(DescriptorOf(hFile), bytes + *lpNumberOfBytesRead,
                             nNumberOfBytesToRead - *lpNumberOfBytesRead);
    if (got == 0) break;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return FALSE;
    *lpNumberOfBytesRead += static_cast<DWORD>(got);
  }
  return TRUE;
}

BOOL WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
               LPDWORD lpNumberOfBytesWritten, OVERLAPPED* lpOverlapped) {
  if (!lpNumberOfBytesWritten || lpOverlapped) return FALSE;
  *lpNumberOfBytesWritten = 0;
  const auto* const bytes = static_cast<const BYTE*>(lpBuffer);
  while (*lpNumberOfBytesWritten < nNumberOfBytesToWrite) {
    const ssize_t put = write(DescriptorOf(hFile), bytes + *lpNumberOfBytesWritten,
                              nNumberOfBytesToWrite - *lpNumberOfBytesWritten);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return FALSE;
    *lpNumberOfBytesWritten += static_cast<DWORD>(put);
  }
  return TRUE;
}

BOOL CloseHandle(HANDLE hObject) { return close(DescriptorOf(hObject)) == 0; }

BOOL DeleteFileA(LPCSTR lpFileName) { return lpFileName && unlink(lpFileName) == 0; }
