// Things that say what they are told, in place of a chip or a driver that decides for itself.
#pragma once

#include <algorithm>
#include <deque>
#include <span>
#include <vector>

#include "platform/com_object.h"
#include "platform/com_ptr.h"
#include "virtual_cards/chips/i2c_bus.h"

namespace zelk::test {

// A chip that answers reads from a list, the last one for good, and takes every write. A read
// longer than an answer repeats its last byte.
class ToldChip : public virtual_cards::I2cDevice {
 public:
  using Answer = std::vector<std::uint8_t>;

  bool Write(std::span<const std::uint8_t>) override { return true; }
  bool Read(std::span<std::uint8_t> bytes) override {
    const Answer& answer = answers.front();
    for (std::size_t i = 0; i < bytes.size(); ++i)
      bytes[i] = answer[std::min(i, answer.size() - 1)];
    if (answers.size() > 1) answers.pop_front();
    return true;
  }

  void Tell(const std::vector<std::uint8_t>& bytes) {
    answers.clear();
    for (const std::uint8_t byte : bytes) answers.push_back({byte});
  }

  std::deque<Answer> answers;
};

// A capture filter in front of the card's own that answers one property of 4 bytes from a list.
class ToldFilter final : public ComObject<IKsPropertySet> {
 public:
  ToldFilter(IUnknown* filter, DWORD toldProperty) : toldProperty_(toldProperty) {
    Query(filter, behind_);
  }

  HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instanceSize,
                                LPVOID data, DWORD size) override {
    return behind_->Set(set, id, instance, instanceSize, data, size);
  }
  HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instanceSize,
                                LPVOID data, DWORD size, DWORD* returned) override {
    if (id != toldProperty_ || size != sizeof(std::uint32_t)) {
      return behind_->Get(set, id, instance, instanceSize, data, size, returned);
    }
    *static_cast<std::uint32_t*>(data) = answers.front();
    if (answers.size() > 1) answers.pop_front();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override {
    return behind_->QuerySupported(set, id, support);
  }

  std::deque<std::uint32_t> answers;

 private:
  const DWORD toldProperty_;
  ComPtr<IKsPropertySet> behind_;
};

}  // namespace zelk::test
