// PioGate880.dll, the I/O library of CX2388x cards.
#pragma once

#include <vector>

#include "virtual_cards/cards/bt_family/io_access.h"
#include "virtual_cards/cards/cx2388x/hardware.h"
#include "virtual_cards/cards/registration.h"

namespace zelk::virtual_cards {

class PioGate880 final : public IoAccess {
 public:
  static constexpr char kFileName[] = "PioGate880.dll";
  // Plain functions with the C calling convention.
  static std::vector<ModuleEntryPoint> EntryPoints();

  // The hardware must outlive the object.
  PioGate880(Cx2388xHardware& hardware, const IoFaults& faults);

  int ReadDecoder(int index);
  // The GPIO port that is read.
  void SetGpioPort(int port);
  // 1, or 0 when there is nothing to read.
  int GetGpioData(std::uint32_t* data);
  // An entry point of which nobody knows more than the name.
  void Unknown(std::string_view name);

 private:
  Cx2388xHardware& hardware_;
  int port_ = 0;
};

}  // namespace zelk::virtual_cards
