// A folder of its own for a test, gone with it.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "platform/win32.h"

namespace zelk::testing {

class TempFolder {
 public:
  TempFolder() {
    static int count = 0;
    const std::string start = "zelk-" + std::to_string(GetCurrentProcessId()) + '-';
    // A name may be taken by a folder that another process, long gone, could not take away.
    do {
      path_ = (std::filesystem::temp_directory_path() / (start + std::to_string(++count))).string();
    } while (!std::filesystem::create_directory(path_));
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string operator/(std::string_view name) const { return path_ + '/' + std::string(name); }
  const std::string& Path() const { return path_; }
  void Write(std::string_view name, std::string_view text) const {
    std::ofstream(*this / name, std::ios::binary) << text;
  }

 private:
  std::string path_;
};

}  // namespace zelk::testing
