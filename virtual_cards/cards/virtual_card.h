// A virtual card from an application's point of view: the filters it would find for a real one,
// with the means to listen to the card and to make it fail.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/com_ptr.h"
#include "virtual_cards/air.h"
#include "virtual_cards/bus_trace.h"

namespace zelk::virtual_cards {

// While the object lives the card is plugged in: its COM servers and devices are registered with
// the process. One card may be plugged in at a time. Filters that the application still holds
// afterwards stay valid and answer as the unplugged card last did.
class VirtualCard {
 public:
  virtual ~VirtualCard() = default;

  virtual const std::string& FriendlyName() const = 0;
  virtual ComPtr<IUnknown> CaptureFilter() = 0;
  // Null on a card that has no tuner filter.
  virtual ComPtr<IUnknown> TunerFilter() = 0;

  // Null detaches. The trace must outlive its attachment.
  virtual void AttachTrace(BusTrace* trace) = 0;

  // Makes every request whose trace line starts with `request` fail with `code` (a negative
  // HRESULT), without reaching the hardware behind it, until ClearRefusals. An I2C transfer that is
  // to fail the way the bus does (the call succeeds, its status says 14) is refused with
  // kVampBusFailed instead.
  virtual void Refuse(std::string_view request, HRESULT code) = 0;
  virtual void ClearRefusals() = 0;

  // References to the card's COM objects held by others than the card itself.
  virtual int LiveReferences() const = 0;
};

struct CardKind {
  std::string name;         // "saa7134"
  std::string description;  // one line for people
};

// The kinds that CreateCard knows.
std::vector<CardKind> CardKinds();

// Plugs in a card from its description: "KIND" or "KIND,key=value,…" as docs/virtual-cards.md lists
// them, for example "saa7134,tuner=14". Throws std::invalid_argument with a clear message for
// a kind, key or value that does not exist.
std::unique_ptr<VirtualCard> CreateCard(std::string_view description, Air air);

}  // namespace zelk::virtual_cards
