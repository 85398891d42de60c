// Drives every export on every kind of card and writes down what can be seen of it:
//     record FILE
// Two builds of one system behave alike when their records are the same.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>

#include "bench/record/cards.h"
#include "bench/record/flows.h"
#include "bench/record/recorder.h"
#include "platform/com_apartment.h"
#include "platform/control.h"
#include "platform/vamp.h"
#include "tests/support/temp_folder.h"

namespace zelk::record {

namespace {

void WithoutCard() {
  recorder->Heading("no card");
  EveryExport();
  ScanTv();
  ScanFm(0, 0);
}

void Ordinary(const SetUp& setUp) {
  Plug(setUp);
  recorder->Heading(setUp.name);
  WholeFlow();
  recorder->Heading(setUp.name + ": scans");
  InitCard();
  WholeScans();
  FreeCard();
}

// The flow once as it is, then with each of its requests refused in turn.
void Refused(const SetUp& setUp) {
  Plug(setUp);
  recorder->Heading(setUp.name + ": nothing refused");
  recorder->KeepAsOrdinary();
  ShortFlow();
  std::set<std::string> requests;
  for (const std::string& line : recorder->OrdinaryTrace())
    requests.insert(line.substr(0, line.find(" -> ")));
  recorder->CompareWithOrdinary();
  for (const std::string& request : requests) {
    for (const HRESULT code : {E_FAIL, static_cast<HRESULT>(kVampBusFailed)}) {
      if (code != E_FAIL && !request.starts_with("i2c ")) continue;
      Exchange(setUp);
      Plugged()->Refuse(request, code);
      recorder->Heading(setUp.name + ": refused with " + Hex(static_cast<std::uint32_t>(code)) +
                        ": " + request);
      ShortFlow();
    }
  }
  recorder->WriteAll();
}

void Boards() {
  for (const SetUp& board : EveryBoard()) {
    Exchange(board);
    recorder->Heading(board.name);
    BoardFlow();
  }
}

void Record(std::ostream& out) {
  Recorder all(out);
  recorder = &all;
  WithoutCard();
  for (const SetUp& setUp : EverySetUp()) Ordinary(setUp);
  Boards();
  Surroundings();
  for (const SetUp& setUp : FewSetUps()) {
    Plug(setUp);
    recorder->Heading(setUp.name + ": formats");
    EveryFormat();
    Refused(setUp);
  }
  for (const SetUp& setUp : FewSetUps()) InterruptedScans(setUp);
  Unplug();
  all.Heading("the end");
}

}  // namespace
}  // namespace zelk::record

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: record FILE\n";
    return 2;
  }
  std::ofstream out(argv[1], std::ios::binary);
  const auto before = std::filesystem::current_path();
  {
    const zelk::ComApartment com;
    const zelk::testing::TempFolder folder;
    std::filesystem::current_path(folder.Path());
    zelk::host::UseVirtualClock();
    zelk::host::UseSettingsFolder(".");
    zelk::record::Record(out);
    std::filesystem::current_path(before);
  }
  out.close();
  if (!out) std::cerr << "record: " << argv[1] << " cannot be written\n";
  return out ? 0 : 1;
}
