// A folder of its own for a test, gone with it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace zelk::testing {

class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zelk-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
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
