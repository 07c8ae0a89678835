// SPDX-License-Identifier: Apache-2.0
// A picture as SVG.
#include "design/picture/svg.h"

#include "design/base/text.h"

namespace design {
namespace {

// Readable in black and white: tones differ in lightness and lines in their dashes, never in hue alone.
constexpr const char* kStyle = R"(<style>
  text { font-family: "DejaVu Sans", Verdana, sans-serif; font-size: 12px; fill: #333 }
  .title { font-size: 17px; font-weight: bold; fill: #111 }
  .strong { font-weight: bold }
  .small { font-size: 10.5px }
  .paper { fill: #fff }
  .frame { fill: none; stroke: #777 }
  .band { fill: #eef1f5 }
  .edge { stroke: #777; stroke-dasharray: 3 3 }
  .grid { stroke: #ddd }
  .zero { stroke: #555 }
  .curve { fill: none; stroke: #123f6b; stroke-width: 1.5; stroke-linejoin: round }
  .shade { fill: #1b4f80; fill-opacity: 0.14 }
  .dense { fill: none; stroke: #7f9fbd; stroke-width: 0.9; stroke-linejoin: round }
  .response { fill: #e0a63c; fill-opacity: 0.3; stroke: #b98319; stroke-width: 0.4; stroke-linejoin: round }
  .aim { fill: none; stroke: #555; stroke-width: 1.2; stroke-dasharray: 2 3 }
  .felt { fill: #5b9a6b; fill-opacity: 0.35; stroke: #33713f; stroke-width: 0.9; stroke-linejoin: round }
  .vibration { fill: #c9d6e3 }
  .transient { fill: #111 }
  .outline { fill: none; stroke: #123f6b; stroke-width: 0.8; stroke-linejoin: round }
  .warning { font-size: 15px; font-weight: bold; fill: #a11 }
</style>
)";

// Characters that SVG cannot hold are written out.
std::string escaped(const std::string& raw) {
  constexpr size_t kMost = 300;
  std::string safe;
  for (const char c : shown(raw, kMost)) {
    safe += c == '&' ? "&amp;" : (c == '<' ? "&lt;" : (c == '>' ? "&gt;" : std::string(1, c)));
  }
  return safe;
}

}  // namespace

double label_width(const std::string& words) { return 7 * static_cast<double>(words.size()); }

std::vector<std::string> wrapped(const std::string& words, double width) {
  std::vector<std::string> lines;
  size_t from = 0;
  while (label_width(words.substr(from)) > width) {
    const auto most = static_cast<size_t>(width / label_width("x"));
    const size_t space = words.rfind(' ', from + most);
    const bool fits = space != words.npos && space > from;
    lines.push_back(words.substr(from, fits ? space - from : most));
    from = fits ? space + 1 : from + most;
  }
  lines.push_back(words.substr(from));
  return lines;
}

void Svg::title(Point at, double room, const std::string& words) {
  constexpr double kLetter = 11;  // about; in a small title two thirds of it
  const bool fits = kLetter * static_cast<double>(words.size()) <= room;
  const auto most = static_cast<size_t>(room * 3 / (2 * kLetter));
  label(at, kStart, fits ? "title" : "strong", shown_name(words, most));
}

void Svg::rectangle(const Box& box, const char* style) {
  body_ += text("<rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\" class=\"%s\"/>\n", box.x, box.y, box.width,
                box.height, style);
}

void Svg::line(Point from, Point to, const char* style) {
  body_ +=
      text("<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" class=\"%s\"/>\n", from.x, from.y, to.x, to.y, style);
}

void Svg::path(const std::vector<Point>& points, const char* style) {
  if (points.empty()) return;
  body_ += "<path d=\"";
  for (size_t i = 0; i < points.size(); ++i) {
    body_ += text("%s%.1f %.1f", i == 0 ? "M" : "L", points[i].x, points[i].y);
  }
  body_ += text("\" class=\"%s\"/>\n", style);
}

void Svg::label(Point at, const char* anchor, const char* style, const std::string& words) {
  body_ += text("<text x=\"%.2f\" y=\"%.2f\" text-anchor=\"%s\" class=\"%s\">%s</text>\n", at.x, at.y, anchor, style,
                escaped(words).c_str());
}

std::string Svg::finished(double width, double height, const std::string& title) const {
  return text(
             "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%g\" height=\"%g\" viewBox=\"0 0 %g %g\" "
             "role=\"img\">\n<title>%s</title>\n%s<rect width=\"100%%\" height=\"100%%\" class=\"paper\"/>\n",
             width, height, width, height, escaped(title).c_str(), kStyle) +
         body_ + "</svg>\n";
}

}  // namespace design
