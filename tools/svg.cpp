// SPDX-License-Identifier: Apache-2.0
// A picture as SVG.
#include "svg.h"

#include "text.h"

namespace command {
namespace {

// Readable in black and white: tones differ in lightness, never in hue alone.
constexpr const char* kStyle = R"(<style>
  text { font-family: "DejaVu Sans", Verdana, sans-serif; font-size: 12px; fill: #333 }
  .title { font-size: 17px; font-weight: bold; fill: #111 }
  .strong { font-weight: bold }
  .paper { fill: #fff }
  .frame { fill: none; stroke: #777 }
  .band { fill: #eef1f5 }
  .edge { stroke: #777; stroke-dasharray: 3 3 }
  .grid { stroke: #ddd }
  .zero { stroke: #555 }
  .curve { fill: none; stroke: #123f6b; stroke-width: 1.5; stroke-linejoin: round }
  .shaded { fill: #1b4f80; fill-opacity: 0.14 }
  .dense { fill: none; stroke: #123f6b; stroke-width: 0.9; stroke-linejoin: round }
  .vibration { fill: #c9d6e3; stroke: #123f6b; stroke-linejoin: round }
  .transient { fill: #111; stroke: #111; stroke-width: 0.8 }
</style>
)";

std::string escaped(const std::string& raw) {
  std::string safe;
  for (const char c : raw) {
    safe += c == '&' ? "&amp;" : (c == '<' ? "&lt;" : std::string(1, c));
  }
  return safe;
}

}  // namespace

Svg::Svg(double width, double height, const std::string& title)
    : body_(text("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%g\" height=\"%g\" viewBox=\"0 0 %g %g\" "
                 "role=\"img\">\n<title>%s</title>\n%s",
                 width, height, width, height, escaped(title).c_str(), kStyle)) {
  rectangle({.x = 0, .y = 0, .width = width, .height = height}, "paper");
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

}  // namespace command
