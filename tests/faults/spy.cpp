// A stand-in is a table of entries that all lead to one function, with the number of the slot and
// the arguments as they came. That needs the calling convention of the machine: x86-64, System V,
// where all arguments of these interfaces are words in six registers and on the stack.
#include "tests/faults/spy.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

#include "tests/faults/calls.h"

namespace {

constexpr int kSlots = 40;

}  // namespace

extern "C" {
// Each entry is 16 bytes long.
extern const char zelkStandInEntries[];
std::uintptr_t ZelkStandInCall(std::uintptr_t* arguments, std::uint32_t slot);
}

asm(R"(
  .text
  .p2align 4
zelkStandInEntries:
  .set slot, 0
  .rept 40
  .p2align 4
  movl $slot, %eax
  jmp zelkStandInEntry
  .set slot, slot + 1
  .endr
zelkStandInEntry:
  pushq %rbp
  movq %rsp, %rbp
  subq $64, %rsp
  movq %rdi, (%rsp)
  movq %rsi, 8(%rsp)
  movq %rdx, 16(%rsp)
  movq %rcx, 24(%rsp)
  movq %r8, 32(%rsp)
  movq %r9, 40(%rsp)
  movq 16(%rbp), %rcx
  movq %rcx, 48(%rsp)
  movq 24(%rbp), %rcx
  movq %rcx, 56(%rsp)
  movq %rsp, %rdi
  movl %eax, %esi
  call ZelkStandInCall
  leave
  ret
)");

namespace zelk::faults {
namespace {

using Word = std::uintptr_t;

// What a method hands out, and in which of its arguments (0 is the object).
enum class Out {
  Nothing,
  Object,      // an interface of `iid`
  AnyObject,   // one of the identity in argument `other`
  FirstOfOne,  // like Object, from an enumerator
  Bytes,       // as many as argument `other` says
  Word,        // four bytes
  Words3,      // three words, in the arguments from `place` on
  Format,      // a media type
  PinInfo,
  Text,  // a VARIANT
};

struct Method {
  const char* name;
  const IID* interface;
  unsigned slot;
  Out out = Out::Nothing;
  unsigned place = 0;
  unsigned other = 0;
  const IID* handsOut = nullptr;
  unsigned standIns = 0;  // one bit for each argument that may be a stand-in itself
};

// Interfaces without an identity of their own.
constexpr IID kI2c = {1, 0, 0, {}};
constexpr IID kGpio = {2, 0, 0, {}};
constexpr IID kDecoder = {3, 0, 0, {}};

template <class Interface>
constexpr const IID* Id() {
  return &InterfaceId<Interface>::value;
}

constexpr Method kMethods[] = {
    {"IKsPropertySet::Set", Id<IKsPropertySet>(), 3},
    {"IKsPropertySet::Get", Id<IKsPropertySet>(), 4, Out::Bytes, 5, 6},
    {"IKsPropertySet::QuerySupported", Id<IKsPropertySet>(), 5, Out::Word, 3},
    {"IAMTVTuner::put_Channel", Id<IAMTVTuner>(), 3},
    {"IAMTVTuner::get_Channel", Id<IAMTVTuner>(), 4, Out::Words3, 1},
    {"IAMTVTuner::put_CountryCode", Id<IAMTVTuner>(), 6},
    {"IAMTVTuner::put_Mode", Id<IAMTVTuner>(), 13},
    {"IAMTVAudio::put_TVAudioMode", Id<IAMTVAudio>(), 6},
    {"IAMAnalogVideoDecoder::put_TVFormat", Id<IAMAnalogVideoDecoder>(), 4},
    {"IAMAnalogVideoDecoder::get_HorizontalLocked", Id<IAMAnalogVideoDecoder>(), 6, Out::Word, 1},
    {"IVampService::GetDeviceCount", Id<IVampService>(), 7, Out::Word, 1},
    {"IVampService::GetDevice", Id<IVampService>(), 8, Out::Object, 2, 0, Id<IUnknown>()},
    {"IVampDevice::GetChipId", Id<IVampDevice>(), 9, Out::Word, 1},
    {"IVampDevice::GetBoardConfig", Id<IVampDevice>(), 11, Out::Word, 1},
    {"IVampDevice::GetDecoder", Id<IVampDevice>(), 20, Out::Object, 1, 0, &kDecoder},
    {"IVampDevice::GetGpio", Id<IVampDevice>(), 21, Out::Object, 1, 0, &kGpio},
    {"IVampDevice::GetI2c", Id<IVampDevice>(), 22, Out::Object, 1, 0, &kI2c},
    {"IVampI2c::SelectDevice", &kI2c, 8},
    {"IVampI2c::Read", &kI2c, 14, Out::Bytes, 1, 2},
    {"IVampI2c::ReadAt", &kI2c, 15, Out::Bytes, 2, 3},
    {"IVampI2c::Write", &kI2c, 17, Out::Word, 3},
    {"IVampGpio::ReadLine", &kGpio, 11, Out::Word, 2},
    {"IVampGpio::SetLine", &kGpio, 12},
    {"IVampDecoder::GetStatus", &kDecoder, 7, Out::Word, 1},
    {"ICreateDevEnum::CreateClassEnumerator", Id<ICreateDevEnum>(), 3, Out::Object, 2, 0,
     Id<IEnumMoniker>()},
    {"IEnumMoniker::Next", Id<IEnumMoniker>(), 3, Out::FirstOfOne, 2, 0, Id<IMoniker>()},
    {"IEnumMoniker::Reset", Id<IEnumMoniker>(), 5},
    {"IMoniker::BindToObject", Id<IMoniker>(), 8, Out::AnyObject, 4, 3},
    {"IMoniker::BindToStorage", Id<IMoniker>(), 9, Out::AnyObject, 4, 3},
    {"IPropertyBag::Read", Id<IPropertyBag>(), 3, Out::Text, 2},
    {"IBaseFilter::EnumPins", Id<IBaseFilter>(), 10, Out::Object, 1, 0, Id<IEnumPins>()},
    {"IEnumPins::Next", Id<IEnumPins>(), 3, Out::FirstOfOne, 2, 0, Id<IPin>()},
    {"IPin::QueryPinInfo", Id<IPin>(), 8, Out::PinInfo, 1},
    {"IAMStreamConfig::SetFormat", Id<IAMStreamConfig>(), 3},
    {"IAMStreamConfig::GetFormat", Id<IAMStreamConfig>(), 4, Out::Format, 1},
    {"IGraphBuilder::AddFilter", Id<IGraphBuilder>(), 3, Out::Nothing, 0, 0, nullptr, 1U << 1},
    {"IGraphBuilder::RemoveFilter", Id<IGraphBuilder>(), 4, Out::Nothing, 0, 0, nullptr, 1U << 1},
    {"IRunningObjectTable::Register", Id<IRunningObjectTable>(), 3, Out::Word, 4, 0, nullptr,
     1U << 2 | 1U << 3},
    {"IRunningObjectTable::Revoke", Id<IRunningObjectTable>(), 4},
};
constexpr Method kQuery = {"QueryInterface", nullptr, 0, Out::AnyObject, 2, 1};

std::vector<IID> liveStandIns;

struct StandIn {
  const char* const* entries;
  int references = 1;
  IID iid;
  void* object;

  Word Forward(unsigned slot, const Word* arguments) const {
    using Function = Word (*)(void*, Word, Word, Word, Word, Word, Word, Word);
    const auto* const functions = *static_cast<Function* const*>(object);
    const AtWork outside(false);
    return functions[slot](object, arguments[1], arguments[2], arguments[3], arguments[4],
                           arguments[5], arguments[6], arguments[7]);
  }
};

const char* const* Entries() {
  static const auto entries = [] {
    static const char* table[kSlots];
    for (int slot = 0; slot < kSlots; ++slot) table[slot] = zelkStandInEntries + 16 * slot;
    return table;
  }();
  return entries;
}

const Method* FindMethod(const StandIn& standIn, unsigned slot) {
  if (slot == 0) return &kQuery;
  for (const Method& method : kMethods) {
    if (method.slot == slot && *method.interface == standIn.iid) return &method;
  }
  return nullptr;
}

// An interface that an argument names, without its stand-in.
Word Behind(Word argument) {
  auto* const standIn = reinterpret_cast<StandIn*>(argument);
  return standIn && standIn->entries == Entries() ? reinterpret_cast<Word>(standIn->object)
                                                  : argument;
}

// Nothing lives at this address.
void* Rubbish() { return reinterpret_cast<void*>(Word{0xDEAD0}); }

void LieAboutFormat(AM_MEDIA_TYPE** place) {
  constexpr GUID kFormats[] = {kFormatVideoInfo, kFormatVideoInfo2, {}};
  auto* const type = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
  *type = {};
  type->formattype = kFormats[ChanceBelow(std::size(kFormats))];
  type->cbFormat = ChanceBelow(160);
  if (ChanceBelow(4) != 0) {
    type->pbFormat = static_cast<BYTE*>(CoTaskMemAlloc(type->cbFormat + 1));
    FillByChance(type->pbFormat, type->cbFormat);
  }
  *place = type;
}

void LieAboutText(VARIANT* place) {
  static const std::wstring kLong(10000, L'x');
  const std::uint32_t kind = ChanceBelow(4);
  place->vt = kind == 3 ? VT_I4 : VT_BSTR;
  place->llVal = 0;
  if (kind < 2) place->bstrVal = SysAllocString(kind == 0 ? kLong.c_str() : L"");
}

// A call that was not made: its answer is made up.
HRESULT MakeUp(const Method& method, Word* arguments, Fate fate) {
  const bool lied = fate == Fate::Lied;
  const HRESULT code = lied ? CodeByChance() : kRefusal;
  auto* const place = reinterpret_cast<void*>(arguments[method.place]);
  switch (method.out) {
    case Out::Nothing:
      break;
    case Out::Object:
    case Out::AnyObject:
    case Out::FirstOfOne:
      *static_cast<void**>(place) = SUCCEEDED(code) ? nullptr : Rubbish();
      if (code == S_FALSE && method.out == Out::FirstOfOne) {
        *static_cast<void**>(place) = Rubbish();
      }
      break;
    case Out::Bytes:
      if (lied) FillByChance(place, static_cast<std::uint32_t>(arguments[method.other]));
      break;
    case Out::Word:
      if (lied) FillByChance(place, 4);
      break;
    case Out::Words3:
      for (unsigned i = 0; i < 3 && lied; ++i) {
        FillByChance(reinterpret_cast<void*>(arguments[method.place + i]), 4);
      }
      break;
    case Out::Format:
      if (lied && SUCCEEDED(code)) LieAboutFormat(static_cast<AM_MEDIA_TYPE**>(place));
      if (FAILED(code)) *static_cast<void**>(place) = Rubbish();
      break;
    case Out::PinInfo: {
      auto* const info = static_cast<PIN_INFO*>(place);
      // Up to the end of the record.
      std::memset(info->achName, '6', sizeof(*info) - offsetof(PIN_INFO, achName));
      info->pFilter = SUCCEEDED(code) ? nullptr : static_cast<IBaseFilter*>(Rubbish());
      break;
    }
    case Out::Text:
      if (lied && SUCCEEDED(code)) LieAboutText(static_cast<VARIANT*>(place));
      if (FAILED(code)) static_cast<VARIANT*>(place)->bstrVal = static_cast<BSTR>(Rubbish());
      break;
  }
  return code;
}

Word Call(StandIn& standIn, const Method& method, Word* arguments) {
  // The call may destroy the stand-in through which it came.
  const Fate fate = FateOf(method.name);
  if (fate == Fate::Refused || fate == Fate::Lied) {
    return static_cast<std::uint32_t>(MakeUp(method, arguments, fate));
  }
  for (unsigned i = 0; i < 8; ++i) {
    if ((method.standIns >> i & 1) != 0) arguments[i] = Behind(arguments[i]);
  }
  const auto code = static_cast<HRESULT>(standIn.Forward(method.slot, arguments));
  if (method.out == Out::FirstOfOne && fate == Fate::Odd && code == S_OK) {
    // The odd success of a list is its end, and hands out nothing.
    auto* const place = reinterpret_cast<IUnknown**>(arguments[method.place]);
    ComPtr<IUnknown>::Adopt(std::exchange(*place, static_cast<IUnknown*>(Rubbish())));
    return S_FALSE;
  }
  const IID* handed = method.handsOut;
  if (method.out == Out::AnyObject) handed = reinterpret_cast<const IID*>(arguments[method.other]);
  if (handed && SUCCEEDED(code)) {
    auto* const place = reinterpret_cast<void**>(arguments[method.place]);
    *place = StandInOf(*handed, *place);
  }
  return static_cast<std::uint32_t>(code == S_OK && fate == Fate::Odd ? S_FALSE : code);
}

}  // namespace

void* StandInOf(REFIID iid, void* object) {
  if (!object) return nullptr;
  liveStandIns.push_back(iid);
  return new StandIn{.entries = Entries(), .iid = iid, .object = object};
}

IUnknown* StandInFor(IUnknown* object) {
  if (object) object->AddRef();
  return static_cast<IUnknown*>(StandInOf(IidOf<IUnknown>(), object));
}

int LiveStandIns() { return static_cast<int>(liveStandIns.size()); }
int LiveStandIns(REFIID iid) {
  return static_cast<int>(std::count(liveStandIns.begin(), liveStandIns.end(), iid));
}

}  // namespace zelk::faults

using namespace zelk::faults;

Word ZelkStandInCall(Word* arguments, std::uint32_t slot) {
  auto* const standIn = reinterpret_cast<StandIn*>(arguments[0]);
  if (slot == 1) return static_cast<Word>(++standIn->references);
  if (slot == 2) {
    const int left = --standIn->references;
    if (left > 0) return static_cast<Word>(left);
    liveStandIns.erase(std::find(liveStandIns.begin(), liveStandIns.end(), standIn->iid));
    standIn->Forward(slot, arguments);
    delete standIn;
    return 0;
  }
  if (const Method* const method = FindMethod(*standIn, slot)) {
    return Call(*standIn, *method, arguments);
  }
  return standIn->Forward(slot, arguments);
}
