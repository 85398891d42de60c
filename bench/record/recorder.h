// What the library was asked, what it answered and what could be seen of it meanwhile, as text.
//
// Nothing in this text depends on the run: no addresses, no process, no time but the virtual
// clock's. Two records of one system can be compared line by line.
#pragma once

#include <concepts>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "ZElkAPI.h"
#include "virtual_cards/bus_trace.h"

namespace zelk::record {

// Where the exports put what they answer. A call finds it full of a pattern, so that what it leaves
// alone shows.
struct Places {
  std::uint32_t words[8];
  double number;
  std::uint8_t bytes[32];
  char name[48];
  ZELK_HWInfo info;
  ZELK_MpegParams encoder;
};
extern Places places;

// Lines in their order. The first ones stand as they are; what follows stands for each hundred as
// a digest, so that a whole band is some hundred lines and a comparison still says where it
// begins to differ.
class Lines {
 public:
  explicit Lines(std::size_t verbatim) : verbatim_(verbatim) {}
  void Add(std::string_view line);
  // One that always stands as it is.
  void AddPlain(std::string_view line);
  std::string Take();

 private:
  void EndDigest();

  const std::size_t verbatim_;
  std::string text_;
  std::size_t count_ = 0;
  std::size_t digested_ = 0;
  std::uint64_t digest_ = 0;
};

class Recorder final : public virtual_cards::BusTrace {
 public:
  explicit Recorder(std::ostream& out) : out_(out) {}

  void Heading(std::string_view heading);
  // A remark that stands by itself, between calls or within one.
  void Note(std::string_view note);
  void Line(std::string_view line) override;
  void Event(std::uint32_t event, std::uint32_t value, std::uint32_t extra);

  // Calls may nest: a scan calls back.
  void Begin(std::string call);
  void End(const std::string& result);

  // A run that later ones are compared with: of those only the calls that differ are written.
  void KeepAsOrdinary();
  void CompareWithOrdinary();
  void WriteAll();

  // What went over the card's wires in the ordinary run.
  const std::vector<std::string>& OrdinaryTrace() const { return trace_; }

 private:
  enum class Mode { kAll, kKeep, kCompare };

  std::string AfterPause(std::string_view line);
  void DrainLogs();
  void Write(std::string block);

  std::ostream& out_;
  Mode mode_ = Mode::kAll;
  std::vector<std::string> ordinary_;
  std::size_t block_ = 0;
  int depth_ = 0;
  std::string call_;
  std::vector<std::uint64_t> begun_;
  std::uint64_t lastLine_ = 0;
  Lines lines_{200};
  std::vector<std::string> trace_;
};

extern Recorder* recorder;

// An argument as the record shows it.
std::string Show(const void* place);
std::string Show(const char* text);
std::string Show(ZELK_ScanCallback callback);
std::string Show(const ZELK_MpegParams& params);
inline std::string Show(std::integral auto number) { return std::to_string(number); }
std::string Hex(std::uint32_t word);

template <class Result, class... Parameters>
void Call(const char* name, Result(ZELK_CALL* function)(Parameters...),
          std::type_identity_t<Parameters>... arguments) {
  std::string text;
  ((text += (text.empty() ? "" : ", ") + Show(arguments)), ...);
  recorder->Begin(std::string(name) + '(' + text + ')');
  if constexpr (std::is_void_v<Result>) {
    function(arguments...);
    recorder->End("done");
  } else {
    recorder->End(Hex(static_cast<std::uint32_t>(function(arguments...))));
  }
}

#define ZELK_CALLED(function, ...) \
  ::zelk::record::Call(#function, function __VA_OPT__(, ) __VA_ARGS__)

}  // namespace zelk::record
