// Drives every export on every kind of card and writes down what can be seen of it:
//     record FILE
// Two builds of one system behave alike when their records are the same.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>

#include "platform/com_apartment.h"
#include "platform/control.h"
#include "platform/vamp.h"
#include "tests/record/cards.h"
#include "tests/record/flows.h"
#include "tests/record/interruptions.h"
#include "tests/record/recorder.h"
#include "tests/record/scans.h"
#include "tests/support/temp_folder.h"

namespace zelk::record {

namespace {

void Write(const char* name, std::string_view text) {
  std::ofstream(name, std::ios::binary) << text;
}

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

// What the settings of the system change, and log files in each state.
void Surroundings() {
  const SetUp saa713x = Described("saa7134");
  for (const char* locale : {"00000407", "00000411", "00000419", "0407", ""}) {
    Write(
        "registry.ini",
        std::string("[HKEY_CURRENT_USER\\Control Panel\\International]\nLocale=") + locale + '\n');
    Exchange(saa713x);
    recorder->Heading(std::string("registry locale ") + locale);
    BoardFlow();
  }
  std::filesystem::remove("registry.ini");
  for (const char* country : {"1", "7", "44", "49", "81", "86", "886"}) {
    Write("locale.ini", std::string("[locale]\nlcid=0407\ncountry=") + country + '\n');
    Write("Telmora.ini", "[AP_INFO]\nDebugAPI=1\n");
    Exchange(Described("ql2"));
    recorder->Heading(std::string("country ") + country);
    BoardFlow();
  }
  std::filesystem::remove("locale.ini");
  std::filesystem::remove("Telmora.ini");

  Exchange(saa713x);
  recorder->Heading("old logs");
  InitCard();
  Write("zelkapi_713x.log", "\r\nold");
  ZELK_CALLED(ZELK_SetFreq, 175250, nullptr);
  Write("FMAutoScan.log", "\r\nold");
  ScanFm(0, 0, 88000, 88200);
  recorder->Heading("a log that is full");
  for (const std::size_t size : {0x100000u, 0x100001u}) {
    Write("zelkapi_713x.log", std::string(size, 'x'));
    ZELK_CALLED(ZELK_SetFreq, 175250, nullptr);
  }
  recorder->Heading("a folder in a log's place");
  std::filesystem::create_directory("zelkapi_713x.log");
  std::filesystem::create_directory("FMAutoScan.log");
  ZELK_CALLED(ZELK_SetFreq, 175250, nullptr);
  ScanFm(0, 0, 88000, 88200);
  FreeCard();
  std::filesystem::remove("zelkapi_713x.log");
  std::filesystem::remove("FMAutoScan.log");
}

void Record(std::ostream& out) {
  Recorder all(out);
  recorder = &all;
  WithoutCard();
  for (const SetUp& setUp : EverySetUp()) Ordinary(setUp);
  Boards();
  Surroundings();
  for (const SetUp& setUp : FewSetUps()) Refused(setUp);
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
