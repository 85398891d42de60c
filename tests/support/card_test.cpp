#include "tests/support/card_test.h"

#include <fstream>
#include <sstream>
#include <utility>

#include "platform/control.h"

namespace zelk::test {

Lines Joined(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

EepromImage MakeEeprom(std::initializer_list<std::pair<int, std::uint8_t>> bytes) {
  EepromImage image;
  image.fill(0xFF);
  for (const auto& [address, byte] : bytes) image[static_cast<std::size_t>(address)] = byte;
  return image;
}

virtual_cards::Air MakeAir(const std::vector<double>& pictureKHz, std::uint32_t standard) {
  virtual_cards::Air air;
  for (const double carrier : pictureKHz) {
    air.tv.emplace_back();
    air.tv.back().pictureKHz = carrier;
    air.tv.back().levelDbuV = 70;
    air.tv.back().standard = standard;
  }
  return air;
}

WorkingFolder::WorkingFolder() : before_(std::filesystem::current_path()) {
  std::filesystem::current_path(folder_.Path());
}

WorkingFolder::~WorkingFolder() {
  std::filesystem::current_path(before_);
  std::filesystem::permissions(folder_.Path(), std::filesystem::perms::owner_all);
}

CardFixture::CardFixture() {
  host::UseVirtualClock();
  host::UseSettingsFolder(".");
  host::TakeExecutedCommands();  // and none is really executed
  scanEvents.clear();
  atScanEvent = nullptr;
}

CardFixture::~CardFixture() { Unplug(); }

void CardFixture::Unplug() {
  ZELK_Free();
  if (plugged) {
    EXPECT_EQ(plugged->LiveReferences(), 0) << "interfaces of the card are still held";
  }
  plugged.reset();
}

virtual_cards::Saa713xCard& CardTest::PlugTuner(std::uint32_t tunerType, virtual_cards::Air air) {
  return Plug({.tunerType = tunerType}, std::move(air));
}

HRESULT CardFixture::Init(std::uint32_t russiaFlag) {
  const auto capture = plugged->CaptureFilter();
  const auto tuner = plugged->TunerFilter();
  return ZELK_HWInit(capture.Get(), plugged->FriendlyName().c_str(), tuner.Get(), russiaFlag);
}

void CardTest::PlugReady(const virtual_cards::Saa713xOptions& options) {
  Plug(options);
  ASSERT_EQ(Init(), S_OK);
  TakeLog();
  TakeTrace();
}

virtual_cards::Saa713xCard& CardTest::PlugTv(std::uint32_t tunerType, virtual_cards::Air air) {
  PlugTuner(tunerType, std::move(air));
  EXPECT_EQ(Init(), S_OK);
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  return *card;
}

ZELK_HWInfo CardFixture::Info() {
  ZELK_HWInfo info = {};
  EXPECT_EQ(ZELK_GetHWInfo(&info), S_OK);
  return info;
}

std::uint32_t CardFixture::TunerType() {
  std::uint32_t type = 77;
  EXPECT_EQ(ZELK_GetTunerType(&type), S_OK);
  return type;
}

Lines CardFixture::TakeTrace(const std::string& beginning) {
  plugged->AttachTrace(&trace_);
  Lines lines;
  for (const std::string& line : trace_.Take()) {
    if (line.starts_with(beginning)) lines.push_back(line.substr(beginning.size()));
  }
  return lines;
}

Lines CardFixture::TakeLog(const std::string& name) {
  std::stringstream text;
  if (std::ifstream file(name, std::ios::binary); file) text << file.rdbuf();
  std::filesystem::remove(name);  // once it is closed
  Lines records;
  const std::string content = text.str();
  for (std::size_t at = 0; at < content.size();) {
    EXPECT_EQ(content.substr(at, 2), "\r\n");
    const std::size_t next = content.find("\r\n", at + 2);
    records.push_back(content.substr(at + 2, next == std::string::npos ? next : next - at - 2));
    at = next == std::string::npos ? content.size() : next;
  }
  return records;
}

std::vector<std::string> scanEvents;

void ZELK_CALL RecordScanEvent(uint32_t event, uint32_t value, uint32_t extra) {
  std::ostringstream text;
  text << event << ' ' << value;
  if (extra != 0) text << ' ' << extra;
  scanEvents.push_back(text.str());
}

std::function<void(std::uint32_t, std::uint32_t)> atScanEvent;

void ZELK_CALL ActOnScanEvent(uint32_t event, uint32_t value, uint32_t extra) {
  RecordScanEvent(event, value, extra);
  if (atScanEvent) atScanEvent(event, value);
}

std::vector<std::uint32_t> ScanTv() {
  static std::vector<std::uint32_t> found;
  found.clear();
  EXPECT_EQ(ZELK_AllFreqScan(
                [](uint32_t event, uint32_t value, uint32_t) {
                  if (event == ZELK_EVENT_FOUND) found.push_back(value);
                },
                ZELK_SCAN_START),
            S_FALSE);
  return found;
}

}  // namespace zelk::test
