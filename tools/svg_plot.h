// Line plots written as standalone SVG files (no dependency).
#pragma once

#include <string>
#include <vector>

namespace vsps::tool {

struct PlotSeries {
  std::string label;   // legend text; empty: not in the legend
  std::string colour;  // SVG colour, e.g. "#1f77b4"
  bool dashed = false;
  double width = 1.3;     // stroke width in pixels
  double opacity = 1.0;   // stroke opacity, 0..1
  std::vector<double> x;  // same length as y; a NaN y breaks the line
  std::vector<double> y;
};

struct Plot {
  std::string title, xLabel, yLabel;
  double xMin = 0, xMax = 1, yMin = 0, yMax = 1;
  std::vector<PlotSeries> series;
};

// Writes the plot; false with a reason in *error.
bool write_svg(const std::string& path, const Plot& plot, std::string* error);

// Tick positions: about `count` round values (1, 2 or 5 times a power of
// ten) covering [lo, hi].
std::vector<double> nice_ticks(double lo, double hi, int count);

}  // namespace vsps::tool
