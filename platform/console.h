// The streams of a command-line program.
#pragma once

#ifdef _WIN32
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

#include <cstdint>
#else
#include <unistd.h>
#endif

namespace zelk {

// A program's output is the same on every system, byte for byte: lines end in a line feed.
inline void UsePlainLineEnds() {
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
#endif
}

// Whether a person sees standard error, on a terminal that obeys the control sequences of a
// progress bar. The console of older versions of Windows does not.
inline bool StandardErrorIsTerminal() {
#ifdef _WIN32
  constexpr DWORD kObeysControlSequences = 4;
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stderr)));
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | kObeysControlSequences);
#else
  return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace zelk
