// A closed I/O library at work on a board: the entry points that PioGate.dll and PioGate880.dll
// have in common, under their different names. An application calls them as plain functions; those
// reach the one board that is plugged in.
#pragma once

#include <string_view>

#include "platform/win32.h"
#include "virtual_cards/cards/bt_family/hardware.h"

namespace zelk::virtual_cards {

// The entry points' names, for the trace.
struct IoNames {
  std::string_view init;
  std::string_view free;
  std::string_view isInitOk;
  std::string_view initSwMode;
  std::string_view start;
  std::string_view write;
  std::string_view read;
  std::string_view stop;
};

// What the library does not find on the machine.
struct IoFaults {
  bool initFails;
  bool i2cFails;
};

class IoAccess {
 public:
  // All arguments must outlive the object.
  IoAccess(BtHardware& hardware, const IoNames& names, const IoFaults& faults)
      : hardware_(hardware), names_(names), faults_(faults) {}

  int Init();
  void Free();
  int IsInitOk();
  void InitSwMode(int clockHz);
  void Start();
  int Write(int byte);  // 1 when acknowledged
  void Read(std::uint8_t* byte);
  void Stop();

 protected:
  RequestGate& Gate() { return hardware_.Gate(); }
  // S_OK while the library is open, else the code that the trace shows.
  HRESULT Open() const;
  // Passes a call whose answer is a figure: `act` puts it into `answer`.
  template <class Describe, class Act>
  int Ask(Describe describe, Act act) {
    int answer = 0;
    Gate().Pass(
        describe, [&] { return act(answer); },
        [&](TraceLine& line) { line.Answer().Hex(static_cast<std::uint32_t>(answer)); });
    return answer;
  }

 private:
  HRESULT ReadyForSteps() const;
  template <class Act>
  void Step(std::string_view name, Act act);

  BtHardware& hardware_;
  const IoNames& names_;
  const IoFaults faults_;
  bool open_ = false;
  bool softwareMode_ = false;
};

// The entry points as plain functions, which do nothing while no board is plugged in.
template <class Library>
struct IoEntryPoints {
  static inline Library* plugged = nullptr;

  static int Init() { return plugged ? plugged->Init() : 0; }
  static void Free() {
    if (plugged) plugged->Free();
  }
  static int IsInitOk() { return plugged ? plugged->IsInitOk() : 0; }
  static void InitSwMode(int clockHz) {
    if (plugged) plugged->InitSwMode(clockHz);
  }
  static void Start() {
    if (plugged) plugged->Start();
  }
  static int Write(int byte) { return plugged ? plugged->Write(byte) : 0; }
  static void Read(std::uint8_t* byte) {
    if (plugged) plugged->Read(byte);
  }
  static void Stop() {
    if (plugged) plugged->Stop();
  }
  static int ReadDecoder(int index) { return plugged ? plugged->ReadDecoder(index) : 0; }
};

// An entry point's address as GetProcAddress answers it.
template <class Function>
FARPROC EntryAddress(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

}  // namespace zelk::virtual_cards
