// The closed libraries that reach a card without its driver. They come one for each chip family,
// with the same services under other names.
#pragma once

#include <cstdint>
#include <span>

#include "backends/bt_family/card_bus.h"
#include "backends/bt_family/software_i2c.h"
#include "platform/win32.h"

namespace zelk {

// An entry point of a library. All take and deliver 32-bit integers by the C calling convention.
struct EntryPoint {
  void (*address)() = nullptr;
  explicit operator bool() const { return address != nullptr; }
};

template <class Function>
struct Entry;

// One that is called. A missing entry point does nothing and answers 0.
template <class Result, class... Arguments>
struct Entry<Result(Arguments...)> : EntryPoint {
  Result operator()(Arguments... arguments) const {
    return address ? reinterpret_cast<Result (*)(Arguments...)>(address)(arguments...) : Result();
  }
};

// What the backends need of both libraries.
struct IoLibraryApi {
  Entry<int()> InitIo;  // not 0: the card can be reached
  Entry<void()> FreeIo;
  Entry<int()> I2cIsInitOk;        // not 0: the bus can be used
  Entry<void(int)> I2cInitSwMode;  // clock in Hz
  Entry<void()> I2cSwStart;        // or repeated start
  Entry<int(int)> I2cSwWrite;      // 1: acknowledged
  Entry<void(std::uint8_t*)> I2cSwRead;
  Entry<void()> I2cSwStop;
  Entry<int(int)> ReadDecoder;  // a register of the decoder
};

struct NamedEntry {
  const char* name;
  EntryPoint* entry;
};

// Holds a library while it is loaded. Its entry points are one table for the whole process, which
// every load fills anew and nothing clears.
class IoLibrary {
 public:
  explicit IoLibrary(const IoLibraryApi& api) : Api(api) {}
  IoLibrary(const IoLibrary&) = delete;
  IoLibrary& operator=(const IoLibrary&) = delete;
  ~IoLibrary() { Unload(); }

  bool Load(const char* fileName);
  // False when any is missing. All others are bound even so.
  bool Bind(std::span<const NamedEntry> entries) const;
  // Gives the card back and unloads, if anything is loaded.
  void Unload();

 private:
  const IoLibraryApi& Api;
  HMODULE Module = nullptr;
};

// The transport through an I/O library, as far as the families agree. Acknowledges do not count.
class IoLibraryBus : public CardBus, public SoftwareI2c {
 public:
  HRESULT Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) override;
  HRESULT Read(std::uint8_t device, std::optional<std::uint8_t>& byte) override;
  HRESULT ReadHorizontalLock(LONG& locked) override;

 protected:
  // Where a decoder shows its horizontal lock.
  struct LockBit {
    int decoderRegister;
    int bit;
  };
  IoLibraryBus(const IoLibraryApi& api, LockBit lock) : SoftwareI2c(true), Api(api), Lock(lock) {}
  ~IoLibraryBus() = default;

  HRESULT Start() override;
  HRESULT Stop() override;
  HRESULT Send(std::uint8_t byte) override;
  HRESULT Receive(std::uint8_t* byte) override;

 private:
  const IoLibraryApi& Api;
  const LockBit Lock;
};

}  // namespace zelk
