#include "cli/plot.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace zelk::cli {
namespace {

// Lengths in units of the view box. On a phone, 390 pixels wide, body text is 10 pixels high.
constexpr double kWidth = 540;
constexpr double kLeft = 40;
constexpr double kRight = 520;
constexpr double kBodySize = 14;
constexpr double kLineHeight = 19;
constexpr double kCharacterWidth = 0.6 * kBodySize;  // no narrower than most sans-serif digits
constexpr double kNameGap = 16;                      // between the middles of two names
constexpr double kLeaderHeight = 16;
constexpr double kCurveHeight = 110;
constexpr double kTickSpace = 36;  // below the base line: presence, ticks and their figures
constexpr double kSignWidth = 18;  // the stereo sign, in front of a name
constexpr std::size_t kTitleCharacters = 48;
constexpr std::size_t kNoteCharacters = 68;
constexpr std::size_t kNameCharacters = 16;

// --- Texts and numbers ---

// Length of the character that begins the text, 0 for bytes that are no UTF-8 or that XML forbids.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return byte(0) >= 0x20 && byte(0) != 0x7F ? 1 : 0;
  const std::size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, surrogates, the two code points that no document may hold, and beyond the last.
  const unsigned first = byte(0) * 256u + byte(1);
  const bool noncharacter = first == 0xEFBF && byte(2) >= 0xBE;
  const bool illegal = (first >= 0xE080 && first < 0xE0A0) || (first >= 0xEDA0 && first < 0xEE00) ||
                       (first >= 0xF080 && first < 0xF090) || first >= 0xF490;
  return length > 2 && (illegal || noncharacter) ? 0 : length;
}

struct Label {
  std::string xml;
  std::size_t characters = 0;
};

// Escaped, and cut at a number of characters.
Label LabelOf(std::string_view text, std::size_t mostCharacters) {
  Label label;
  std::size_t restAt = 0;  // where the last character that may stay begins
  while (!text.empty()) {
    if (label.characters == mostCharacters) {
      label.xml.resize(restAt);
      label.xml += "\u2026";
      return label;
    }
    restAt = label.xml.size();
    const std::size_t length = CharacterLength(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
    text.remove_prefix(character.size());
    ++label.characters;
    if (length == 0) {
      label.xml += '?';
    } else if (character == "&") {
      label.xml += "&amp;";
    } else if (character == "<") {
      label.xml += "&lt;";
    } else if (character == ">") {
      label.xml += "&gt;";
    } else if (character == "\"") {
      label.xml += "&quot;";
    } else {
      label.xml += character;
    }
  }
  return label;
}

// With a point whatever the locale, in tenths or other parts at most.
std::string Number(double value, int parts = 10) {
  char text[32];
  const double rounded = static_cast<double>(std::llround(value * parts)) / parts;
  const auto end = std::to_chars(text, text + sizeof text, rounded).ptr;
  return {text, end};
}

// The smallest of 1, 2, 5, 10, 20, ... that is not below `least`.
std::uint32_t RoundStep(double least) {
  for (std::uint32_t decade = 1;; decade *= 10) {
    for (const std::uint32_t step : {decade, 2 * decade, 5 * decade}) {
      if (step >= least || decade == 1'000'000'000) return step;
    }
  }
}

// --- Drawing ---

class Drawing {
 public:
  void Line(double x1, double y1, double x2, double y2, double width, const char* dashes = "") {
    out_ += "<line x1=\"" + Number(x1) + "\" y1=\"" + Number(y1) + "\" x2=\"" + Number(x2) +
            "\" y2=\"" + Number(y2) + "\" stroke-width=\"" + Number(width) + '"';
    if (*dashes) out_ += std::string(" stroke-dasharray=\"") + dashes + '"';
    out_ += "/>\n";
  }
  void Text(double x, double y, const std::string& xml, const char* attributes = "") {
    out_ += "<text x=\"" + Number(x) + "\" y=\"" + Number(y) + '"' + attributes + '>' + xml +
            "</text>\n";
  }
  void StereoSign(double x, double y) {
    for (const double centre : {x + 4, x + 9}) {
      out_ += "<circle cx=\"" + Number(centre) + "\" cy=\"" + Number(y) + "\" r=\"4\"/>\n";
    }
  }
  void Bar(double x, double y, double width, double height) {
    out_ += "<rect x=\"" + Number(x) + "\" y=\"" + Number(y) + "\" width=\"" + Number(width) +
            "\" height=\"" + Number(height) + "\" fill=\"black\" stroke=\"none\"/>\n";
  }
  void Curve(const std::string& points) {
    out_ += "<polyline points=\"" + points + "\" stroke-width=\"1.2\"/>\n";
  }
  void Raw(const std::string& xml) { out_ += xml; }
  const std::string& Xml() const { return out_; }

 private:
  std::string out_;
};

// How the band is cut into rows, and where the ticks stand.
struct Layout {
  double low = 0;  // of the first row, kHz
  double rowSpan = 0;
  std::uint32_t rows = 0;
  std::uint32_t tick = 0;       // with a figure
  std::uint32_t minorTick = 0;  // without
  std::uint32_t strengthTop = 0;
  std::uint32_t strengthStep = 0;

  double RowLow(std::uint32_t row) const { return low + row * rowSpan; }
  // The row that shows a frequency, its right edge excluded.
  std::uint32_t RowOf(std::uint32_t kHz) const {
    const auto row = static_cast<std::uint32_t>(std::max(0.0, (kHz - low) / rowSpan));
    return std::min(row, rows - 1);
  }
  double X(std::uint32_t row, double kHz) const {
    return kLeft + (kHz - RowLow(row)) * (kRight - kLeft) / rowSpan;
  }
};

void CutIntoRows(const BandPlot& plot, std::uint32_t rows, Layout& layout) {
  // A figure and the blank beside it. Below 100 kHz figures have two decimals.
  constexpr double kTickDistance = 44;
  constexpr double kLongTickDistance = 60;
  const double span = std::max<double>(plot.highKHz - plot.lowKHz, 100);
  layout.rows = rows;
  const double perUnit = span / rows / (kRight - kLeft);
  layout.tick = RoundStep(perUnit * kTickDistance);
  if (layout.tick < 100) layout.tick = RoundStep(perUnit * kLongTickDistance);
  // 1 and 5 are divided by 5, 2 by 4.
  const bool two = std::to_string(layout.tick)[0] == '2';
  layout.minorTick = std::max(1u, layout.tick / (two ? 4 : 5));
  const double minor = layout.minorTick;
  layout.low = std::floor(plot.lowKHz / minor) * minor;
  layout.rowSpan = std::ceil((plot.lowKHz + span - layout.low) / rows / minor) * minor;
}

Layout LayoutOf(const BandPlot& plot) {
  constexpr auto kNamesPerRow = static_cast<std::uint32_t>((kRight - kLeft) / kNameGap);
  constexpr std::uint32_t kMostRows = 50;
  Layout layout;
  const double span = plot.highKHz - plot.lowKHz;
  const double wanted = std::max(1.0, std::round(span / std::max(1u, plot.rowKHz)));
  for (auto rows = static_cast<std::uint32_t>(std::min<double>(wanted, kMostRows));; ++rows) {
    CutIntoRows(plot, rows, layout);
    std::vector<std::uint32_t> names(rows);
    for (const PlotMark& mark : plot.marks) ++names[layout.RowOf(mark.kHz)];
    const bool fits = *std::max_element(names.begin(), names.end()) <= kNamesPerRow;
    if (fits || rows >= kMostRows) break;
  }

  std::uint32_t strongest = 5;  // what most tuners count up to
  for (const PlotReading& reading : plot.readings)
    strongest = std::max(strongest, reading.strength.value_or(0));
  layout.strengthStep = RoundStep(strongest / 5.0);
  layout.strengthTop =
      (strongest + layout.strengthStep - 1) / layout.strengthStep * layout.strengthStep;
  return layout;
}

// Moves names that stand too close apart, each as little as possible: neighbours that would touch
// become one block, which stands in the mean of the places that its names want.
std::vector<double> SpreadNames(const std::vector<double>& wanted) {
  struct Block {
    double sum;
    double count;
    double Mean() const { return sum / count; }
  };
  std::vector<Block> blocks;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    blocks.push_back({wanted[i] - static_cast<double>(i) * kNameGap, 1});
    while (blocks.size() > 1 && blocks[blocks.size() - 2].Mean() > blocks.back().Mean()) {
      const Block last = blocks.back();
      blocks.pop_back();
      blocks.back() = {blocks.back().sum + last.sum, blocks.back().count + last.count};
    }
  }
  const double furthest = kRight - kNameGap * (static_cast<double>(wanted.size()) - 1);
  std::vector<double> places;
  for (const Block& block : blocks) {
    const double start = std::max(kLeft, std::min(block.Mean(), furthest));
    for (auto left = static_cast<std::size_t>(block.count); left > 0; --left) {
      places.push_back(start + static_cast<double>(places.size()) * kNameGap);
    }
  }
  return places;
}

// One row of the picture; `base` is the line of strength 0.
class Row {
 public:
  Row(const BandPlot& plot, const Layout& layout, std::uint32_t number, double base, Drawing& out)
      : plot_(plot), layout_(layout), row_(number), base_(base), out_(out) {}

  void Draw(bool strengthKnown) const {
    if (strengthKnown) DrawStrengthScale();
    DrawFrequencyScale();
    DrawPresence();
    DrawCurve();
    DrawMarks();
  }

 private:
  double X(double kHz) const { return std::clamp(layout_.X(row_, kHz), kLeft, kRight); }
  double Y(std::uint32_t strength) const {
    return base_ - kCurveHeight * strength / layout_.strengthTop;
  }
  bool Shows(std::uint32_t kHz) const {
    const double low = layout_.RowLow(row_);
    return kHz >= low && kHz <= low + layout_.rowSpan;
  }

  void DrawStrengthScale() const {
    for (std::uint32_t s = 0; s <= layout_.strengthTop; s += layout_.strengthStep) {
      if (s > 0) out_.Line(kLeft, Y(s), kRight, Y(s), 0.3);
      out_.Text(kLeft - 6, Y(s) + 5, std::to_string(s), " text-anchor=\"end\"");
    }
  }

  void DrawFrequencyScale() const {
    const double low = layout_.RowLow(row_);
    const auto first = static_cast<std::uint32_t>(low);
    out_.Line(kLeft, base_, kRight, base_, 1);
    out_.Line(kLeft, base_ - kCurveHeight, kLeft, base_, 1);
    for (std::uint32_t kHz = first; kHz <= low + layout_.rowSpan; kHz += layout_.minorTick) {
      const bool withFigure = kHz % layout_.tick == 0;
      out_.Line(X(kHz), base_, X(kHz), base_ + (withFigure ? 12 : 8), withFigure ? 1 : 0.5);
      if (withFigure)
        out_.Text(X(kHz), base_ + 26, Number(kHz / 1000.0, 100), " text-anchor=\"middle\"");
    }
  }

  void DrawPresence() const {
    const double half = plot_.stepKHz / 2.0;
    const auto& readings = plot_.readings;
    for (std::size_t i = 0; i < readings.size(); ++i) {
      if (!readings[i].present || !Shows(readings[i].kHz)) continue;
      const double from = X(readings[i].kHz - half);
      while (i + 1 < readings.size() && readings[i + 1].present && Shows(readings[i + 1].kHz)) ++i;
      const double to = X(readings[i].kHz + half);
      // Wide enough to be seen where a channel is a fraction of a pixel.
      const double width = std::max(2.5, to - from);
      out_.Bar((from + to - width) / 2, base_ + 2, width, 4);
    }
  }

  void DrawCurve() const {
    const auto& readings = plot_.readings;
    const auto strength = [&](std::size_t i) {
      return i < readings.size() && Shows(readings[i].kHz) ? readings[i].strength : std::nullopt;
    };
    std::string points;
    for (std::size_t i = 0; i < readings.size(); ++i) {
      if (const auto here = strength(i)) {
        // The inner points of a level stretch would only make the file longer.
        if (!points.empty() && strength(i - 1) == here && strength(i + 1) == here) continue;
        if (!points.empty()) points += ' ';
        points += Number(X(readings[i].kHz)) + ',' + Number(Y(*here));
      } else if (!points.empty()) {
        out_.Curve(points);
        points.clear();
      }
    }
    if (!points.empty()) out_.Curve(points);
  }

  void DrawMarks() const {
    std::vector<const PlotMark*> marks;
    std::vector<double> wanted;
    for (const PlotMark& mark : plot_.marks) {
      if (layout_.RowOf(mark.kHz) != row_) continue;
      marks.push_back(&mark);
      wanted.push_back(X(mark.kHz));
    }
    const std::vector<double> places = SpreadNames(wanted);
    const double top = base_ - kCurveHeight;
    for (std::size_t i = 0; i < marks.size(); ++i) {
      out_.Line(wanted[i], base_, wanted[i], top, 0.8, "2 3");
      out_.Line(wanted[i], top, places[i], top - kLeaderHeight, 0.8);
      // Written upward from the end of the leader.
      out_.Raw("<g transform=\"translate(" + Number(places[i]) + ' ' +
               Number(top - kLeaderHeight - 4) + ") rotate(-90)\">\n");
      if (marks[i]->stereo) out_.StereoSign(0, 0);
      out_.Text(plot_.tellsStereo ? kSignWidth : 0, 5,
                LabelOf(marks[i]->name, kNameCharacters).xml);
      out_.Raw("</g>\n");
    }
  }

  const BandPlot& plot_;
  const Layout& layout_;
  const std::uint32_t row_;
  const double base_;
  Drawing& out_;
};

void DrawLegend(const BandPlot& plot, double y, bool strengthKnown, Drawing& out) {
  constexpr double kSample = 24;
  double x = kLeft;
  const auto explain = [&](const char* text, double characters) {
    out.Text(x + kSample + 6, y + 5, text);
    x += kSample + 6 + characters * kCharacterWidth + 12;
  };
  if (strengthKnown) {
    out.Curve(Number(x) + ',' + Number(y + 3) + ' ' + Number(x + kSample) + ',' + Number(y - 3));
    explain("strength", 8);
  }
  out.Bar(x, y - 2, kSample, 4);
  explain("signal present", 14);
  out.Line(x, y, x + kSample, y, 0.8, "2 3");
  explain("found", 5);
  if (!plot.tellsStereo) return;
  out.StereoSign(x + 6, y);
  explain("stereo", 6);
}

}  // namespace

std::string PlotSvg(const BandPlot& plot) {
  const Layout layout = LayoutOf(plot);
  const bool strengthKnown =
      std::any_of(plot.readings.begin(), plot.readings.end(),
                  [](const PlotReading& reading) { return reading.strength.has_value(); });
  std::size_t longestName = 0;
  for (const PlotMark& mark : plot.marks)
    longestName = std::max(longestName, LabelOf(mark.name, kNameCharacters).characters);
  const double nameHeight = static_cast<double>(longestName) * kCharacterWidth + kLeaderHeight +
                            (plot.tellsStereo ? kSignWidth : 0) + 10;

  Drawing out;
  const std::string title = LabelOf(plot.title, kTitleCharacters).xml;
  double y = 28;
  out.Text(12, y, title, " font-size=\"19\" font-weight=\"bold\"");
  for (const std::string& note : plot.notes)
    out.Text(12, y += kLineHeight, LabelOf(note, kNoteCharacters).xml);
  y += kLineHeight + 6;
  out.Text(12, y,
           strengthKnown ? "upward: strength, as the tuner reports it; across: MHz"
                         : "across: MHz; the tuner reports no strength");
  for (std::uint32_t row = 0; row < layout.rows; ++row) {
    y += nameHeight + kCurveHeight + 4;
    Row(plot, layout, row, y, out).Draw(strengthKnown);
    y += kTickSpace;
  }
  DrawLegend(plot, y + 12, strengthKnown, out);
  const std::string height = Number(y + 30);

  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + Number(kWidth) + ' ' +
         height +
         "\" width=\"100%\" role=\"img\">\n"
         "<title>" +
         title +
         "</title>\n"
         "<rect width=\"" +
         Number(kWidth) + "\" height=\"" + height +
         "\" fill=\"white\"/>\n"
         "<g fill=\"none\" stroke=\"black\">\n"
         "<style>text{font-family:sans-serif;fill:black;stroke:none}</style>\n"
         "<g font-size=\"14\">\n" +
         out.Xml() + "</g>\n</g>\n</svg>\n";
}

}  // namespace zelk::cli
