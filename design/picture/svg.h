// SPDX-License-Identifier: Apache-2.0
// A picture as SVG: the few shapes that plots are made of. How a class of shape looks stands in one style sheet.
#pragma once

#include <string>
#include <vector>

namespace design {

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

// How a label lies to its place.
constexpr const char* kStart = "start";
constexpr const char* kMiddle = "middle";
constexpr const char* kEnd = "end";

// About the width of a label, for what must not overlap.
double label_width(const std::string& words);

// Words in lines of at most about that width.
std::vector<std::string> wrapped(const std::string& words, double width);

class Svg {
 public:
  // Shapes cover what was drawn before. A style is one or more classes of the style sheet.
  void rectangle(const Box& box, const char* style);
  void line(Point from, Point to, const char* style);
  void path(const std::vector<Point>& points, const char* style);
  // Smaller, and cut in the middle, where it would not fit into that room.
  void title(Point at, double room, const std::string& words);
  void label(Point at, const char* anchor, const char* style, const std::string& words);

  std::string finished(double width, double height, const std::string& title) const;

 private:
  std::string body_;
};

}  // namespace design
