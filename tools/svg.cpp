// A picture as SVG.
#include "svg.h"

#include <cmath>

#include "text.h"

namespace lrasynth {
namespace {

// Readable in black and white: tones differ in lightness, never in hue alone.
constexpr const char* kStyle = R"(<style>
  text { font-family: "DejaVu Sans", Verdana, sans-serif; font-size: 12px; fill: #333 }
  .title { font-size: 17px; font-weight: bold; fill: #111 }
  .section { font-size: 12px; fill: #111 }
  .small { font-size: 10px }
  .paper { fill: #fff }
  .frame { fill: none; stroke: #777 }
  .band { fill: #eef1f5 }
  .edge { stroke: #777; stroke-dasharray: 3 3 }
  .grid { stroke: #ddd }
  .zero { stroke: #555 }
  .area { fill: #1b4f80; fill-opacity: 0.14 }
  .curve { fill: none; stroke: #123f6b; stroke-width: 1.5; stroke-linejoin: round }
  .dense { fill: none; stroke: #123f6b; stroke-width: 0.9; stroke-linejoin: round }
  .bar { fill: #d5dfe9; stroke: #123f6b }
  .tap { fill: #111 }
</style>
)";

std::string escaped(const std::string& raw) {
  std::string safe;
  for (const char c : raw) {
    if (c == '&') {
      safe += "&amp;";
    } else if (c == '<') {
      safe += "&lt;";
    } else {
      safe += c;
    }
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
  body_ += text("<line x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\" class=\"%s\"/>\n", from.x, from.y, to.x, to.y,
                style);
}

void Svg::path(const std::vector<Point>& points, const char* style) {
  body_ += "<path d=\"";
  for (size_t i = 0; i < points.size(); ++i) {
    body_ += text("%s%.2f %.2f", i == 0 ? "M" : "L", points[i].x, points[i].y);
  }
  body_ += text("\" class=\"%s\"/>\n", style);
}

void Svg::label(Point at, Anchor anchor, const char* style, const std::string& words) {
  constexpr const char* kAnchors[] = {"start", "middle", "end"};
  body_ += text("<text x=\"%.2f\" y=\"%.2f\" text-anchor=\"%s\" class=\"%s\">%s</text>\n", at.x, at.y,
                kAnchors[static_cast<int>(anchor)], style, escaped(words).c_str());
}

double tick_step(double range, double most_steps) {
  const double least = range / most_steps;
  const double decade = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (decade * factor >= least) return decade * factor;
  }
  return decade * 10.0;
}

}  // namespace lrasynth
