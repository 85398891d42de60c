#include "backends/bt_family/io_library.h"

#include <utility>

namespace zelk {

bool IoLibrary::Load(const char* fileName) {
  Unload();
  Module = LoadLibraryA(fileName);
  return Module != nullptr;
}

bool IoLibrary::Bind(std::span<const NamedEntry> entries) const {
  bool complete = true;
  for (const NamedEntry& one : entries) {
    one.entry->address = reinterpret_cast<void (*)()>(GetProcAddress(Module, one.name));
    if (!*one.entry) complete = false;
  }
  return complete;
}

void IoLibrary::Unload() {
  if (!Module) return;
  Api.FreeIo();
  FreeLibrary(std::exchange(Module, nullptr));
}

HRESULT IoLibraryBus::Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) {
  return WriteSequence(device, bytes, count);
}

HRESULT IoLibraryBus::Read(std::uint8_t device, std::optional<std::uint8_t>& byte) {
  return ReadByte(device, &byte.emplace());
}

HRESULT IoLibraryBus::ReadHorizontalLock(LONG& locked) {
  locked = (Api.ReadDecoder(Lock.decoderRegister) >> Lock.bit) & 1;
  return S_OK;
}

HRESULT IoLibraryBus::Start() {
  Api.I2cSwStart();
  return S_OK;
}

HRESULT IoLibraryBus::Stop() {
  Api.I2cSwStop();
  return S_OK;
}

HRESULT IoLibraryBus::Send(std::uint8_t byte) { return Api.I2cSwWrite(byte) == 1 ? S_OK : E_FAIL; }

HRESULT IoLibraryBus::Receive(std::uint8_t* byte) {
  Api.I2cSwRead(byte);
  return S_OK;
}

}  // namespace zelk
