#include "virtual_cards/cards/cx2388x/pio_gate_880.h"

namespace zelk::virtual_cards {

namespace {

constexpr IoNames kNames = {"InitIO",     "FreeIO",     "I2CIsInitOK", "I2CInitSWMode",
                            "I2CSWStart", "I2CSWWrite", "I2CSWRead",   "I2CSWStop"};

using Entry = IoEntryPoints<PioGate880>;

void SetGpioPortEntry(int port) {
  if (Entry::plugged) Entry::plugged->SetGpioPort(port);
}

int GetGpDataEntry(std::uint32_t* data, int, int) {
  return Entry::plugged ? Entry::plugged->GetGpioData(data) : 0;
}

// The arguments and effects of these are not known: no application calls them.
void SetGpieBitEntry() {
  if (Entry::plugged) Entry::plugged->Unknown("SetGPIEBit");
}
void GetGpDataBitsEntry() {
  if (Entry::plugged) Entry::plugged->Unknown("GetGPDataBits");
}
void SetGpDataEntry() {
  if (Entry::plugged) Entry::plugged->Unknown("SetGPData");
}

}  // namespace

std::vector<ModuleEntryPoint> PioGate880::EntryPoints() {
  return {{"InitIO", EntryAddress(Entry::Init)},
          {"FreeIO", EntryAddress(Entry::Free)},
          {"I2CIsInitOK", EntryAddress(Entry::IsInitOk)},
          {"I2CInitSWMode", EntryAddress(Entry::InitSwMode)},
          {"I2CSWStart", EntryAddress(Entry::Start)},
          {"I2CSWWrite", EntryAddress(Entry::Write)},
          {"I2CSWRead", EntryAddress(Entry::Read)},
          {"I2CSWStop", EntryAddress(Entry::Stop)},
          {"ReadDecoder", EntryAddress(Entry::ReadDecoder)},
          {"SetGPIEBit", EntryAddress(SetGpieBitEntry)},
          {"GetGPDataBits", EntryAddress(GetGpDataBitsEntry)},
          {"SetGPIOPort", EntryAddress(SetGpioPortEntry)},
          {"GetGPData", EntryAddress(GetGpDataEntry)},
          {"SetGPData", EntryAddress(SetGpDataEntry)}};
}

PioGate880::PioGate880(Cx2388xHardware& hardware, const IoFaults& faults)
    : IoAccess(hardware, kNames, faults), hardware_(hardware) {}

int PioGate880::ReadDecoder(int index) {
  return Ask(
      [=](TraceLine& line) { line.Text("io ReadDecoder ").Hex(static_cast<std::uint32_t>(index)); },
      [&](int& answer) {
        if (Open() == S_OK) answer = hardware_.DecoderRegister(static_cast<unsigned>(index));
        return Open();
      });
}

void PioGate880::SetGpioPort(int port) {
  Gate().Pass([=](TraceLine& line) { line.Text("io SetGPIOPort ").Number(port); },
              [&] {
                if (Open() != S_OK) return Open();
                if (port < 0 || port >= static_cast<int>(Cx2388xHardware::kGpioPorts))
                  return E_INVALIDARG;
                port_ = port;
                return S_OK;
              });
}

int PioGate880::GetGpioData(std::uint32_t* data) {
  const HRESULT code = Gate().Pass([](TraceLine& line) { line.Text("io GetGPData"); },
                                   [&] {
                                     if (Open() != S_OK) return Open();
                                     if (!data) return E_POINTER;
                                     *data = hardware_.GpioPort(static_cast<unsigned>(port_));
                                     return S_OK;
                                   },
                                   [&](TraceLine& line) { line.Answer().Hex(*data); });
  return code == S_OK ? 1 : 0;
}

void PioGate880::Unknown(std::string_view name) {
  Gate().Pass([=](TraceLine& line) { line.Text("io ").Text(name); }, [this] { return Open(); });
}

}  // namespace zelk::virtual_cards
