#include "virtual_cards/cards/graph_filter.h"

#include <algorithm>
#include <iterator>

namespace zelk::virtual_cards {

HRESULT FilterSeat::Join(IFilterGraph* graph, LPCWSTR name) {
  graph_ = graph;
  name_ = graph && name ? name : L"";
  return S_OK;
}

HRESULT FilterSeat::Describe(FILTER_INFO* info) const {
  if (!info) return E_POINTER;
  CopyName(name_, info->achName);
  info->pGraph = ComPtr<IFilterGraph>(graph_).Detach();
  return S_OK;
}

HRESULT FilterSeat::SetClock(IReferenceClock* clock) {
  clock_ = ComPtr<IReferenceClock>(clock);
  return S_OK;
}

HRESULT FilterSeat::GetClock(IReferenceClock** clock) const {
  if (!clock) return E_POINTER;
  *clock = ComPtr<IReferenceClock>(clock_).Detach();
  return S_OK;
}

HRESULT FilterSeat::SetState(FILTER_STATE state) {
  state_ = state;
  return S_OK;
}

HRESULT FilterSeat::GetState(FILTER_STATE* state) const {
  if (!state) return E_POINTER;
  *state = state_;
  return S_OK;
}

}  // namespace zelk::virtual_cards
