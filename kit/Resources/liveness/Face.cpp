#include "kit/Resources/liveness/Face.h"

#include <cmath>
#include <cstdio>
#include <numbers>

namespace zuvi {

namespace {

std::string format(const char* pattern, double a, double b, double c = 0, double d = 0,
                   double e = 0, double f = 0) {
  char text[256];
  std::snprintf(text, sizeof text, pattern, a, b, c, d, e, f);
  return text;
}

/// What is drawn on a head of radius 70 that turns by up to 27 degrees about its middle (130, 165).
std::string features(const FacePose& pose) {
  constexpr double middleX = 130, middleY = 165, radius = 70;
  const double angle = pose.turn * 27 * std::numbers::pi / 180;
  // A point of the head's front, by its direction from the middle when looking straight.
  const auto across = [&](double direction) {
    return middleX + radius * std::sin(direction * std::numbers::pi / 180 + angle);
  };
  std::string path;
  for (const double eye : {-22.0, 22.0})
    path += format("M%.1f %.1fv12", across(eye), middleY - 18);
  // The nose points where the head looks.
  path += format("M%.1f %.1fL%.1f %.1fL%.1f %.1f", across(0), middleY - 6, across(6), middleY + 18,
                 across(-2), middleY + 18);
  const double corner = middleY + 38 - 6 * pose.smile;
  path += format("M%.1f %.1fQ%.1f %.1f %.1f %.1f", across(-20), corner, across(0),
                 corner + 4 + 26 * pose.smile, across(20), corner);
  return path;
}

} // namespace

std::vector<FacePose> faceMovement() {
  std::vector<FacePose> poses{{0, 0, 60}};
  const double steps[] = {0.25, 0.6, 0.9, 1};
  for (const double side : {-1.0, 1.0}) {
    for (const double step : steps)
      poses.push_back({side * step, 0, step == 1 ? 60 : 10});
    for (const double step : {0.9, 0.6, 0.25})
      poses.push_back({side * step, 0, 10});
    poses.push_back({0, 0, 30});
  }
  for (const double step : {0.4, 0.8, 1.0})
    poses.push_back({0, step, step == 1 ? 100 : 10});
  poses.push_back({0, 0.5, 10});
  return poses;
}

std::string faceDrawing(const FacePose& pose, int width, int height) {
  std::string svg = format(R"(<svg xmlns="http://www.w3.org/2000/svg" width="%.0f" height="%.0f" )",
                           width, height) +
                    R"(viewBox="0 0 260 340"><g fill="none" stroke-linecap="round" )"
                    R"(stroke-linejoin="round">)";
  // Where the person's face belongs; the count-down stands in its middle.
  for (const char* stroke :
       {R"(stroke="#0B1320" stroke-width="8")", R"(stroke="#FFF" stroke-width="4")"})
    svg += std::string(R"(<ellipse cx="130" cy="166" rx="122" ry="158" stroke-dasharray="2 12" )") +
           stroke + "/>";
  // What it is to do, on a small head over the oval's lower end.
  svg += R"svg(<circle cx="130" cy="292" r="43" fill="#FFF" stroke="#0B1320" stroke-width="2"/>
<path transform="translate(130 292) scale(.5) translate(-130 -168)" stroke="#0B1320"
stroke-width="7" d=")svg" +
         features(pose) + "\"/>";
  return svg + "</g></svg>";
}

} // namespace zuvi
