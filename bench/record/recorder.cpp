#include "bench/record/recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "platform/control.h"

namespace zelk::record {

Places places;
Recorder* recorder = nullptr;

namespace {

constexpr std::size_t kDigestLines = 100;
constexpr std::uint64_t kFnvStart = 0xCBF29CE484222325;
constexpr std::uint64_t kFnvPrime = 0x100000001B3;

std::uint8_t* PlaceBytes() { return reinterpret_cast<std::uint8_t*>(&places); }
std::uint8_t Pattern(std::size_t index) { return static_cast<std::uint8_t>(0xC1 + 7 * index); }

// "@20: 00000001 00000002": the words that are no longer as they were preset.
std::string ChangedPlaces() {
  std::string text;
  bool inRow = false;
  for (std::size_t at = 0; at < sizeof(places); at += 4) {
    const std::uint8_t* word = PlaceBytes() + at;
    bool changed = false;
    for (std::size_t i = 0; i < 4; ++i) changed |= word[i] != Pattern(at + i);
    if (changed) {
      if (!inRow) text += "  " + Show(word) + ':';
      std::uint32_t value;
      std::memcpy(&value, word, 4);
      text += ' ' + Hex(value);
    }
    inRow = changed;
  }
  return text;
}

std::string Printable(std::string_view text) {
  if (text.size() > 1000) return std::to_string(text.size()) + " bytes";
  std::string printable;
  for (const char c : text) {
    if (c >= ' ' && c <= '~') {
      printable += c;
    } else {
      char code[8];
      std::snprintf(code, sizeof(code), "\\x%02X", static_cast<unsigned char>(c));
      printable += code;
    }
  }
  return printable;
}

}  // namespace

void Lines::Add(std::string_view line) {
  if (++count_ <= verbatim_) return AddPlain(line);
  if (digested_ == 0) digest_ = kFnvStart;
  const auto hash = [this](char c) {
    digest_ = (digest_ ^ static_cast<unsigned char>(c)) * kFnvPrime;
  };
  for (const char c : line) hash(c);
  hash('\n');
  if (++digested_ == kDigestLines) EndDigest();
}

void Lines::AddPlain(std::string_view line) {
  EndDigest();
  text_.append("  ").append(line).append("\n");
}

void Lines::EndDigest() {
  if (digested_ == 0) return;
  char text[64];
  std::snprintf(text, sizeof(text), "  [%zu lines %08X%08X]\n", digested_,
                static_cast<unsigned>(digest_ >> 32), static_cast<unsigned>(digest_));
  text_ += text;
  digested_ = 0;
}

std::string Lines::Take() {
  EndDigest();
  count_ = 0;
  return std::exchange(text_, {});
}

void Recorder::Heading(std::string_view heading) {
  out_ << "\n== " << heading << '\n';
  block_ = 0;
}

void Recorder::Note(std::string_view note) {
  if (depth_ > 0) {
    lines_.AddPlain(note);
  } else {
    Write(std::string(note) + '\n');
  }
}

std::string Recorder::AfterPause(std::string_view line) {
  const std::uint64_t now = host::ClockMilliseconds();
  const std::uint64_t pause = now - std::exchange(lastLine_, now);
  return (pause ? '+' + std::to_string(pause) + "ms " : "") + std::string(line);
}

void Recorder::Line(std::string_view line) {
  if (mode_ == Mode::kKeep) trace_.emplace_back(line);
  lines_.Add(AfterPause(line));
}

void Recorder::Event(std::uint32_t event, std::uint32_t value, std::uint32_t extra) {
  const std::string line = AfterPause("event " + std::to_string(event) + ' ' +
                                      std::to_string(value) + ' ' + std::to_string(extra));
  const bool frequent = event == ZELK_EVENT_PROGRESS || event == ZELK_EVENT_POSITION;
  frequent ? lines_.Add(line) : lines_.AddPlain(line);
}

void Recorder::Begin(std::string call) {
  const std::uint64_t now = host::ClockMilliseconds();
  begun_.push_back(now);
  if (depth_++ > 0) {
    DrainLogs();
    lines_.AddPlain("{ " + call);
    return;
  }
  lastLine_ = now;
  call_ = std::move(call);
  for (std::size_t i = 0; i < sizeof(places); ++i) PlaceBytes()[i] = Pattern(i);
}

void Recorder::End(const std::string& result) {
  DrainLogs();
  for (const std::string& line : host::TakeDebugOutput()) lines_.AddPlain("debug: " + line);
  for (const std::string& line : host::TakeExecutedCommands()) lines_.AddPlain("command: " + line);
  const std::uint64_t took = host::ClockMilliseconds() - begun_.back();
  begun_.pop_back();
  const std::string answer = "= " + result + (took ? ' ' + std::to_string(took) + "ms" : "");
  if (--depth_ > 0) return lines_.AddPlain("} " + answer);
  Write(call_ + ' ' + answer + ChangedPlaces() + '\n' + lines_.Take());
}

// What was written to the log files since the last time. They are taken away, so that the next
// record begins a file.
void Recorder::DrainLogs() {
  namespace fs = std::filesystem;
  std::vector<fs::path> logs;
  for (const fs::directory_entry& entry : fs::directory_iterator(".")) {
    if (entry.path().extension() == ".log" && entry.is_regular_file()) logs.push_back(entry.path());
  }
  std::sort(logs.begin(), logs.end());
  for (const fs::path& log : logs) {
    std::stringstream content;
    content << std::ifstream(log, std::ios::binary).rdbuf();
    fs::remove(log);
    // A record begins with a line end; what stands in front of the first is none.
    std::string text = content.str();
    Lines records(40);
    for (std::size_t at = 0; at <= text.size();) {
      const std::size_t end = std::min(text.find("\r\n", at), text.size());
      if (at > 0 || end > 0) {
        records.Add((at == 0 ? "log of old " : "log ") + log.filename().string() + ": " +
                    Printable(std::string_view(text).substr(at, end - at)));
      }
      at = end + 2;
    }
    std::istringstream taken(records.Take());
    for (std::string line; std::getline(taken, line);) lines_.AddPlain(line.substr(2));
  }
}

void Recorder::Write(std::string block) {
  const std::size_t number = block_++;
  if (mode_ == Mode::kKeep) ordinary_.push_back(block);
  if (mode_ == Mode::kCompare) {
    if (number < ordinary_.size() && block == ordinary_[number]) return;
    out_ << number << ": ";
  }
  out_ << block;
}

void Recorder::KeepAsOrdinary() {
  mode_ = Mode::kKeep;
  ordinary_.clear();
  trace_.clear();
}

void Recorder::CompareWithOrdinary() { mode_ = Mode::kCompare; }
void Recorder::WriteAll() { mode_ = Mode::kAll; }

std::string Hex(std::uint32_t word) {
  char text[16];
  std::snprintf(text, sizeof(text), "%08X", static_cast<unsigned>(word));
  return text;
}

std::string Show(const void* place) {
  if (!place) return "null";
  const auto at = static_cast<const std::uint8_t*>(place) - PlaceBytes();
  if (at < 0 || at >= static_cast<std::ptrdiff_t>(sizeof(places))) return "object";
  return '@' + std::to_string(at);
}

std::string Show(const char* text) {
  if (!text) return "null";
  return text >= places.name && text < places.name + sizeof(places.name)
             ? Show(static_cast<const void*>(text))
             : '"' + std::string(text) + '"';
}

std::string Show(ZELK_ScanCallback callback) { return callback ? "callback" : "null"; }

std::string Show(const ZELK_MpegParams& params) {
  std::uint32_t words[sizeof(params) / 4];
  std::memcpy(words, &params, sizeof(params));
  std::string text = "{";
  for (const std::uint32_t word : words)
    text += (text.size() > 1 ? " " : "") + std::to_string(word);
  return text + '}';
}

}  // namespace zelk::record
