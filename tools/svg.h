// A picture as SVG: the few shapes that plots are made of. How a class of shape looks stands in one style sheet.
#pragma once

#include <string>
#include <vector>

namespace lrasynth {

struct Point {
  double x;
  double y;
};

struct Box {
  double x;
  double y;
  double width;
  double height;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
};

enum class Anchor { kStart, kMiddle, kEnd };

class Svg {
 public:
  Svg(double width, double height, const std::string& title);

  void rectangle(const Box& box, const char* style);
  void line(Point from, Point to, const char* style);
  void path(const std::vector<Point>& points, const char* style);
  void label(Point at, Anchor anchor, const char* style, const std::string& text);

  std::string finished() const { return body_ + "</svg>\n"; }

 private:
  std::string body_;
};

// Maps values from..to to positions start..end.
struct Scale {
  double from;
  double to;
  double start;
  double end;

  double operator()(double value) const { return start + (value - from) * (end - start) / (to - from); }
};

// The smallest of 1, 2, 5, 10, 20, ... that divides a range into at most that many steps.
double tick_step(double range, double most_steps);

}  // namespace lrasynth
