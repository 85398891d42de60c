// The picture of a band: sound XML whatever it is given, nothing that was found left out, names
// that can be told apart, and the curve where the readings are.
#include "cli/plot.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <map>
#include <sstream>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// What a browser refuses: tags that do not match, stray brackets, unknown entities.
::testing::AssertionResult IsSoundXml(const std::string& xml) {
  std::vector<std::string> open;
  std::size_t at = 0;
  while ((at = xml.find_first_of("<>&", at)) != std::string::npos) {
    const std::size_t end = xml.find(xml[at] == '&' ? ';' : '>', at);
    if (xml[at] == '>' || end == std::string::npos)
      return ::testing::AssertionFailure() << "stray character at " << at;
    const std::string inner = xml.substr(at + 1, end - at - 1);
    if (xml[at] == '&') {
      if (inner != "amp" && inner != "lt" && inner != "gt" && inner != "quot")
        return ::testing::AssertionFailure() << "entity " << inner;
    } else if (inner[0] == '/') {
      if (open.empty() || open.back() != inner.substr(1))
        return ::testing::AssertionFailure() << "unexpected end of " << inner;
      open.pop_back();
    } else if (inner.back() != '/') {
      open.push_back(inner.substr(0, inner.find(' ')));
    }
    at = end + 1;
  }
  for (const char character : xml) {
    if (static_cast<unsigned char>(character) < 0x20 && character != '\n')
      return ::testing::AssertionFailure() << "control character";
  }
  if (!open.empty()) return ::testing::AssertionFailure() << "open: " << open.back();
  return ::testing::AssertionSuccess();
}

cli::BandPlot FmPlot() {
  cli::BandPlot plot;
  plot.title = "FM";
  plot.lowKHz = 87500;
  plot.highKHz = 108000;
  plot.rowKHz = 10500;
  plot.stepKHz = 50;
  plot.tellsStereo = true;
  return plot;
}

std::vector<std::string> LinesWith(const std::string& text, const std::string& part) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (line.find(part) != std::string::npos) lines.push_back(line);
  }
  return lines;
}

TEST(Plot, CarriesAnyTextSafely) {
  cli::BandPlot plot = FmPlot();
  plot.title = "Caf\xC3\xA9 <\"R&B\">";
  plot.notes = {"bytes \xFF\xC3~\xED\xA0\x80\x01 end", std::string(500, 'x')};
  plot.marks = {{98000, "<script>&", true}};
  const std::string svg = cli::PlotSvg(plot);
  EXPECT_TRUE(IsSoundXml(svg)) << svg;
  EXPECT_THAT(svg, HasSubstr("Caf\xC3\xA9 &lt;&quot;R&amp;B&quot;&gt;"));
  EXPECT_THAT(svg, HasSubstr("bytes ??~???? end"));
  EXPECT_THAT(svg, HasSubstr("&lt;script&gt;&amp;"));
  EXPECT_THAT(svg, Not(HasSubstr(std::string(80, 'x')))) << "longer than the picture is wide";
}

TEST(Plot, NamesEveryFindWithoutTwoNamesTouching) {
  // As crowded as a band can be: stations every 100 kHz in one half, none in the other.
  cli::BandPlot plot = FmPlot();
  for (std::uint32_t i = 0; i < 99; ++i)
    plot.marks.push_back({88000 + 100 * i, "name" + std::to_string(i), i % 2 == 0});
  const std::string svg = cli::PlotSvg(plot);
  ASSERT_TRUE(IsSoundXml(svg));

  std::map<double, std::vector<double>> placesByRow;
  for (const std::string& line : LinesWith(svg, "rotate(-90)")) {
    double x = 0;
    double y = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "<g transform=\"translate(%lf %lf)", &x, &y), 2) << line;
    placesByRow[y].push_back(x);
  }
  std::size_t names = 0;
  for (const auto& [y, places] : placesByRow) {
    names += places.size();
    EXPECT_GE(places.front(), 0);
    EXPECT_LE(places.back(), 540);
    for (std::size_t i = 1; i < places.size(); ++i)
      EXPECT_GE(places[i] - places[i - 1], 14) << "letters are 14 high, row at " << y;
  }
  EXPECT_EQ(names, 99u);
  for (std::uint32_t i = 0; i < 99; ++i)
    EXPECT_THAT(svg, HasSubstr(">name" + std::to_string(i) + "</text>"));
  // Two circles for each of the fifty stereo stations, and two in the legend.
  EXPECT_EQ(LinesWith(svg, "<circle").size(), 102u);
}

TEST(Plot, DrawsTheCurveThroughTheReadings) {
  cli::BandPlot plot = FmPlot();
  plot.highKHz = 97500;
  for (std::uint32_t kHz = 87500; kHz <= 97500; kHz += 50)
    plot.readings.push_back({kHz, kHz == 92000, kHz == 92000 ? 80u : 10u});
  plot.readings[20].strength.reset();  // at 88.5 MHz
  plot.marks = {{92000, "92.0", false}};
  const std::string svg = cli::PlotSvg(plot);

  // The gap parts the curve in two; the third line is the legend's sample.
  const std::vector<std::string> curves = LinesWith(svg, "<polyline");
  ASSERT_EQ(curves.size(), 3u);
  std::istringstream points(curves[1].substr(curves[1].find('"') + 1));
  double peakX = 0;
  double peakY = 1e9;
  double lowestY = 0;
  char comma = 0;
  for (double x = 0, y = 0; points >> x >> comma >> y;) {
    if (y < peakY) peakX = x;
    peakY = std::min(peakY, y);
    lowestY = std::max(lowestY, y);
  }
  double markX = 0;
  double base = 0;
  ASSERT_EQ(std::sscanf(LinesWith(svg, "stroke-dasharray").at(0).c_str(),
                        "<line x1=\"%lf\" y1=\"%lf\"", &markX, &base),
            2);
  EXPECT_EQ(peakX, markX);
  EXPECT_NEAR((base - peakY) / (base - lowestY), 8, 0.1) << "strength 80 to strength 10";

  // One reading with a signal: one bar, around the same place. The other one is the legend's.
  const std::vector<std::string> bars = LinesWith(svg, "<rect x=");
  ASSERT_EQ(bars.size(), 2u);
  double barX = 0;
  double barY = 0;
  double width = 0;
  ASSERT_EQ(
      std::sscanf(bars[0].c_str(), "<rect x=\"%lf\" y=\"%lf\" width=\"%lf\"", &barX, &barY, &width),
      3);
  EXPECT_NEAR(barX + width / 2, markX, 0.2);
}

TEST(Plot, SaysWhenTheTunerReportsNoStrength) {
  cli::BandPlot plot = FmPlot();
  plot.readings = {{90000, true, std::nullopt}};
  const std::string svg = cli::PlotSvg(plot);
  EXPECT_TRUE(IsSoundXml(svg));
  EXPECT_THAT(svg, HasSubstr("the tuner reports no strength"));
  EXPECT_THAT(svg, Not(HasSubstr("<polyline")));
}

TEST(PlotFile, ShowsWhatTheScanPrints) {
  const Zelk zelk;
  const ZelkRun tv = zelk.Run("scan tv --plot tv.svg");
  EXPECT_EQ(tv.exitCode, 0) << tv.err;
  EXPECT_THAT(tv.out, HasSubstr("\nPicture: tv.svg\n"));
  const std::string tvSvg = zelk.Content("tv.svg");
  EXPECT_TRUE(IsSoundXml(tvSvg));
  EXPECT_THAT(tvSvg, HasSubstr("TV: 20 channels found"));
  EXPECT_THAT(tvSvg, HasSubstr("card virtual:saa7134, tuner FM1216MK2"));
  for (const char* name : {">E3<", ">E12<", ">K21<", ">K65<"}) EXPECT_THAT(tvSvg, HasSubstr(name));

  const ZelkRun fm = zelk.Run("scan fm --plot fm.svg --json");
  const std::string fmSvg = zelk.Content("fm.svg");
  EXPECT_TRUE(IsSoundXml(fmSvg));
  EXPECT_THAT(fmSvg, HasSubstr("FM: 20 stations found"));
  std::size_t stereo = 0;
  const nlohmann::json scan = fm.Json();
  for (const auto& station : scan.at("stations")) {
    if (station.at("stereo").get<bool>()) ++stereo;
    const auto kHz = station.at("frequency_khz").get<std::uint32_t>();
    const std::string name = std::to_string(kHz / 1000) + '.' + std::to_string(kHz / 100 % 10);
    EXPECT_THAT(fmSvg, HasSubstr('>' + name + "</text>"));
  }
  EXPECT_EQ(LinesWith(fmSvg, "<circle").size(), 2 * (stereo + 1));
}

TEST(PlotFile, OnlyCoversWhatWasSwept) {
  const Zelk zelk;
  zelk.Run("scan fm --from 95MHz --to 98MHz --plot fm.svg");
  EXPECT_THAT(zelk.Content("fm.svg"), HasSubstr("95.000 to 98.000 MHz"));
  // Behind a find the library's scan jumps ahead, here past the end that was asked for.
  zelk.Run("scan tv --stop-at 190MHz --plot tv.svg");
  EXPECT_THAT(zelk.Content("tv.svg"), HasSubstr("48.250 to 190.000 MHz"));
}

TEST(PlotFile, ThatCannotBeWrittenIsRefusedBeforeTheScan) {
  const Zelk zelk;
  const ZelkRun run = zelk.Run("scan fm --plot nowhere/fm.svg");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("nowhere/fm.svg"));
  EXPECT_FALSE(std::filesystem::exists(zelk.Folder() / "FMAutoScan.log")) << "it scanned";
}

TEST(PlotFile, IsNotMadeByARunThatFails) {
  const Zelk zelk;
  EXPECT_EQ(zelk.Run("scan fm --from 1MHz --plot new.svg").exitCode, 1);
  EXPECT_FALSE(std::filesystem::exists(zelk.Folder() / "new.svg"));
}

}  // namespace
}  // namespace zelk::test
