// The bar of a long run, on standard error.
#pragma once

#include <cstdint>
#include <string>

namespace zelk::cli {

class Progress {
 public:
  explicit Progress(bool show) : show_(show) {}
  ~Progress() { Clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // `percent` is at most 100; `text` stands behind the bar.
  void Draw(std::uint32_t percent, const std::string& text);
  void Clear();

 private:
  const bool show_;
  bool shown_ = false;
};

}  // namespace zelk::cli
