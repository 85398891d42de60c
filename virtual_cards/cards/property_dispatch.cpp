#include "virtual_cards/cards/property_dispatch.h"

namespace zelk::virtual_cards {

namespace {

bool TakesInstance(const PropertyRow& row, DWORD bytes) {
  return bytes == row.bytes || (row.shortInstance != 0 && bytes == row.shortInstance);
}

}  // namespace

void DescribeWords(TraceLine& line, std::span<const BYTE> content) { line.Words(content); }

HRESULT PropertyDispatch::Set(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                              LPVOID content, DWORD contentBytes) {
  const Request request{set, id, instance, instanceBytes, content, contentBytes};
  if (const PropertyRow* row = CommandRow(request, KSPROPERTY_SUPPORT_SET)) {
    return handler_.SetCommand(*row, {static_cast<BYTE*>(content), row->bytes});
  }
  return gate_.Pass(
      [&](TraceLine& line) {
        Describe(line, " set ", set, id);
        DescribeContent(line.Text(" "), request);
      },
      [&] {
        HRESULT code = S_OK;
        const PropertyRow* row = Check(request, KSPROPERTY_SUPPORT_SET, code);
        if (!row) return code;
        return handler_.SetProperty(*row, {static_cast<const BYTE*>(content), row->bytes});
      });
}

HRESULT PropertyDispatch::Get(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                              LPVOID content, DWORD contentBytes, DWORD* returned) {
  const Request request{set, id, instance, instanceBytes, content, contentBytes};
  const PropertyRow* command = CommandRow(request, KSPROPERTY_SUPPORT_GET);
  if (command && returned) {
    const HRESULT code =
        handler_.GetCommand(*command, {static_cast<BYTE*>(content), command->bytes});
    if (SUCCEEDED(code)) *returned = command->bytes;
    return code;
  }
  return gate_.Pass([&](TraceLine& line) { Describe(line, " get ", set, id); },
                    [&] {
                      HRESULT code = S_OK;
                      const PropertyRow* row = Check(request, KSPROPERTY_SUPPORT_GET, code);
                      if (!row) return code;
                      if (!returned) return E_POINTER;
                      code = handler_.GetProperty(*row, {static_cast<BYTE*>(content), row->bytes});
                      if (SUCCEEDED(code)) *returned = row->bytes;
                      return code;
                    },
                    [&](TraceLine& line) { DescribeContent(line.Answer(), request); });
}

HRESULT PropertyDispatch::QuerySupported(REFGUID set, DWORD id, DWORD* support) {
  return gate_.Pass([&](TraceLine& line) { Describe(line, " query-supported ", set, id); },
                    [&] {
                      if (!support) return E_POINTER;
                      HRESULT code = S_OK;
                      const PropertyRow* row = FindRow(set, id, code);
                      *support = row ? row->support : 0;
                      return code;
                    },
                    [&](TraceLine& line) { line.Answer().Word(*support); });
}

const PropertyRow* PropertyDispatch::FindRow(REFGUID set, DWORD id, HRESULT& code) const {
  code = E_PROP_SET_UNSUPPORTED;
  for (const PropertyRow& row : rows_) {
    if (row.id == id && *row.set == set) {
      code = S_OK;
      return &row;
    }
  }
  for (const PropertyRow& row : rows_) {
    if (*row.set == set) code = E_PROP_ID_UNSUPPORTED;
  }
  return nullptr;
}

const PropertyRow* PropertyDispatch::Check(const Request& request, DWORD access,
                                           HRESULT& code) const {
  const PropertyRow* row = FindRow(request.set, request.id, code);
  if (!row) return nullptr;
  if (!(row->support & access)) {
    code = E_PROP_ID_UNSUPPORTED;
  } else if (!request.instance || !request.content) {
    code = E_POINTER;
  } else if (request.contentBytes != row->bytes || !TakesInstance(*row, request.instanceBytes)) {
    code = E_INVALIDARG;
  }
  return code == S_OK ? row : nullptr;
}

const PropertyRow* PropertyDispatch::CommandRow(const Request& request, DWORD access) const {
  HRESULT code = S_OK;
  const PropertyRow* row = Check(request, access, code);
  return row && !row->describe ? row : nullptr;
}

void PropertyDispatch::Describe(TraceLine& line, std::string_view verb, REFGUID set,
                                DWORD id) const {
  line.Text(filter_).Text(verb);
  const PropertyRow* known = nullptr;
  for (const PropertyRow& row : rows_) {
    if (*row.set == set) known = &row;
  }
  if (known) {
    line.Text(known->setName);
  } else {
    line.Identity(set);
  }
  line.Text(".");
  if (known && known->decimalId) {
    line.Number(id);
  } else {
    line.Hex(id);
  }
}

void PropertyDispatch::DescribeContent(TraceLine& line, const Request& request) const {
  if (!request.content) {
    line.Text("null");
    return;
  }
  const std::span<const BYTE> content(static_cast<const BYTE*>(request.content),
                                      request.contentBytes);
  HRESULT code = S_OK;
  const PropertyRow* row = FindRow(request.set, request.id, code);
  if (row && row->describe && row->bytes == content.size()) {
    row->describe(line, content);
  } else {
    line.Words(content);
  }
}

}  // namespace zelk::virtual_cards
