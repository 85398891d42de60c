// Formatted text.
#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "platform/host/win32.h"

int wsprintfA(LPSTR text, LPCSTR format, ...) {
  constexpr int kLongestWithTerminator = 1024;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text, kLongestWithTerminator, format, arguments);
  va_end(arguments);
  return std::clamp(length, 0, kLongestWithTerminator - 1);
}
