// The C interface to the virtual cards. The C++ side reports mistakes by exceptions; none of them
// crosses this border, since a caller in C has no way to catch it.
#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string_view>
#include <utility>

#include "ZElkVirtual.h"
#include "platform/com_apartment.h"
#include "virtual_cards/cards/virtual_card.h"

using namespace zelk::virtual_cards;

namespace {

constexpr std::string_view kDefaultCard = "saa7134";

// A fixed place: writing down why memory could not be had needs none.
thread_local char lastError[512] = "";

void SetLastError(std::string_view text) noexcept {
  const std::size_t length = text.copy(lastError, sizeof lastError - 1);
  lastError[length] = '\0';
}

// Answers what `operation` answers, or `failure` when it throws.
template <class Result, class Operation>
Result Guard(Result failure, Operation operation) noexcept {
  SetLastError("");
  try {
    return operation();
  } catch (const std::exception& error) {
    SetLastError(error.what());
  } catch (...) {
    SetLastError("unknown failure");
  }
  return failure;
}

// The same with nothing to answer.
template <class Operation>
void GuardVoid(Operation operation) noexcept {
  Guard(0, [&] {
    operation();
    return 0;
  });
}

// Hands the lines on to the caller's function.
class CallbackTrace final : public BusTrace {
 public:
  CallbackTrace(ZELKV_TraceCallback callback, void* context)
      : callback_(callback), context_(context) {}
  void Line(std::string_view line) override { callback_(std::string(line).c_str(), context_); }

 private:
  ZELKV_TraceCallback callback_;
  void* context_;
};

// Made once, so that the names stay where they are.
const std::vector<CardKind>& Kinds() {
  static const std::vector<CardKind> kinds = CardKinds();
  return kinds;
}

const char* KindText(std::uint32_t index, std::string CardKind::*text) {
  return Guard<const char*>(
      nullptr, [&] { return index < Kinds().size() ? (Kinds()[index].*text).c_str() : nullptr; });
}

bool pluggedIn = false;

}  // namespace

struct ZELKV_Card {
  ZELKV_Card(std::string_view description, Air air)
      : card(CreateCard(description, std::move(air))) {
    pluggedIn = true;
  }
  ~ZELKV_Card() { pluggedIn = false; }

  const zelk::ComApartment com;          // programs in C have seldom heard of it
  std::unique_ptr<CallbackTrace> trace;  // outlives the card that it is attached to
  const std::unique_ptr<VirtualCard> card;
};

const char* ZELK_CALL ZELKV_LastError(void) { return lastError; }

uint32_t ZELK_CALL ZELKV_KindCount(void) {
  return Guard(0U, [] { return static_cast<uint32_t>(Kinds().size()); });
}

const char* ZELK_CALL ZELKV_KindName(uint32_t index) { return KindText(index, &CardKind::name); }

const char* ZELK_CALL ZELKV_KindDescription(uint32_t index) {
  return KindText(index, &CardKind::description);
}

ZELKV_Card* ZELK_CALL ZELKV_PlugIn(const char* description, const char* air) {
  return Guard<ZELKV_Card*>(nullptr, [&] {
    // Two cards would answer for one COM class.
    if (pluggedIn) throw std::logic_error("a card is plugged in already");
    return new ZELKV_Card(description ? std::string_view(description) : kDefaultCard,
                          LoadAir(air ? std::string_view(air) : kDefaultPlace));
  });
}

void ZELK_CALL ZELKV_Unplug(ZELKV_Card* card) {
  GuardVoid([&] { delete card; });
}

const char* ZELK_CALL ZELKV_FriendlyName(ZELKV_Card* card) {
  return Guard<const char*>(nullptr,
                            [&] { return card ? card->card->FriendlyName().c_str() : nullptr; });
}

IUnknown* ZELK_CALL ZELKV_CaptureFilter(ZELKV_Card* card) {
  return Guard<IUnknown*>(nullptr,
                          [&] { return card ? card->card->CaptureFilter().Get() : nullptr; });
}

IUnknown* ZELK_CALL ZELKV_TunerFilter(ZELKV_Card* card) {
  return Guard<IUnknown*>(nullptr,
                          [&] { return card ? card->card->TunerFilter().Get() : nullptr; });
}

void ZELK_CALL ZELKV_Trace(ZELKV_Card* card, ZELKV_TraceCallback callback, void* context) {
  GuardVoid([&] {
    if (!card) return;
    auto trace = callback ? std::make_unique<CallbackTrace>(callback, context) : nullptr;
    card->card->AttachTrace(trace.get());
    card->trace = std::move(trace);
  });
}

void ZELK_CALL ZELKV_Refuse(ZELKV_Card* card, const char* request, HRESULT code) {
  GuardVoid([&] {
    if (card && request) card->card->Refuse(request, code);
  });
}

void ZELK_CALL ZELKV_ClearRefusals(ZELKV_Card* card) {
  GuardVoid([&] {
    if (card) card->card->ClearRefusals();
  });
}

int32_t ZELK_CALL ZELKV_LiveReferences(ZELKV_Card* card) {
  return Guard(0, [&] { return card ? card->card->LiveReferences() : 0; });
}
