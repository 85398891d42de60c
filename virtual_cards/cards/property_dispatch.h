// Kernel-streaming property requests of a filter: which properties there are, what a valid request
// looks like, and how it reads in the trace.
#pragma once

#include <span>
#include <string_view>

#include "platform/dshow.h"
#include "virtual_cards/cards/request_gate.h"

namespace zelk::virtual_cards {

struct PropertyRow {
  const GUID* set;
  std::string_view setName;  // in the trace
  DWORD id;
  DWORD bytes;    // the only length of content that the driver takes
  DWORD support;  // KSPROPERTY_SUPPORT_GET | KSPROPERTY_SUPPORT_SET
  // Writes the request's content (`bytes` long) into the trace. Null for a property that carries
  // commands: its handler words each of them itself.
  void (*describe)(TraceLine& line, std::span<const BYTE> content);
  // Another length of instance data that the driver takes: the content without its header.
  DWORD shortInstance = 0;
  bool decimalId = false;  // in the trace, for drivers whose makers count so
};

// The content as words.
void DescribeWords(TraceLine& line, std::span<const BYTE> content);

// Carries out requests that have been found valid. `content` is as long as the row says.
class PropertyHandler {
 public:
  virtual HRESULT SetProperty(const PropertyRow& row, std::span<const BYTE> content) = 0;
  virtual HRESULT GetProperty(const PropertyRow& row, std::span<BYTE> content) = 0;
  // The same for a property that carries commands: the handler passes the card's gate with each.
  // Drivers use the caller's buffer for their answer to a Set, too.
  virtual HRESULT SetCommand(const PropertyRow&, std::span<BYTE>) { return E_UNEXPECTED; }
  virtual HRESULT GetCommand(const PropertyRow&, std::span<BYTE>) { return E_UNEXPECTED; }

 protected:
  ~PropertyHandler() = default;
};

class PropertyDispatch {
 public:
  // `filter` names the filter in the trace. All arguments must outlive the object.
  PropertyDispatch(RequestGate& gate, std::string_view filter, std::span<const PropertyRow> rows,
                   PropertyHandler& handler)
      : gate_(gate), filter_(filter), rows_(rows), handler_(handler) {}

  // These drivers take one buffer as instance data and as property data; the two lengths are equal,
  // but for rows with a short instance. Instance data is not read.
  HRESULT Set(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes, LPVOID content,
              DWORD contentBytes);
  HRESULT Get(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes, LPVOID content,
              DWORD contentBytes, DWORD* returned);
  HRESULT QuerySupported(REFGUID set, DWORD id, DWORD* support);

 private:
  struct Request {
    const GUID& set;
    DWORD id;
    LPVOID instance;
    DWORD instanceBytes;
    LPVOID content;
    DWORD contentBytes;
  };

  // The row, or null with the reason in `code`.
  const PropertyRow* FindRow(REFGUID set, DWORD id, HRESULT& code) const;
  const PropertyRow* Check(const Request& request, DWORD access, HRESULT& code) const;
  // The row of a valid request for a property that carries commands, null for all others.
  const PropertyRow* CommandRow(const Request& request, DWORD access) const;
  void Describe(TraceLine& line, std::string_view verb, REFGUID set, DWORD id) const;
  void DescribeContent(TraceLine& line, const Request& request) const;

  RequestGate& gate_;
  std::string_view filter_;
  std::span<const PropertyRow> rows_;
  PropertyHandler& handler_;
};

}  // namespace zelk::virtual_cards
