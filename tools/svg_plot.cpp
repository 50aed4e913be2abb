#include "tools/svg_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "tools/output_file.h"

namespace vsps::tool {

namespace {

constexpr double kWidth = 900, kHeight = 420;
constexpr double kLeft = 70, kRight = 170, kTop = 40, kBottom = 55;  // margins; the legend sits on the right

std::string escape(const std::string& s) {
  std::string r;
  for (char c : s) {
    if (c == '<')
      r += "&lt;";
    else if (c == '>')
      r += "&gt;";
    else if (c == '&')
      r += "&amp;";
    else
      r += c;
  }
  return r;
}

std::string number(double v) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.6g", v);
  return buf;
}

}  // namespace

std::vector<double> nice_ticks(double lo, double hi, int count) {
  std::vector<double> ticks;
  if (!(hi > lo) || count < 1) return ticks;
  const double raw = (hi - lo) / count;
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  double step = power;
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (m * power >= raw) {
      step = m * power;
      break;
    }
  for (double t = std::ceil(lo / step - 1e-9) * step; t <= hi + step * 1e-9; t += step)
    ticks.push_back(std::fabs(t) < step * 1e-9 ? 0.0 : t);
  return ticks;
}

bool write_svg(const std::string& path, const Plot& p, std::string* error) {
  const double plotW = kWidth - kLeft - kRight, plotH = kHeight - kTop - kBottom;
  auto px = [&](double x) { return kLeft + (x - p.xMin) / (p.xMax - p.xMin) * plotW; };
  auto py = [&](double y) {
    const double c = std::clamp(y, p.yMin, p.yMax);
    return kTop + (p.yMax - c) / (p.yMax - p.yMin) * plotH;
  };
  std::ostringstream s;
  s << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << kWidth << "\" height=\"" << kHeight
    << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
    << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
    << "<text x=\"" << kWidth / 2 << "\" y=\"22\" text-anchor=\"middle\" font-size=\"15\">" << escape(p.title)
    << "</text>\n";
  for (double t : nice_ticks(p.xMin, p.xMax, 10))
    s << "<line x1=\"" << number(px(t)) << "\" y1=\"" << kTop << "\" x2=\"" << number(px(t)) << "\" y2=\""
      << kTop + plotH << "\" stroke=\"#e0e0e0\"/><text x=\"" << number(px(t)) << "\" y=\"" << kTop + plotH + 16
      << "\" text-anchor=\"middle\">" << number(t) << "</text>\n";
  for (double t : nice_ticks(p.yMin, p.yMax, 8))
    s << "<line x1=\"" << kLeft << "\" y1=\"" << number(py(t)) << "\" x2=\"" << kLeft + plotW << "\" y2=\""
      << number(py(t)) << "\" stroke=\"#e0e0e0\"/><text x=\"" << kLeft - 6 << "\" y=\"" << number(py(t) + 4)
      << "\" text-anchor=\"end\">" << number(t) << "</text>\n";
  s << "<rect x=\"" << kLeft << "\" y=\"" << kTop << "\" width=\"" << plotW << "\" height=\"" << plotH
    << "\" fill=\"none\" stroke=\"black\"/>\n"
    << "<text x=\"" << kLeft + plotW / 2 << "\" y=\"" << kHeight - 14 << "\" text-anchor=\"middle\">"
    << escape(p.xLabel) << "</text>\n"
    << "<text transform=\"translate(18," << kTop + plotH / 2 << ") rotate(-90)\" text-anchor=\"middle\">"
    << escape(p.yLabel) << "</text>\n";
  int legendRow = 0;
  for (const PlotSeries& ser : p.series) {
    const std::string style = "fill=\"none\" stroke=\"" + ser.colour + "\" stroke-width=\"" + number(ser.width) + "\"" +
                              (ser.opacity < 1 ? " stroke-opacity=\"" + number(ser.opacity) + "\"" : "") +
                              (ser.dashed ? " stroke-dasharray=\"5,3\"" : "");
    std::string points;
    auto flush = [&] {
      if (!points.empty()) s << "<polyline " << style << " points=\"" << points << "\"/>\n";
      points.clear();
    };
    const std::size_t n = std::min(ser.x.size(), ser.y.size());
    for (std::size_t i = 0; i < n; ++i) {
      if (std::isnan(ser.y[i]) || std::isnan(ser.x[i])) {
        flush();
        continue;
      }
      points += number(px(ser.x[i])) + "," + number(py(ser.y[i])) + " ";
    }
    flush();
    if (!ser.label.empty()) {
      const double y = kTop + 10 + 18 * legendRow++;
      s << "<line x1=\"" << kWidth - kRight + 12 << "\" y1=\"" << y << "\" x2=\"" << kWidth - kRight + 40 << "\" y2=\""
        << y << "\" " << style << "/><text x=\"" << kWidth - kRight + 46 << "\" y=\"" << y + 4 << "\">"
        << escape(ser.label) << "</text>\n";
    }
  }
  s << "</svg>\n";
  const std::string text = s.str();
  OutputFile f;
  if (!f.create(path, error)) return false;
  std::fwrite(text.data(), 1, text.size(), f.file());
  return f.finish(error);
}

}  // namespace vsps::tool
