// One run of a scan of the library: collects what it reports, draws its progress, stops it on
// request.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "ZElkAPI.h"
#include "cli/interrupt.h"
#include "cli/progress.h"

namespace zelk::cli {

class Sweep {
 public:
  struct Settings {
    // The library's scan; the second argument starts or stops it.
    std::function<HRESULT(ZELK_ScanCallback, std::uint32_t command)> scan;
    // The sweep ends when it has left these limits.
    std::uint32_t lowestKHz = 0;
    std::uint32_t highestKHz = UINT32_MAX;
    bool showProgress = false;
  };
  struct Find {
    std::uint32_t kHz;
    bool stereo;  // told of FM stations alone
  };

  Sweep(Settings settings, const Interrupt& interrupt)
      : settings_(std::move(settings)), interrupt_(interrupt), progress_(settings_.showProgress) {}

  // Blocks until the sweep is over. Answers the scan's result code. One sweep at a time.
  HRESULT Run();

  // As reported, in the order of the sweep.
  const std::vector<Find>& Found() const { return found_; }
  // Where the sweep would have gone on.
  std::uint32_t NextKHz() const { return nextKHz_; }
  bool Interrupted() const { return interrupted_; }

 private:
  // The library's callback carries no context.
  static void ZELK_CALL OnEvent(std::uint32_t event, std::uint32_t value, std::uint32_t extra);
  void Handle(std::uint32_t event, std::uint32_t value, std::uint32_t extra);
  void StopWhenAsked();

  static Sweep* running_;

  const Settings settings_;
  const Interrupt& interrupt_;
  Progress progress_;
  std::vector<Find> found_;
  std::uint32_t nextKHz_ = 0;
  std::uint32_t percent_ = 0;
  bool stopping_ = false;
  bool interrupted_ = false;
};

}  // namespace zelk::cli
