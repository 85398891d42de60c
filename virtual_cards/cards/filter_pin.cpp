#include "virtual_cards/cards/filter_pin.h"

#include <utility>
#include <vector>

#include "platform/enumerator.h"
#include "platform/interface_id.h"

namespace zelk::virtual_cards {

FilterPin::FilterPin(const PinOwner& owner, std::string_view name, PIN_DIRECTION direction)
    : owner_(owner), traceName_(name), name_(name.begin(), name.end()), direction_(direction) {}

HRESULT FilterPin::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IidOf<IUnknown>() && iid != IidOf<IPin>()) return E_NOINTERFACE;
  *object = static_cast<IPin*>(this);
  AddRef();
  return S_OK;
}

HRESULT FilterPin::QueryPinInfo(PIN_INFO* info) {
  return Gate().Pass([this](TraceLine& line) { Describe(line, " info"); },
                     [&] {
                       if (!info) return E_POINTER;
                       info->pFilter = ComPtr<IBaseFilter>(&owner_.filter).Detach();
                       info->dir = direction_;
                       CopyName(name_, info->achName);
                       return S_OK;
                     });
}

HRESULT FilterPin::QueryDirection(PIN_DIRECTION* direction) {
  if (!direction) return E_POINTER;
  *direction = direction_;
  return S_OK;
}

HRESULT FilterPin::QueryId(LPWSTR* id) {
  if (!id) return E_POINTER;
  const std::size_t letters = name_.size() + 1;
  *id = static_cast<LPWSTR>(CoTaskMemAlloc(letters * sizeof(WCHAR)));
  if (!*id) return E_OUTOFMEMORY;
  std::copy_n(name_.c_str(), letters, *id);
  return S_OK;
}

HRESULT FilterPin::EnumMediaTypes(IEnumMediaTypes** types) {
  if (!types) return E_POINTER;
  std::vector<MediaType> offered;
  if (const MediaType* type = Offered()) offered.push_back(*type);
  *types = new Enumerator<IEnumMediaTypes, MediaType>(std::move(offered));
  return S_OK;
}

HRESULT FilterPin::QueryAccept(const AM_MEDIA_TYPE* type) {
  if (!type) return E_POINTER;
  const MediaType* offered = Offered();
  return offered && offered->SameKind(*type) ? S_OK : S_FALSE;
}

HRESULT FilterPin::ConnectedTo(IPin** pin) {
  if (!pin) return E_POINTER;
  *pin = nullptr;
  return VFW_E_NOT_CONNECTED;
}

HRESULT FilterPin::ConnectionMediaType(AM_MEDIA_TYPE* type) {
  if (!type) return E_POINTER;
  *type = {};
  return VFW_E_NOT_CONNECTED;
}

void FilterPin::Describe(TraceLine& line, std::string_view request) const {
  line.Text(owner_.filterName).Text(" pin ").Text(traceName_).Text(request);
}

}  // namespace zelk::virtual_cards
