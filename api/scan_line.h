// A line of a scan's diagnostic file, put together piece by piece.
#pragma once

#include "platform/win32.h"

namespace zelk {

class ScanLine {
 public:
  // Formats as wsprintfA does. The longest line that the scans can make has some 120 characters.
  template <class... Arguments>
  void Append(const char* format, Arguments... arguments) {
    length_ += wsprintfA(text_ + length_, format, arguments...);
  }
  void Clear() { text_[length_ = 0] = '\0'; }
  const char* Text() const { return text_; }

 private:
  // wsprintfA writes at most 1024 bytes at a time.
  char text_[256 + 1024] = "";
  int length_ = 0;
};

}  // namespace zelk
