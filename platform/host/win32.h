// The Win32 calls that the library and the virtual cards make, for systems without Windows. Each
// behaves as the documented call does for the arguments that occur here; what is left out of an
// argument's documented range is refused, never ignored.
#pragma once

#include "platform/host/types.h"

// --- Files (relative names stand in the current directory) ---
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1));
inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD FILE_SHARE_WRITE = 2;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD OPEN_ALWAYS = 4;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD FILE_END = 2;
inline constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
struct SECURITY_ATTRIBUTES;
struct OVERLAPPED;
HANDLE CreateFileA(LPCSTR lpFileName, DWORD dwDesiredAccess, DWORD dwShareMode,
                   SECURITY_ATTRIBUTES* lpSecurityAttributes, DWORD dwCreationDisposition,
                   DWORD dwFlagsAndAttributes, HANDLE hTemplateFile);
DWORD GetFileSize(HANDLE hFile, LPDWORD lpFileSizeHigh);
DWORD SetFilePointer(HANDLE hFile, LONG lDistanceToMove, LONG* lpDistanceToMoveHigh,
                     DWORD dwMoveMethod);
BOOL ReadFile(HANDLE hFile, LPVOID lpBuffer, DWORD nNumberOfBytesToRead,
              LPDWORD lpNumberOfBytesRead, OVERLAPPED* lpOverlapped);
BOOL WriteFile(HANDLE hFile, LPCVOID lpBuffer, DWORD nNumberOfBytesToWrite,
               LPDWORD lpNumberOfBytesWritten, OVERLAPPED* lpOverlapped);
BOOL CloseHandle(HANDLE hObject);
BOOL DeleteFileA(LPCSTR lpFileName);

// --- Profile files, registry, locale: read from the host's settings folder (platform/control.h) ---
UINT GetPrivateProfileIntA(LPCSTR lpAppName, LPCSTR lpKeyName, INT nDefault, LPCSTR lpFileName);
DWORD GetPrivateProfileStringA(LPCSTR lpAppName, LPCSTR lpKeyName, LPCSTR lpDefault,
                               LPSTR lpReturnedString, DWORD nSize, LPCSTR lpFileName);

inline const HKEY HKEY_CURRENT_USER =
    reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000001)));
inline const HKEY HKEY_LOCAL_MACHINE =
    reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000002)));
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr DWORD REG_SZ = 1;
LSTATUS RegOpenKeyExA(HKEY hKey, LPCSTR lpSubKey, DWORD ulOptions, REGSAM samDesired,
                      HKEY* phkResult);
LSTATUS RegQueryValueExA(HKEY hKey, LPCSTR lpValueName, LPDWORD lpReserved, LPDWORD lpType,
                         LPBYTE lpData, LPDWORD lpcbData);
LSTATUS RegCloseKey(HKEY hKey);

inline constexpr LCTYPE LOCALE_IDEFAULTCOUNTRY = 0x0A;
LCID GetUserDefaultLCID();
int GetLocaleInfoA(LCID Locale, LCTYPE LCType, LPSTR lpLCData, int cchData);
int StrToIntA(LPCSTR pszSrc);

// --- Processes and modules ---
inline constexpr UINT SW_SHOW = 5;
// Starts nothing: the command is recorded (platform/control.h) and the answer is that of a program that
// could not be found (2), as for a registration tool that the system lacks.
UINT WinExec(LPCSTR lpCmdLine, UINT uCmdShow);
DWORD GetCurrentProcessId();
DWORD GetCurrentThreadId();
DWORD GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize);
DWORD GetEnvironmentVariableA(LPCSTR lpName, LPSTR lpBuffer, DWORD nSize);
// A null value takes the variable away.
BOOL SetEnvironmentVariableA(LPCSTR lpName, LPCSTR lpValue);
HMODULE LoadLibraryA(LPCSTR lpLibFileName);
FARPROC GetProcAddress(HMODULE hModule, LPCSTR lpProcName);
BOOL FreeLibrary(HMODULE hLibModule);
void OutputDebugStringA(LPCSTR lpOutputString);

// --- Time (the host clock, real or virtual: platform/control.h) ---
inline constexpr UINT TIME_MS = 1;
struct MMTIME {
  UINT wType;
  union {
    DWORD ms;
    DWORD sample;
    DWORD cb;
    DWORD ticks;
    BYTE smpte[8];
  } u;
};
void Sleep(DWORD dwMilliseconds);
DWORD GetTickCount();
MMRESULT timeBeginPeriod(UINT uPeriod);
MMRESULT timeEndPeriod(UINT uPeriod);
MMRESULT timeGetSystemTime(MMTIME* pmmt, UINT cbmmt);

// --- Window messages of the calling thread ---
struct POINT {
  LONG x;
  LONG y;
};
struct MSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  DWORD time;
  POINT pt;
};
inline constexpr UINT PM_REMOVE = 1;
inline constexpr UINT WM_NULL = 0;
inline constexpr UINT WM_APP = 0x8000;
inline const HWND HWND_MESSAGE = reinterpret_cast<HWND>(static_cast<std::intptr_t>(-3));
using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);
struct WNDCLASSA {
  UINT style;
  WNDPROC lpfnWndProc;
  int cbClsExtra;
  int cbWndExtra;
  HINSTANCE hInstance;
  HANDLE hIcon;
  HANDLE hCursor;
  HANDLE hbrBackground;
  LPCSTR lpszMenuName;
  LPCSTR lpszClassName;
};
// Windows here are message targets alone: nothing is ever shown, and their procedures get the
// messages that were posted to them, not those that Windows sends when a window comes and goes.
ATOM RegisterClassA(const WNDCLASSA* lpWndClass);
BOOL UnregisterClassA(LPCSTR lpClassName, HINSTANCE hInstance);
HWND CreateWindowExA(DWORD dwExStyle, LPCSTR lpClassName, LPCSTR lpWindowName, DWORD dwStyle, int X,
                     int Y, int nWidth, int nHeight, HWND hWndParent, HMENU hMenu,
                     HINSTANCE hInstance, LPVOID lpParam);
BOOL DestroyWindow(HWND hWnd);
LRESULT DefWindowProcA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);
BOOL PostMessageA(HWND hWnd, UINT Msg, WPARAM wParam, LPARAM lParam);
BOOL PeekMessageA(MSG* lpMsg, HWND hWnd, UINT wMsgFilterMin, UINT wMsgFilterMax, UINT wRemoveMsg);
BOOL TranslateMessage(const MSG* lpMsg);
LRESULT DispatchMessageA(const MSG* lpMsg);

// --- Text ---
// The subset of formats that wsprintfA knows and this library uses: %d %u %x %X %c %s %% with width
// and zero padding. The result never exceeds 1024 bytes with its terminator, as on Windows.
int wsprintfA(LPSTR text, LPCSTR format, ...) __attribute__((format(printf, 2, 3)));
