// Breaks every call that the library makes, in every card's life, and looks what becomes of it.
//
//     fault_trials [--seconds N] [--stride N] [--only TRIAL]
//
// Without --seconds all of it; with it what can be done in that time, the rest of which is spent on
// drivers that lie. --stride N tries every Nth call alone.
//
// A fault is a finding when the program crashes, hangs, when anything of the card or the system is
// held afterwards, or when a healthy card then behaves otherwise than before. Each finding is
// printed with the arguments that bring it back.
#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "ZElkAPI.h"
#include "api/library.h"
#include "platform/com_apartment.h"
#include "platform/control.h"
#include "tests/faults/calls.h"
#include "tests/faults/life.h"
#include "tests/faults/spy.h"
#include "tests/faults/system_calls.h"
#include "tests/support/temp_folder.h"

namespace zelk::faults {
namespace {

// One of each transport, of each kind of tuner and of each kind of board.
struct Boards {
  const char* kind;
  std::initializer_list<const char*> options;
};
constexpr Boards kBoards[] = {
    {"saa7134",
     {"tuner=1", "tuner=5,tunerfilter=0", "tuner=13", "tuner=14", "tuner=19", "tuner=20",
      "tuner=24", "tuner=27", "tuner=36", "tuner=40", "tuner=41", "tuner=43", "tuner=44",
      "tuner=46", "board=0xE1", "board=0xE9"}},
    {"saa7130", {"tuner=8,board=0x608,remote=gpio"}},
    {"bt878",
     {"tuner=1,tunerfilter=0", "tuner=13", "tuner=14", "tuner=40", "tuner=45,tunerfilter=0",
      "tuner=1,eeprom=dying"}},
    {"bt878-io", {"tuner=1", "tuner=15"}},
    {"cx2388x", {"tuner=1", "tuner=15,tunerfilter=0", "tuner=14", "tuner=24"}},
    {"cx2388x-io", {"tuner=1", "tuner=21"}},
    {"ql2", {"tuner=11", "tuner=25,pin=videoinfo2", "tuner=51", "tuner=16,tunerinfo=0"}},
};

std::vector<std::string> EveryCard() {
  std::vector<std::string> cards;
  for (const Boards& row : kBoards) {
    for (const char* const options : row.options) {
      cards.push_back(std::string(row.kind) + ',' + options);
    }
  }
  return cards;
}

// What a refused call leaves behind because nothing else can become of it.
struct Consequence {
  const char* refused;
  const char* reason;
};
constexpr Consequence kTableEntryStays[] = {
    {"IRunningObjectTable::Revoke", "the table was asked to let the graph go and would not"},
    {"GetRunningObjectTable", "without the table nothing can be taken out of it"},
};

struct Figures {
  long runs = 0;
  long calls = 0;
  long faults = 0;
  int findings = 0;
  std::map<std::string, long> consequences;
} figures;

// What is being tried, for the one who brings it back.
char trial[256];

// How many there are more than when this was asked last.
int NewEntriesInRunningObjectTable() {
  static int known = 0;
  ComPtr<IRunningObjectTable> table;
  ComPtr<IEnumMoniker> entries;
  GetRunningObjectTable(0, table.Receive());
  table->EnumRunning(entries.Receive());
  int count = 0;
  while (NextOf<IMoniker>(*entries.Get())) ++count;
  return count - std::exchange(known, count);
}

void Find(const std::string& what) {
  ++figures.findings;
  std::cout << "finding: " << what << "\n  comes back with: fault_trials --only \"" << trial
            << "\"\n";
}

// A trial that crashes or does not end says which one it was.
extern "C" void AtDeath(int number) {
  char text[512];
  const int length = std::snprintf(text, sizeof(text),
                                   "finding: %s\n  comes back with: fault_trials --only \"%s\"\n",
                                   strsignal(number), trial);
  if (write(STDOUT_FILENO, text, static_cast<std::size_t>(length)) < 0) _exit(2);
  signal(number, SIG_DFL);
  raise(number);
}

// --- What a client does from where it should not ---

void Free() {
  const AtWork library;
  ZELK_Free();
}

void Init() { InitCard(); }

void Exchange() {
  Plug(card && card->FriendlyName().ends_with("(7134)") ? "bt878,tuner=1" : "saa7134,tuner=1");
  InitCard();
}

void Unplug() { card.reset(); }

void Stop() {
  const AtWork library;
  ZELK_AllFreqScan(nullptr, ZELK_SCAN_STOP);
}

void OtherScan() {
  const AtWork library;
  ZELK_FMAllFreqScan(nullptr, ZELK_SCAN_START, 0, 0, 97900, 98000);
}

// What is tried: a fate of one call, of all from it on, or a visit from inside it or from an event.
struct Mode {
  const char* name;
  Fate fate;
  bool onward;
  void (*visit)();
};

constexpr Mode kModes[] = {
    {"refuse", Fate::Refused, false, nullptr},  {"refuse-from", Fate::Refused, true, nullptr},
    {"odd", Fate::Odd, false, nullptr},         {"odd-from", Fate::Odd, true, nullptr},
    {"free", Fate::Done, false, Free},          {"init", Fate::Done, false, Init},
    {"exchange", Fate::Done, false, Exchange},  {"unplug", Fate::Done, false, Unplug},
    {"stop", Fate::Done, false, Stop},          {"scan", Fate::Done, false, OtherScan},
    {"absurd", Fate::Done, false, AbsurdCalls},
};

// --- One trial ---

// Whether an entry stays in the running object table that nobody could have taken out of it.
bool TableEntryMustStay() {
  for (const Consequence& one : kTableEntryStays) {
    if (!CountsOfRun().names.contains(one.refused)) continue;
    ++figures.consequences[std::string(one.refused) + " refused: " + one.reason];
    return true;
  }
  return false;
}

void LookForWhatIsHeld() {
  const bool entry = NewEntriesInRunningObjectTable() != 0;
  const bool prescribed = entry && TableEntryMustStay();
  if (entry && !prescribed) Find("an entry stays in the running object table");
  // The graph of such an entry holds its filters.
  if (!entry && card && card->LiveReferences() != 0) Find("the card is held");
  static int knownStandIns = 0;
  const int standIns = LiveStandIns() - std::exchange(knownStandIns, LiveStandIns());
  if (standIns != 0) Find(std::to_string(standIns) + " interfaces are held");
  if (OpenHandles() != 0) Find("a file or a registry key is open");
  for (const char* module : {"PioGate.dll", "PioGate880.dll"}) {
    if (host::ModuleLoadCount(module) != 0) Find(std::string(module) + " stays loaded");
  }
  if (library.cardCalls != 0 || library.freed || library.freeing || library.ScanRunning ||
      library.trial != Library::Trial::None) {
    Find("the library takes itself to be at work");
  }
}

// A card's life under the plan, on a card that has just been plugged in.
std::string LifeOf(const std::string& description, Plan plan) {
  host::UseVirtualClock();
  library.AlpsTsehTsej = library.AlpsTsez = 0;  // they outlive a card
  Plug(description);
  Begin(std::move(plan));
  std::string answers = Life();
  End();
  ++figures.runs;
  figures.calls += CountsOfRun().calls;
  figures.faults += CountsOfRun().faults;
  return answers;
}

// What a healthy card answers, and what its life takes.
struct Healthy {
  std::string answers;
  int calls = 0;
  int allocations = 0;
  int events = 0;
};

Healthy HealthyLife(const std::string& description) {
  Healthy healthy;
  atEvent = [&] { ++healthy.events; };
  healthy.answers = LifeOf(description, {});
  atEvent = nullptr;
  healthy.calls = CountsOfRun().calls;
  healthy.allocations = CountsOfRun().allocations;
  LookForWhatIsHeld();
  return healthy;
}

void Try(const std::string& description, const Healthy& healthy, const std::string& what,
         Plan plan) {
  std::snprintf(trial, sizeof(trial), "%s %s", description.c_str(), what.c_str());
  constexpr unsigned kLongestSeconds = 60;
  alarm(kLongestSeconds);
  LifeOf(description, std::move(plan));
  atEvent = nullptr;
  LookForWhatIsHeld();
  if (LifeOf(description, {}) != healthy.answers) Find("a healthy card is no longer the same");
  alarm(0);
}

// The visit comes with the nth event instead.
void TryAtEvent(const std::string& description, const Healthy& healthy, const Mode& mode, int event,
                const std::string& what) {
  atEvent = [&mode, left = event]() mutable {
    if (--left == 0) mode.visit();
  };
  Try(description, healthy, what, {});
}

void TryOne(const std::string& description, const Healthy& healthy, const std::string& what) {
  std::istringstream words(what);
  std::string name;
  std::uint32_t number = 0;
  int oneIn = 0;
  words >> name >> number >> oneIn;
  if (name == "lie") {
    Try(description, healthy, what, {.fate = Fate::Lied, .oneIn = oneIn, .seed = number});
  } else if (name == "allocation") {
    Try(description, healthy, what, {.refusedAllocation = static_cast<int>(number)});
  }
  for (const Mode& mode : kModes) {
    if (name == mode.name) {
      Plan plan = {.fate = mode.fate, .first = static_cast<int>(number), .onward = mode.onward};
      if (mode.visit) plan.visit = mode.visit;
      Try(description, healthy, what, std::move(plan));
    } else if (name == std::string("event-") + mode.name) {
      TryAtEvent(description, healthy, mode, static_cast<int>(number), what);
    }
  }
}

// --- What must be given back before a failure is written down ---

// Refuses the nth call of an initialisation with this name; false when there is none. `look` is
// called as a log file is opened behind it.
bool InitRefusing(const char* name, int number, const std::function<void()>& look) {
  Plug("ql2,tuner=11,name=Korvane Telmora Video Capture (P260)");
  Plan plan = {.fate = Fate::Refused, .first = number};
  atLog = [&] {
    if (CountsOfRun().names.contains(name)) look();
  };
  Begin(std::move(plan));
  InitCard();
  End();
  atLog = nullptr;
  Free();
  return CountsOfRun().calls >= number;
}

void CheckOrders() {
  std::snprintf(trial, sizeof(trial), "the order of releases");
  constexpr int kOfApplication = 2;
  bool tableRefused = false;
  bool filterRefused = false;
  for (int number = 1;; ++number) {
    if (!InitRefusing("IRunningObjectTable::Register", number, [&] {
          tableRefused = true;
          if (LiveStandIns(IidOf<IRunningObjectTable>()) > 0) Find("a table is held");
        })) {
      break;
    }
    // The first interface that a filter is asked for is the capture filter's.
    InitRefusing("QueryInterface", number, [&] {
      if (std::exchange(filterRefused, true)) return;
      if (LiveStandIns() > kOfApplication) Find("a graph is held");
    });
  }
  if (!tableRefused || !filterRefused) Find("a refusal was not written down");
}

// --- All of them ---

class Trials {
 public:
  Trials(int seconds, int stride)
      : stride_(stride), seconds_(seconds), end_(Clock::now() + std::chrono::seconds(seconds)) {}

  // False when the time was not enough.
  bool Systematic() {
    for (const std::string& description : EveryCard()) {
      const Healthy healthy = HealthyLife(description);
      for (const Mode& mode : kModes) {
        if (!Each(description, healthy, mode.name, healthy.calls)) return false;
        if (!mode.visit) continue;
        if (!Each(description, healthy, std::string("event-") + mode.name, healthy.events)) {
          return false;
        }
      }
      if (!Each(description, healthy, "allocation", healthy.allocations)) return false;
    }
    return true;
  }

  // Drivers that lie now and then, often and always, as long as there is time; one round at least.
  void Lies() {
    std::uint32_t seed = 0;
    do {
      ++seed;
      for (const std::string& description : EveryCard()) {
        const Healthy healthy = HealthyLife(description);
        for (const int oneIn : {1, 3, 20, 100}) {
          TryOne(description, healthy, "lie " + std::to_string(seed) + ' ' + std::to_string(oneIn));
        }
      }
    } while (seconds_ > 0 && !TimeIsUp());
  }

 private:
  using Clock = std::chrono::steady_clock;
  bool TimeIsUp() const { return seconds_ > 0 && Clock::now() >= end_; }

  bool Each(const std::string& description, const Healthy& healthy, const std::string& name,
            int count) {
    for (int number = 1; number <= count; ++number) {
      // Each kind of trial, on each card, begins with another call.
      if (static_cast<int>((++turn_) % static_cast<unsigned>(stride_)) != 0) continue;
      if (TimeIsUp()) return false;
      TryOne(description, healthy, name + ' ' + std::to_string(number));
    }
    return true;
  }

  const int stride_;
  const int seconds_;
  const Clock::time_point end_;
  unsigned turn_ = 0;
};

void PrintFigures() {
  for (const auto& [text, times] : figures.consequences) {
    std::cout << "as it must be, " << times << " times: " << text << '\n';
  }
  std::cout << figures.runs << " runs, " << figures.calls << " calls, " << figures.faults
            << " faults, " << figures.findings << " findings\n";
}

}  // namespace
}  // namespace zelk::faults

int main(int argc, char** argv) {
  using namespace zelk::faults;
  CLI::App app("Breaks every call that the library makes");
  int seconds = 0;
  int stride = 1;
  std::string only;
  app.add_option("--seconds", seconds)->check(CLI::NonNegativeNumber);
  app.add_option("--stride", stride)->check(CLI::PositiveNumber);
  app.add_option("--only", only, "one trial: CARD NAME NUMBER [NUMBER]");
  CLI11_PARSE(app, argc, argv);

  const zelk::ComApartment com;
  const zelk::testing::TempFolder folder;
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  zelk::host::UseSettingsFolder(".");
  zelk::host::AddProfileValue("Telmora.ini", "AP_INFO", "DebugAPI", "1");
  for (const int number : {SIGALRM, SIGSEGV, SIGABRT}) signal(number, AtDeath);

  AbsurdCalls();
  CheckOrders();
  if (only.empty()) {
    Trials trials(seconds, stride);
    if (trials.Systematic()) {
      trials.Lies();
    } else {
      std::cout << "the time was not enough for all trials\n";
    }
  } else {
    const std::size_t space = only.find(' ');
    const std::string description = only.substr(0, space);
    TryOne(description, HealthyLife(description),
           space == std::string::npos ? "" : only.substr(space + 1));
  }
  card.reset();
  PrintFigures();
  std::filesystem::current_path(before);
  return figures.findings == 0 ? 0 : 1;
}
