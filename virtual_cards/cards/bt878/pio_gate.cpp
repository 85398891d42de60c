#include "virtual_cards/cards/bt878/pio_gate.h"

namespace zelk::virtual_cards {

namespace {

constexpr IoNames kNames = {"INIT_IO",    "FREE_IO",    "I2CISINITOK", "I2CINITSWMODE",
                            "I2CSWSTART", "I2CSWWRITE", "I2CSWREAD",   "I2CSWSTOP"};

using Entry = IoEntryPoints<PioGate>;

void SetGpieBit(int pin, int value) {
  if (Entry::plugged) Entry::plugged->SetGpioOutputEnable(pin, value);
}

void GetGpDataBits(int first, int last, std::uint32_t* data, int) {
  if (Entry::plugged) Entry::plugged->GetGpioData(first, last, data);
}

bool IsPin(int pin) { return 0 <= pin && pin < static_cast<int>(GpioPins::kCount); }

}  // namespace

std::vector<ModuleEntryPoint> PioGate::EntryPoints() {
  return {{"INIT_IO", EntryAddress(Entry::Init)},
          {"FREE_IO", EntryAddress(Entry::Free)},
          {"I2CISINITOK", EntryAddress(Entry::IsInitOk)},
          {"I2CINITSWMODE", EntryAddress(Entry::InitSwMode)},
          {"I2CSWSTART", EntryAddress(Entry::Start)},
          {"I2CSWWRITE", EntryAddress(Entry::Write)},
          {"I2CSWREAD", EntryAddress(Entry::Read)},
          {"I2CSWSTOP", EntryAddress(Entry::Stop)},
          {"READDECODER", EntryAddress(Entry::ReadDecoder)},
          {"SETGPIEBIT", EntryAddress(SetGpieBit)},
          {"GETGPDATABITS", EntryAddress(GetGpDataBits)}};
}

PioGate::PioGate(Bt878Hardware& hardware, const IoFaults& faults)
    : IoAccess(hardware, kNames, faults), hardware_(hardware) {}

int PioGate::ReadDecoder(int index) {
  return Ask(
      [=](TraceLine& line) { line.Text("io READDECODER ").Hex(static_cast<std::uint32_t>(index)); },
      [&](int& answer) {
        if (Open() == S_OK) answer = hardware_.DecoderRegister(static_cast<unsigned>(index));
        return Open();
      });
}

void PioGate::SetGpioOutputEnable(int pin, int value) {
  Gate().Pass(
      [=](TraceLine& line) { line.Text("io SETGPIEBIT ").Number(pin).Text(" ").Number(value); },
      [&] {
        if (Open() != S_OK) return Open();
        if (!IsPin(pin)) return E_INVALIDARG;
        hardware_.Gpio().SetOutputEnable(static_cast<unsigned>(pin), value != 0);
        return S_OK;
      });
}

void PioGate::GetGpioData(int first, int last, std::uint32_t* data) {
  Gate().Pass(
      [=](TraceLine& line) { line.Text("io GETGPDATABITS ").Number(first).Text("-").Number(last); },
      [&] {
        if (Open() != S_OK) return Open();
        if (!data || !IsPin(first) || !IsPin(last) || first > last) return E_INVALIDARG;
        *data = hardware_.Gpio().Read(static_cast<unsigned>(first), static_cast<unsigned>(last));
        return S_OK;
      },
      [&](TraceLine& line) { line.Answer().Hex(*data); });
}

}  // namespace zelk::virtual_cards
