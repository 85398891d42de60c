// The one gate that everything a virtual card hears passes through. It writes the trace and makes
// requests fail that are to fail. While nobody listens and nothing is refused a request passes
// without any text being made of it: a scan sends thousands of them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/com.h"
#include "virtual_cards/bus_trace.h"
#include "virtual_cards/cards/trace_line.h"

namespace zelk::virtual_cards {

// What a transfer answers that nobody acknowledged. As a code of its own it tells the bus's own
// failures from those that somebody ordered.
inline constexpr HRESULT kNotAcknowledged = S_FALSE;

class RequestGate {
 public:
  // Null detaches.
  void AttachTrace(BusTrace* trace) { trace_ = trace; }
  void Refuse(std::string_view request, HRESULT code);
  void ClearRefusals() { refusals_.clear(); }

  // One request: `describe(line)` writes the request, `act()` carries it out, `answer(line, code)`
  // adds what came of it, for refused requests too. Answers the code of `act` or of the refusal.
  template <class Describe, class Act, class Answer>
  HRESULT PassAny(Describe describe, Act act, Answer answer) {
    if (!Listening()) return act();
    TraceLine line;
    describe(line);
    const std::optional<HRESULT> refusal = FindRefusal(line.Str());
    const HRESULT code = refusal ? *refusal : act();
    answer(line, code);
    Report(line);
    return code;
  }

  // The same for requests whose failure shows as its code; `answer(line)` describes a success.
  template <class Describe, class Act, class Answer>
  HRESULT Pass(Describe describe, Act act, Answer answer) {
    return PassAny(describe, act, [&](TraceLine& line, HRESULT code) {
      if (FAILED(code)) {
        line.Answer().Word(static_cast<std::uint32_t>(code));
      } else {
        answer(line);
      }
    });
  }

  template <class Describe, class Act>
  HRESULT Pass(Describe describe, Act act) {
    return Pass(describe, act, [](TraceLine&) {});
  }

  // A transfer on a bus: `act` answers S_OK or kNotAcknowledged, or a failure of another kind. So
  // does this; a refusal with a code that is none is the bus's own failure.
  template <class Describe, class Act, class Answer>
  HRESULT PassTransfer(Describe describe, Act act, Answer answer) {
    const HRESULT code = PassAny(describe, act, [&](TraceLine& line, HRESULT result) {
      if (result == S_OK) {
        answer(line);
      } else if (FAILED(result)) {
        line.Answer().Word(static_cast<std::uint32_t>(result));
      } else {
        line.Answer().Text("nak");
      }
    });
    return code == S_OK || FAILED(code) ? code : kNotAcknowledged;
  }

  // A request that is one fixed text.
  template <class Act>
  HRESULT PassText(std::string_view request, Act act) {
    return Pass([request](TraceLine& line) { line.Text(request); }, act);
  }

  // A request for a number.
  template <class Number, class Value>
  HRESULT PassNumber(std::string_view request, Number* place, Value value) {
    return Pass([request](TraceLine& line) { line.Text(request); },
                [&] {
                  if (!place) return E_POINTER;
                  *place = static_cast<Number>(value());
                  return S_OK;
                },
                [&](TraceLine& line) { line.Answer().Number(*place); });
  }

  // QueryInterface: an empty `request` stands for an interface that is nobody's business. The out
  // pointer is empty after a refusal, as after every failure.
  template <class Act>
  HRESULT PassQuery(std::string_view request, void** object, Act act) {
    if (request.empty() || !object) return act();
    *object = nullptr;
    return PassText(request, act);
  }

 private:
  struct Refusal {
    std::string request;
    HRESULT code;
  };

  bool Listening() const { return trace_ || !refusals_.empty(); }
  std::optional<HRESULT> FindRefusal(std::string_view request) const;
  void Report(const TraceLine& line) const;

  BusTrace* trace_ = nullptr;
  std::vector<Refusal> refusals_;
};

}  // namespace zelk::virtual_cards
