#include "cli/sweep.h"

#include <algorithm>
#include <iostream>
#include <string>

#include "cli/output.h"

namespace zelk::cli {

Sweep* Sweep::running_ = nullptr;

HRESULT Sweep::Run() {
  running_ = this;
  const HRESULT result = ZELK_AllFreqScan(OnEvent, ZELK_SCAN_START);
  running_ = nullptr;
  ClearProgress();
  return result;
}

void ZELK_CALL Sweep::OnEvent(std::uint32_t event, std::uint32_t value, std::uint32_t) {
  if (running_) running_->Handle(event, value);
}

void Sweep::Handle(std::uint32_t event, std::uint32_t value) {
  switch (event) {
    case ZELK_EVENT_FOUND:
      found_.push_back(value);
      break;
    case ZELK_EVENT_PROGRESS:
      // The last step may leave the band by more than a step.
      percent_ = std::min<std::uint32_t>(value, 100);
      break;
    case ZELK_EVENT_POSITION:
      nextKHz_ = value;
      DrawProgress();
      StopWhenAsked();
      break;
    default:
      break;
  }
}

void Sweep::StopWhenAsked() {
  if (stopping_) return;
  interrupted_ = interrupt_.Requested();
  if (!interrupted_ && nextKHz_ <= settings_.stopAtKHz) return;
  // Once: a second stop command would end nothing and report another end.
  stopping_ = true;
  ZELK_AllFreqScan(OnEvent, ZELK_SCAN_STOP);
}

void Sweep::DrawProgress() {
  if (!settings_.showProgress) return;
  constexpr std::uint32_t kBarWidth = 30;
  const std::uint32_t filled = percent_ * kBarWidth / 100;
  std::cerr << "\r[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                   std::to_string(percent_) + "%  " + MegahertzText(nextKHz_) + " MHz  " +
                   std::to_string(found_.size()) + " found\x1b[K"
            << std::flush;
  progressShown_ = true;
}

void Sweep::ClearProgress() {
  if (progressShown_) std::cerr << "\r\x1b[K" << std::flush;
  progressShown_ = false;
}

}  // namespace zelk::cli
