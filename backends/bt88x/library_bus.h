// The transport through "PioGate880.dll".
#pragma once

#include "backends/bt_family/io_library.h"

namespace zelk {

struct PioGate880Api : IoLibraryApi {
  // Every library of this family has these, and none is loaded without them.
  EntryPoint SetGpieBit;
  EntryPoint GetGpDataBits;
  EntryPoint SetGpData;
  Entry<void(int)> SetGpioPort;
  Entry<int(std::uint32_t*, int, int)> GetGpData;  // levels, 0, 0; 0 when it fails
};

extern constinit PioGate880Api pioGate880;

inline constexpr char kPioGate880File[] = "PioGate880.dll";
extern const std::span<const NamedEntry> kPioGate880Entries;

class Bt88xLibraryBus final : public IoLibraryBus {
 public:
  Bt88xLibraryBus() : IoLibraryBus(pioGate880, {0x100, 5}) {}

  HRESULT ReadEeprom(std::uint8_t address, std::uint8_t* byte) override;
  // A failure leaves the place alone.
  HRESULT ReadRemote(std::uint32_t* code) override;
};

}  // namespace zelk
