#include <filesystem>
#include <fstream>

#include "bench/record/flows.h"
#include "bench/record/recorder.h"

namespace zelk::record {

namespace {

// A file that goes with the object.
class File {
 public:
  File(const char* name, const std::string& text) : name_(name) {
    std::ofstream(name, std::ios::binary) << text;
  }
  ~File() { std::filesystem::remove(name_); }

 private:
  const char* const name_;
};

void Settings() {
  for (const char* locale : {"00000407", "00000411", "00000419", "0407", ""}) {
    const std::string key = "[HKEY_CURRENT_USER\\Control Panel\\International]\nLocale=";
    const File registry("registry.ini", key + locale + '\n');
    Exchange(Described("saa7134"));
    recorder->Heading(std::string("registry locale ") + locale);
    BoardFlow();
  }
  for (const char* country : {"1", "7", "44", "49", "81", "86", "886"}) {
    const File locale("locale.ini", std::string("[locale]\nlcid=0407\ncountry=") + country + '\n');
    const File debug("Telmora.ini", "[AP_INFO]\nDebugAPI=1\n");
    Exchange(Described("ql2"));
    recorder->Heading(std::string("debugging in country ") + country);
    ShortFlow();
  }
  for (const char* value : {"5", " 7", "-1", "0x10", "300", ""}) {
    const File installed("Telmora2k.ini", std::string("[PRODUCTINFO]\n0x41=") + value +
                                              "\n0x42=" + value + "\n0xFD=" + value + '\n');
    Exchange(Described("bt878-io,eeprom=none"));
    recorder->Heading(std::string("installed bytes ") + value);
    BoardFlow();
  }
}

void OldLogs() {
  Exchange(Described("saa7134"));
  recorder->Heading("old logs");
  InitCard();
  const auto write = [] {
    ZELK_CALLED(ZELK_SetFreq, 175250, nullptr);
    ScanFm(0, 0, 88000, 88200);
  };
  for (const std::size_t size : {10u, 0x100000u, 0x100001u}) {
    const File log("zelkapi_713x.log", std::string(size, 'x'));
    const File scanLog("FMAutoScan.log", std::string(size, 'x'));
    write();
  }
  for (const char* name : {"zelkapi_713x.log", "FMAutoScan.log"}) {
    std::filesystem::create_directory(name);
    write();
    std::filesystem::remove(name);
  }
  FreeCard();
}

void Names() {
  std::vector<std::string> names = {"",
                                    "nobody's card",
                                    "Grab7134 Capture",
                                    "Grab7134 Capture Device",
                                    "grab7134 Capture",
                                    "Dravik Pelion (7130) WDM Video Capture",
                                    "Dravik Pelion (7134) WDM Video Capture",
                                    "Unknown Boardconfiguration (EEPROM not programmed or missing)",
                                    "ZElk Q44 WDM Video Capture",
                                    "HXA 218 WDM Video Capture",
                                    "HXA 219 WDM Video Capture",
                                    "Varnel Capture",
                                    "Telmora Capture",
                                    "Korvane, Telmora N57/N68 Video Capture",
                                    "Varnel 2388x Video Capture",
                                    "Hollis INC. GX-DW7/PCI WDM Video Capture",
                                    "Hollis INC. GX-DW7/PCI Video Capture"};
  for (const char* chip :
       {"7130", "7133/7135", "7133", "7134", "Silicon", "K21", "K22", "878", "88x", "7131"}) {
    names.push_back(std::string("Korvane, Telmora WDM Video Capture (") + chip + ')');
  }
  for (const char* board : {"QL2", "P260", "P260, Japan", "P260 with FM, Japan", "P260, Europe",
                            "P260 with FM, Europe", "P260, NTSC", "P260 with FM, NTSC"}) {
    names.push_back(std::string("Korvane Telmora Video Capture (") + board + ')');
  }
  for (const char* tuner : {"FM1286MK2", "FI1236MK3", "FM1216MK3", "FI1216MK3", "FQ1236MK5",
                            "FQ1216MK5", "FM1216MK5", "FM1236MK5", "FM1236MK3"}) {
    names.push_back(std::string("Korvane Telmora Video Capture (P260, Philips ") + tuner +
                    " Tuner)");
  }
  for (const char* kind : {"saa7134", "bt878", "cx2388x", "ql2", "bt878-io"}) {
    Exchange(Described(kind));
    recorder->Heading(std::string("names given to ") + kind);
    const auto capture = Plugged()->CaptureFilter();
    for (const std::string& name : names) {
      ZELK_CALLED(ZELK_HWInit, capture.Get(), name.c_str(), nullptr, 0);
      ZELK_CALLED(ZELK_HWInit, nullptr, name.c_str(), nullptr, 0);
    }
    ZELK_CALLED(ZELK_HWInit, capture.Get(), nullptr, nullptr, 0);
    FreeCard();
  }
}

void Keys() {
  for (const char* remote : {"saa7134,key=1:", "saa7134,key=2:", "saa7134,key=3:",
                             "saa7134,remote=gpio,key=1:", "saa7134,remote=gpio,key=3:",
                             "bt878,key=", "bt878-io,key=", "cx2388x,key=", "cx2388x-io,key="}) {
    for (int code = 0; code < 256; ++code) {
      const std::string description = remote + std::to_string(code);
      Exchange(Described(description));
      code == 0 ? recorder->KeepAsOrdinary() : recorder->CompareWithOrdinary();
      recorder->Heading(description);
      InitCard();
      ZELK_CALLED(ZELK_GetRemoteData, places.words);
      ZELK_CALLED(ZELK_GetRemoteICData, places.bytes);
      FreeCard();
    }
    recorder->WriteAll();
  }
}

// More on the air than a scan reports, and scans that nobody listens to.
void CrowdedAir() {
  Plug(Described("saa7134"));
  for (int i = 0; i < 140; ++i)
    AirOfCard().tv.push_back({"", "", 48250 + 5250.0 * i, 70, HomeOfTuner().standard});
  for (int i = 0; i < 140; ++i) AirOfCard().fm.push_back({"", 63000 + 300.0 * i, 70, i % 2 == 0});
  Exchange(Described("saa7134,tuner=1"));
  recorder->Heading("a crowded air");
  InitCard(1);
  ZELK_CALLED(ZELK_TVInit);
  ZELK_CALLED(ZELK_put_TVFormat, 0x10, 49);
  ScanTv();
  ZELK_CALLED(ZELK_AllFreqScan, nullptr, ZELK_SCAN_START);
  ZELK_CALLED(ZELK_FMInit);
  ScanFm(0, 0);
  ZELK_CALLED(ZELK_FMAllFreqScan, nullptr, ZELK_SCAN_START, 0, 0, 0, 0);
  FreeCard();
}

// Which way a TV scan goes outlives the card that has chosen it.
void AfterAlpsModule() {
  for (const char* alps : {"saa7134,tuner=46", "saa7134,tuner=47"}) {
    Plug(Described(alps));
    for (const char* next : {"bt878", "cx2388x", "ql2", "saa7134"}) {
      Plug(Described(next));
      recorder->Heading(std::string(next) + " behind " + alps);
      InitCard();
      ZELK_CALLED(ZELK_TVInit);
      ScanTv(12);
      FreeCard();
    }
  }
}

}  // namespace

void Surroundings() {
  Settings();
  OldLogs();
  Names();
  Keys();
  CrowdedAir();
  AfterAlpsModule();
}

}  // namespace zelk::record
