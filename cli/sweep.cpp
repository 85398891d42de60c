#include "cli/sweep.h"

#include <algorithm>
#include <string>

#include "cli/output.h"

namespace zelk::cli {

Sweep* Sweep::running_ = nullptr;

HRESULT Sweep::Run() {
  running_ = this;
  const HRESULT result = settings_.scan(OnEvent, ZELK_SCAN_START);
  running_ = nullptr;
  progress_.Clear();
  return result;
}

void ZELK_CALL Sweep::OnEvent(std::uint32_t event, std::uint32_t value, std::uint32_t extra) {
  if (running_) running_->Handle(event, value, extra);
}

void Sweep::Handle(std::uint32_t event, std::uint32_t value, std::uint32_t extra) {
  switch (event) {
    case ZELK_EVENT_FOUND:
      found_.push_back({value, extra == 1});
      break;
    case ZELK_EVENT_PROGRESS:
      // The last step may leave the band by more than a step.
      percent_ = std::min<std::uint32_t>(value, 100);
      break;
    case ZELK_EVENT_POSITION:
      nextKHz_ = value;
      progress_.Draw(percent_,
                     MegahertzText(nextKHz_) + " MHz  " + std::to_string(found_.size()) + " found");
      StopWhenAsked();
      break;
    default:
      break;
  }
}

void Sweep::StopWhenAsked() {
  if (stopping_) return;
  interrupted_ = interrupt_.Requested();
  const bool inside = nextKHz_ >= settings_.lowestKHz && nextKHz_ <= settings_.highestKHz;
  if (!interrupted_ && inside) return;
  // Once: a second stop command would end nothing and report another end.
  stopping_ = true;
  settings_.scan(OnEvent, ZELK_SCAN_STOP);
}

}  // namespace zelk::cli
