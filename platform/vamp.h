// The Philips Vamp COM server: direct access to an SAA713x chip's I2C bus, GPIO lines and decoder.
// It has no public header. Interfaces are declared by slot, counted from 0 over the whole table
// (QueryInterface is slot 0), and only the slots in use have names.
#pragma once

#include "platform/com.h"

namespace zelk {

inline constexpr CLSID kClsidVampService = {
    0xB8A9279E, 0xC453, 0x11D4, {0xAD, 0x45, 0x00, 0x60, 0x08, 0x0B, 0xA6, 0x34}};

// A slot that this library never calls. Its real arguments are not known.
#define ZELK_RESERVED_SLOT(number) virtual HRESULT STDMETHODCALLTYPE Reserved##number() = 0

// I2C bus. A transfer goes to the device selected last.
struct IVampI2c : IUnknown {
  ZELK_RESERVED_SLOT(3);
  ZELK_RESERVED_SLOT(4);
  ZELK_RESERVED_SLOT(5);
  ZELK_RESERVED_SLOT(6);
  ZELK_RESERVED_SLOT(7);
  // Slot 8. `address` is the 8-bit bus address; the read/write bit in it does not matter.
  virtual HRESULT STDMETHODCALLTYPE SelectDevice(ULONG address) = 0;
  ZELK_RESERVED_SLOT(9);
  ZELK_RESERVED_SLOT(10);
  ZELK_RESERVED_SLOT(11);
  ZELK_RESERVED_SLOT(12);
  ZELK_RESERVED_SLOT(13);
  // Slot 14. `status` receives the bus status; kVampBusFailed marks a transfer that failed although
  // the call itself succeeded.
  virtual HRESULT STDMETHODCALLTYPE Read(BYTE* buffer, ULONG count, ULONG* status) = 0;
  // Slot 15. Writes the subaddress byte first, then reads.
  virtual HRESULT STDMETHODCALLTYPE ReadAt(BYTE subaddress, BYTE* buffer, ULONG count,
                                           ULONG* status) = 0;
  ZELK_RESERVED_SLOT(16);
  // Slot 17.
  virtual HRESULT STDMETHODCALLTYPE Write(const BYTE* buffer, ULONG count, ULONG* status) = 0;
};

inline constexpr ULONG kVampBusFailed = 14;

// GPIO lines, one value (0 or 1) each.
struct IVampGpio : IUnknown {
  ZELK_RESERVED_SLOT(3);
  ZELK_RESERVED_SLOT(4);
  ZELK_RESERVED_SLOT(5);
  ZELK_RESERVED_SLOT(6);
  ZELK_RESERVED_SLOT(7);
  ZELK_RESERVED_SLOT(8);
  ZELK_RESERVED_SLOT(9);
  ZELK_RESERVED_SLOT(10);
  virtual HRESULT STDMETHODCALLTYPE ReadLine(ULONG line, ULONG* value) = 0;  // slot 11
  virtual HRESULT STDMETHODCALLTYPE SetLine(ULONG line, ULONG value) = 0;    // slot 12
};

// Video decoder.
struct IVampDecoder : IUnknown {
  ZELK_RESERVED_SLOT(3);
  ZELK_RESERVED_SLOT(4);
  ZELK_RESERVED_SLOT(5);
  ZELK_RESERVED_SLOT(6);
  virtual HRESULT STDMETHODCALLTYPE GetStatus(ULONG* status) = 0;  // slot 7
};

// One chip. The out interfaces come with a reference for the caller.
struct IVampDevice : IUnknown {
  ZELK_RESERVED_SLOT(3);
  ZELK_RESERVED_SLOT(4);
  ZELK_RESERVED_SLOT(5);
  ZELK_RESERVED_SLOT(6);
  ZELK_RESERVED_SLOT(7);
  ZELK_RESERVED_SLOT(8);
  virtual HRESULT STDMETHODCALLTYPE GetChipId(ULONG* chipId) = 0;  // slot 9
  ZELK_RESERVED_SLOT(10);
  virtual HRESULT STDMETHODCALLTYPE GetBoardConfig(ULONG* boardConfig) = 0;  // slot 11
  ZELK_RESERVED_SLOT(12);
  ZELK_RESERVED_SLOT(13);
  ZELK_RESERVED_SLOT(14);
  ZELK_RESERVED_SLOT(15);
  ZELK_RESERVED_SLOT(16);
  ZELK_RESERVED_SLOT(17);
  ZELK_RESERVED_SLOT(18);
  ZELK_RESERVED_SLOT(19);
  virtual HRESULT STDMETHODCALLTYPE GetDecoder(IVampDecoder** decoder) = 0;  // slot 20
  virtual HRESULT STDMETHODCALLTYPE GetGpio(IVampGpio** gpio) = 0;           // slot 21
  virtual HRESULT STDMETHODCALLTYPE GetI2c(IVampI2c** i2c) = 0;              // slot 22
};

// The server's entry: the chips found in the machine.
struct IVampService : IUnknown {
  ZELK_RESERVED_SLOT(3);
  ZELK_RESERVED_SLOT(4);
  ZELK_RESERVED_SLOT(5);
  ZELK_RESERVED_SLOT(6);
  virtual HRESULT STDMETHODCALLTYPE GetDeviceCount(ULONG* count) = 0;               // slot 7
  virtual HRESULT STDMETHODCALLTYPE GetDevice(ULONG index, IUnknown** device) = 0;  // slot 8
};

#undef ZELK_RESERVED_SLOT

}  // namespace zelk
