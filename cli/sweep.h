// One run of the library's TV scan: collects what it reports, draws its progress, stops it on
// request.
#pragma once

#include <cstdint>
#include <vector>

#include "ZElkAPI.h"
#include "cli/interrupt.h"

namespace zelk::cli {

class Sweep {
 public:
  struct Settings {
    std::uint32_t stopAtKHz = UINT32_MAX;  // the sweep ends when it has come this far
    bool showProgress = false;             // on standard error
  };

  Sweep(Settings settings, const Interrupt& interrupt)
      : settings_(settings), interrupt_(interrupt) {}

  // Blocks until the sweep is over. Answers the scan's result code. One sweep at a time.
  HRESULT Run();

  // As reported, in the order of the band.
  const std::vector<std::uint32_t>& FoundKHz() const { return found_; }
  // Where the sweep would have gone on.
  std::uint32_t NextKHz() const { return nextKHz_; }
  bool Interrupted() const { return interrupted_; }

 private:
  // The library's callback carries no context.
  static void ZELK_CALL OnEvent(std::uint32_t event, std::uint32_t value, std::uint32_t reserved);
  void Handle(std::uint32_t event, std::uint32_t value);
  void StopWhenAsked();
  void DrawProgress();
  void ClearProgress();

  static Sweep* running_;

  const Settings settings_;
  const Interrupt& interrupt_;
  std::vector<std::uint32_t> found_;
  std::uint32_t nextKHz_ = 0;
  std::uint32_t percent_ = 0;
  bool stopping_ = false;
  bool interrupted_ = false;
  bool progressShown_ = false;
};

}  // namespace zelk::cli
