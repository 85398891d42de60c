// The picture of a band: sound XML whatever it is given, nothing that was found left out, names
// that can be told apart, and the curve where the readings are.
#include "cli/plot.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <sstream>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::AllOf;
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
  plot.lowKHz = 88000;
  plot.marks = {{98000, "<script>&", true}, {108000, "end", true}};
  const std::string svg = cli::PlotSvg(plot);
  EXPECT_TRUE(IsSoundXml(svg)) << svg;
  EXPECT_THAT(svg, HasSubstr("Caf\xC3\xA9 &lt;&quot;R&amp;B&quot;&gt;"));
  EXPECT_THAT(svg, HasSubstr("bytes ??~???? end"));
  EXPECT_THAT(svg, AllOf(HasSubstr("&lt;script&gt;&amp;"), HasSubstr(">end</text>")));
  EXPECT_THAT(svg, HasSubstr("x\u2026</text>"));
  EXPECT_THAT(svg, Not(HasSubstr(std::string(80, 'x')))) << "longer than the picture is wide";
}

TEST(Plot, NamesEveryFindWithoutTwoNamesTouching) {
  // As crowded as a band can be: stations every 100 kHz at both ends, none in the middle.
  cli::BandPlot plot = FmPlot();
  for (std::uint32_t i = 0; i < 99; ++i)
    plot.marks.push_back(
        {(i < 50 ? 87500 : 98200) + 100 * i, "name" + std::to_string(i), i % 2 == 0});
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
    EXPECT_GE(places.front(), 40) << "right of the scale";
    EXPECT_LE(places.back(), 530) << "on the sheet";
    for (std::size_t i = 1; i < places.size(); ++i)
      EXPECT_GE(places[i] - places[i - 1], 14) << "letters are 14 high, row at " << y;
  }
  EXPECT_EQ(names, 99u);
  for (std::uint32_t i = 0; i < 99; ++i)
    EXPECT_THAT(svg, HasSubstr(">name" + std::to_string(i) + "</text>"));
  // Two circles for each of the fifty stereo stations, and two in the legend.
  EXPECT_EQ(LinesWith(svg, "<circle").size(), 102u);
}

// What a person reads off the picture at a name.
struct Reading {
  std::string name;
  double topOfName;
  double kHz;     // by the figures of the scale below
  double height;  // of the curve, from 0 at the base line to 1
  bool present;   // by the bars
};

using Points = std::vector<std::pair<double, double>>;

// On the line through the two points around `x`, or through the two next to it.
double At(const Points& points, double x) {
  std::size_t right = 1;
  while (right + 1 < points.size() && points[right].first < x) ++right;
  const auto& [x1, y1] = points.at(right - 1);
  const auto& [x2, y2] = points.at(right);
  return y1 + (x - x1) * (y2 - y1) / (x2 - x1);
}

// Goes through the document as it is drawn: the scale of a row, its bars, its curve, its names.
std::vector<Reading> ReadOff(const std::string& svg) {
  std::vector<Reading> readings;
  Points scale, curve;
  std::vector<double> bars;
  double x = 0, base = 0, y = 0, top = 0, value = 0;
  for (const std::string& line : LinesWith(svg, "<")) {
    const auto matches = [&](const char* format, auto*... places) {
      return std::sscanf(line.c_str(), format, places...) == static_cast<int>(sizeof...(places));
    };
    const bool name = !readings.empty() && readings.back().name.empty();
    if (line.ends_with(" text-anchor=\"end\">0</text>")) {
      scale = curve = {};
      bars = {};
    } else if (matches("<text x=\"%lf\" y=\"%lf\" text-anchor=\"middle\">%lf", &x, &y, &value)) {
      scale.emplace_back(x, value * 1000);
    } else if (matches("<rect x=\"%lf\" y=\"%lf\" width=\"%lf\"", &x, &y, &value)) {
      if (value > 2) bars.push_back(x + value / 2);  // what the eye can see
    } else if (line.starts_with("<polyline")) {
      std::istringstream points(line.substr(line.find('"') + 1));
      for (char comma = 0; points >> x >> comma >> y;) curve.emplace_back(x, y);
    } else if (line.find("stroke-dasharray") != std::string::npos) {
      matches("<line x1=\"%lf\" y1=\"%lf\" x2=\"%lf\" y2=\"%lf\"", &x, &base, &x, &top);
    } else if (matches("<g transform=\"translate(%lf %lf) rotate(-90)", &value, &y)) {
      const auto around = [x](double bar) { return std::abs(bar - x) < 1.5; };
      readings.push_back({"", y, At(scale, x), (base - At(curve, x)) / (base - top),
                          std::any_of(bars.begin(), bars.end(), around)});
    } else if (name && matches("<text x=\"%lf\"", &value)) {
      readings.back().name = line.substr(line.find('>') + 1, line.rfind('<') - line.find('>') - 1);
      readings.back().topOfName -= value + 8.4 * static_cast<double>(readings.back().name.size());
    }
  }
  return readings;
}

TEST(Plot, DrawsTheCurveThroughTheReadings) {
  cli::BandPlot plot = FmPlot();
  plot.highKHz = 97500;
  for (std::uint32_t kHz = 87500; kHz <= 97500; kHz += 50)
    plot.readings.push_back({kHz, kHz == 92000, kHz == 92000 ? 80u : 10u});
  plot.readings[20].strength.reset();  // at 88.5 MHz
  plot.marks = {{88000, "88.0", false}, {92000, "92.0", false}, {97500, "97.5", false}};
  const std::string svg = cli::PlotSvg(plot);
  // The gap parts the curve in two; the third line is the legend's sample. One reading has a
  // signal: the second bar is the legend's, too.
  EXPECT_EQ(LinesWith(svg, "<polyline").size(), 3u);
  EXPECT_EQ(LinesWith(svg, "<rect x=").size(), 2u);
  const std::vector<Reading> readings = ReadOff(svg);
  ASSERT_EQ(readings.size(), 3u);
  EXPECT_NEAR(readings[0].height, 10.0 / 80, 0.001);
  EXPECT_FALSE(readings[0].present);
  EXPECT_NEAR(readings[1].kHz, 92000, 5);
  EXPECT_NEAR(readings[1].height, 1, 0.001);
  EXPECT_TRUE(readings[1].present);
}

TEST(Plot, SaysWhenTheTunerReportsNoStrength) {
  cli::BandPlot plot = FmPlot();
  plot.readings = {{90000, true, std::nullopt}};
  const std::string svg = cli::PlotSvg(plot);
  EXPECT_TRUE(IsSoundXml(svg));
  EXPECT_THAT(svg, HasSubstr("the tuner reports no strength"));
  EXPECT_THAT(svg, Not(HasSubstr("<polyline")));
}

// Every text that stands upright lies on the sheet.
void ExpectNothingCutOff(const std::string& svg) {
  double height = 0;
  ASSERT_EQ(std::sscanf(svg.c_str() + svg.find("viewBox"), "viewBox=\"0 0 540 %lf", &height), 1);
  for (const std::string& line : LinesWith(svg, "</text>")) {
    double x = 0, y = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "<text x=\"%lf\" y=\"%lf\"", &x, &y), 2) << line;
    const std::size_t characters = line.rfind('<') - line.find('>') - 1;
    const bool middle = line.find("middle") != std::string::npos;
    EXPECT_LE(x + 7.6 * static_cast<double>(characters) / (middle ? 2 : 1), 540) << line;
    EXPECT_LE(y + 4, height) << line;
  }
}

// From the card to the sheet, on tuners whose readings differ.
TEST(PlotFile, ShowsWhatTheScanPrints) {
  for (const bool fm : {false, true}) {
    const Zelk zelk;
    const std::string card = fm ? "virtual:saa7134,board=0xE3" : "virtual:saa7134";
    const std::string line = (fm ? "scan fm --card " : "scan tv --card ") + card;
    const nlohmann::json found =
        zelk.Run(line + " --json --plot band.svg").Json().at(fm ? "stations" : "channels");
    const std::string svg = zelk.Content("band.svg");
    ASSERT_TRUE(IsSoundXml(svg));
    ExpectNothingCutOff(svg);
    for (const char* text :
         {fm ? ">FM: 20 stations found<" : ">TV: 20 channels found<", ">Western European city<",
          fm ? ", tuner ALPS_TSEH1<" : ">card virtual:saa7134, tuner FM1216MK2<", ">strength<",
          fm ? " MHz, a reading every 50 kHz<" : ">48.250 to 855.250 MHz, a reading every 250 kHz<",
          ">signal present<", ">found<"})
      EXPECT_THAT(svg, HasSubstr(text));
    EXPECT_EQ(LinesWith(svg, ">stereo<").size(), fm ? 1u : 0u);
    EXPECT_EQ(LinesWith(svg, " text-anchor=\"end\">0<").size(), fm ? 2u : 3u) << "rows";

    const std::vector<Reading> readings = ReadOff(svg);
    ASSERT_EQ(readings.size(), found.size());
    std::size_t circles = fm ? 2 : 0;  // the legend's
    for (std::size_t i = 0; i < readings.size(); ++i) {
      SCOPED_TRACE(found[i].dump());
      const auto kHz = found[i].at("frequency_khz").get<std::uint32_t>();
      EXPECT_NEAR(readings[i].kHz, kHz, fm ? 5 : 100);
      EXPECT_NEAR(5 * readings[i].height, found[i].at("strength").get<double>(), 0.1);
      EXPECT_EQ(readings[i].present, found[i].at("present"));
      EXPECT_EQ(readings[i].name,
                fm ? std::to_string(kHz / 1000) + '.' + std::to_string(kHz / 100 % 10)
                   : found[i].at("channel").get<std::string>());
      EXPECT_GT(readings[i].topOfName, 113) << "below the notes";
      if (fm && found[i].at("stereo").get<bool>()) circles += 2;
    }
    EXPECT_EQ(LinesWith(svg, "<circle").size(), circles);
  }
}

TEST(PlotFile, OnlyCoversWhatWasSwept) {
  const Zelk zelk;
  zelk.Run("scan fm --from 95MHz --to 98MHz --plot fm.svg");
  EXPECT_THAT(zelk.Content("fm.svg"), HasSubstr("95.000 to 98.000 MHz"));
  EXPECT_THAT(zelk.Content("fm.svg"), HasSubstr(">96.5</text>")) << "on the scale";
  // Behind a find the library's scan jumps ahead, here past the end that was asked for.
  zelk.Run("scan tv --stop-at 56MHz --plot tv.svg");
  EXPECT_THAT(zelk.Content("tv.svg"), HasSubstr("48.250 to 56.000 MHz"));
  EXPECT_THAT(zelk.Content("tv.svg"), HasSubstr(">TV: 1 channel found<"));
  zelk.Run("scan tv --stop-at 1 --plot nothing.svg");
  EXPECT_TRUE(IsSoundXml(zelk.Content("nothing.svg")));
  EXPECT_THAT(zelk.Content("nothing.svg"),
              AllOf(HasSubstr(">48.26</text>"), Not(HasSubstr("nan"))));
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
