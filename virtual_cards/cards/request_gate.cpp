#include "virtual_cards/cards/request_gate.h"

namespace zelk::virtual_cards {

void RequestGate::Refuse(std::string_view request, HRESULT code) {
  refusals_.push_back({std::string(request), code});
}

std::optional<HRESULT> RequestGate::FindRefusal(std::string_view request) const {
  for (const Refusal& refusal : refusals_) {
    if (request.starts_with(refusal.request)) return refusal.code;
  }
  return std::nullopt;
}

void RequestGate::Report(const TraceLine& line) const {
  if (trace_) trace_->Line(line.Str());
}

}  // namespace zelk::virtual_cards
