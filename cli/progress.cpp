#include "cli/progress.h"

#include <iostream>

namespace zelk::cli {

void Progress::Draw(std::uint32_t percent, const std::string& text) {
  if (!show_) return;
  constexpr std::uint32_t kBarWidth = 30;
  const std::uint32_t filled = percent * kBarWidth / 100;
  std::cerr << "\r[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                   std::to_string(percent) + "%  " + text + "\x1b[K"
            << std::flush;
  shown_ = true;
}

void Progress::Clear() {
  if (shown_) std::cerr << "\r\x1b[K" << std::flush;
  shown_ = false;
}

}  // namespace zelk::cli
