#include "bench/record/flows.h"
#include "bench/record/recorder.h"
#include "tests/support/message_window.h"

namespace zelk::record {

namespace {

constexpr std::uint32_t kEvents = 40;

// One of the two scans, and the card made ready for it.
struct Scan {
  const char* name;
  void (*prepare)();
  void (*start)(std::uint32_t command);
};

void PrepareTv() {
  ZELK_CALLED(ZELK_TVInit);
  const auto [standard, country] = HomeOfTuner();
  ZELK_CALLED(ZELK_put_TVFormat, standard, country);
  ZELK_CALLED(ZELK_SetFreq, static_cast<std::uint32_t>(AirOfCard().tv.front().pictureKHz), nullptr);
}

void PrepareFm() {
  ZELK_CALLED(ZELK_FMInit);
  ZELK_CALLED(ZELK_FMSetFreq, static_cast<std::uint32_t>(AirOfCard().fm.front().carrierKHz),
              nullptr);
}

void StartTv(std::uint32_t command) { ZELK_CALLED(ZELK_AllFreqScan, OnScanEvent, command); }
void StartFm(std::uint32_t command) {
  ZELK_CALLED(ZELK_FMAllFreqScan, OnScanEvent, command, 0, 0, 0, 0);
}

constexpr Scan kScans[] = {{"TV", PrepareTv, StartTv}, {"FM", PrepareFm, StartFm}};

struct Interruption {
  std::string name;
  std::function<void(const Scan& scan)> act;
};

void LoseCard() {
  Unplug();
  ZELK_CALLED(ZELK_HWInit, nullptr, "nobody's card", nullptr, 0);
}

std::vector<Interruption> Interruptions() {
  std::vector<Interruption> all = {{"free", [](auto&) { ZELK_CALLED(ZELK_Free); }},
                                   {"the same card again", [](auto&) { InitCard(); }},
                                   {"no card any more", [](auto&) { LoseCard(); }},
                                   {"TV mode", [](auto&) { PrepareTv(); }},
                                   {"FM mode", [](auto&) { PrepareFm(); }}};
  for (const Scan& other : kScans) {
    for (const std::uint32_t command : {0u, 1u, 2u}) {
      all.push_back({std::string(other.name) + " command " + std::to_string(command),
                     [&other, command](auto&) { other.start(command); }});
    }
  }
  // An ALPS module changes the TV scan of other families until the next SAA713x card.
  for (const char* description :
       {"saa7134,tuner=46", "saa7134,tuner=1", "bt878,tuner=15", "cx2388x-io,tuner=1", "ql2"}) {
    all.push_back({std::string("exchanged for ") + description, [=](auto& scan) {
                     Exchange(Described(description));
                     InitCard();
                     scan.prepare();
                   }});
  }
  return all;
}

// A scan's event, or the message of a window: one posted when the scan has reported its position so
// many times.
struct Moment {
  std::string name;
  std::uint32_t event;
  int messageAfter;
};

std::vector<Moment> Moments() {
  std::vector<Moment> moments;
  for (const std::uint32_t event : {1001u, 1002u, 1003u, 1004u, 1005u}) {
    moments.push_back({"event " + std::to_string(event), event, -1});
  }
  for (const int positions : {0, 1, 2, 3, 4, 6}) {
    moments.push_back({"message after " + std::to_string(positions), 0, positions});
  }
  return moments;
}

void Run(const SetUp& setUp, const Scan& scan, const Moment& moment,
         const Interruption& interruption) {
  static test::MessageWindow window;
  Exchange(setUp);
  InitCard();
  scan.prepare();
  int positions = 0;
  bool done = false;
  atEvent = [&](std::uint32_t event) {
    if (event == ZELK_EVENT_POSITION) ++positions;
    const auto act = [run = interruption.act, &scan] { run(scan); };
    if (done || !(done = event == moment.event || positions == moment.messageAfter)) return;
    if (event == moment.event) return act();
    window.AtNextMessage([act] {
      recorder->Note("message");
      act();
    });
  };
  LimitScan(kEvents);
  scan.start(ZELK_SCAN_START);
  atEvent = nullptr;
  ZELK_CALLED(ZELK_GetTunerType, places.words);
  FreeCard();
}

}  // namespace

void InterruptedScans(const SetUp& setUp) {
  Plug(setUp);
  for (const Scan& scan : kScans) {
    const std::string heading = setUp.name + ": " + scan.name + " scan";
    recorder->Heading(heading);
    recorder->KeepAsOrdinary();
    Run(setUp, scan, {"never", 0, -1}, {});
    recorder->CompareWithOrdinary();
    for (const Moment& moment : Moments()) {
      for (const Interruption& interruption : Interruptions()) {
        recorder->Heading(heading + ", " + moment.name + ": " + interruption.name);
        Run(setUp, scan, moment, interruption);
      }
    }
    recorder->WriteAll();
  }
}

}  // namespace zelk::record
