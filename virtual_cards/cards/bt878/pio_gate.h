// PioGate.dll, the I/O library of Bt878 cards.
#pragma once

#include <vector>

#include "virtual_cards/cards/bt878/hardware.h"
#include "virtual_cards/cards/bt_family/io_access.h"
#include "virtual_cards/cards/registration.h"

namespace zelk::virtual_cards {

class PioGate final : public IoAccess {
 public:
  static constexpr char kFileName[] = "PioGate.dll";
  // Plain functions with the C calling convention.
  static std::vector<ModuleEntryPoint> EntryPoints();

  // The hardware must outlive the object.
  PioGate(Bt878Hardware& hardware, const IoFaults& faults);

  int ReadDecoder(int index);
  void SetGpioOutputEnable(int pin, int value);
  void GetGpioData(int first, int last, std::uint32_t* data);

 private:
  Bt878Hardware& hardware_;
};

}  // namespace zelk::virtual_cards
