#include "virtual_cards/cards/bt_family/io_access.h"

#include "virtual_cards/cards/bt_family/capture_filter.h"

namespace zelk::virtual_cards {

namespace {

constexpr std::string_view kPrefix = "io ";

auto Named(std::string_view name) {
  return [name](TraceLine& line) { line.Text(kPrefix).Text(name); };
}

}  // namespace

int IoAccess::Init() {
  return Ask(Named(names_.init), [&](int& answer) {
    open_ = !faults_.initFails;
    answer = open_ ? 1 : 0;
    if (open_) hardware_.Driver().Start();
    return S_OK;
  });
}

void IoAccess::Free() {
  Gate().Pass(Named(names_.free), [&] {
    open_ = softwareMode_ = false;
    return S_OK;
  });
}

int IoAccess::IsInitOk() {
  return Ask(Named(names_.isInitOk), [&](int& answer) {
    answer = open_ && !faults_.i2cFails ? 1 : 0;
    return S_OK;
  });
}

void IoAccess::InitSwMode(int clockHz) {
  Gate().Pass(
      [&](TraceLine& line) {
        line.Text(kPrefix).Text(names_.initSwMode).Text(" ").Number(clockHz);
      },
      [&] {
        if (Open() != S_OK) return Open();
        if (clockHz <= 0) return E_INVALIDARG;
        softwareMode_ = true;
        return S_OK;
      });
}

void IoAccess::Start() {
  Step(names_.start, [&] { hardware_.Steps().Start(); });
}

void IoAccess::Stop() {
  Step(names_.stop, [&] { hardware_.Steps().Stop(); });
}

int IoAccess::Write(int byte) {
  const auto sent = static_cast<std::uint8_t>(byte);
  const HRESULT code = Gate().PassAny(
      [&](TraceLine& line) { line.Text(kPrefix).Text(names_.write).Text(" ").Byte(sent); },
      [&] {
        if (ReadyForSteps() != S_OK) return ReadyForSteps();
        return hardware_.Steps().Write(sent) ? S_OK : kNotAcknowledged;
      },
      [](TraceLine& line, HRESULT result) {
        line.Answer();
        if (FAILED(result)) {
          line.Word(static_cast<std::uint32_t>(result));
        } else {
          line.Number(result == S_OK ? 1 : 0);
        }
      });
  if (code != S_OK) hardware_.Steps().Lose();
  return code == S_OK ? 1 : 0;
}

void IoAccess::Read(std::uint8_t* byte) {
  Gate().Pass(
      Named(names_.read),
      [&] {
        if (ReadyForSteps() != S_OK) return ReadyForSteps();
        if (!byte) return E_POINTER;
        *byte = hardware_.Steps().Read();
        return S_OK;
      },
      [&](TraceLine& line) { line.Answer().Byte(*byte); });
}

HRESULT IoAccess::Open() const { return open_ ? S_OK : kNotReady; }

HRESULT IoAccess::ReadyForSteps() const { return softwareMode_ ? Open() : kNotReady; }

template <class Act>
void IoAccess::Step(std::string_view name, Act act) {
  Gate().Pass(Named(name), [&] {
    if (ReadyForSteps() == S_OK) act();
    return ReadyForSteps();
  });
}

}  // namespace zelk::virtual_cards
