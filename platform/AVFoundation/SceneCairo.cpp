#include "platform/AVFoundation/SceneCairo.h"

#include <cairo.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <numbers>

namespace zuvi {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;
constexpr int framesPerSwing = 90;

Scene::Picture drawn(int width, int height, const std::function<void(cairo_t*)>& draw) {
  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height), cairo_surface_destroy);
  std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                             cairo_destroy);
  draw(context.get());
  cairo_surface_flush(surface.get());

  Scene::Picture picture{width, height, {}};
  picture.pixels.resize(std::size_t(width) * height * 4);
  const auto* rows = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; rows && y < height; y++)
    std::memcpy(&picture.pixels[std::size_t(y) * width * 4], rows + std::size_t(y) * stride,
                std::size_t(width) * 4);
  return picture;
}

void fill(cairo_t* cr, double red, double green, double blue) {
  cairo_set_source_rgb(cr, red, green, blue);
  cairo_fill(cr);
}

void ellipse(cairo_t* cr, double x, double y, double radiusX, double radiusY) {
  cairo_save(cr);
  cairo_translate(cr, x, y);
  cairo_scale(cr, radiusX, radiusY);
  cairo_new_sub_path(cr);
  cairo_arc(cr, 0, 0, 1, 0, fullTurn);
  cairo_restore(cr);
}

// Both scenes keep to the middle: a phone's screen shows an upright strip of a wide picture.
constexpr double middle = Scene::width / 2.0;

/// A face before a wall; both eyes look from side to side.
Scene faceScene() {
  Scene scene;
  scene.background = drawn(Scene::width, Scene::height, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, Scene::width, Scene::height);
    fill(cr, 0.55, 0.68, 0.78);
    ellipse(cr, middle, 730, 290, 230); // shoulders
    fill(cr, 0.25, 0.32, 0.48);
    cairo_rectangle(cr, middle - 50, 430, 100, 100); // neck
    fill(cr, 0.80, 0.60, 0.48);
    ellipse(cr, middle, 288, 142, 180); // hair
    fill(cr, 0.28, 0.19, 0.13);
    ellipse(cr, middle, 316, 120, 156);
    fill(cr, 0.86, 0.67, 0.55);
    cairo_set_source_rgb(cr, 0.62, 0.30, 0.28);
    cairo_set_line_width(cr, 9);
    cairo_arc(cr, middle, 372, 46, 0.5, std::numbers::pi - 0.5); // mouth
    cairo_stroke(cr);
  });
  scene.piece = drawn(150, 34, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, 150, 34);
    fill(cr, 0.86, 0.67, 0.55);
    for (double x : {25.0, 125.0}) {
      ellipse(cr, x, 17, 23, 15);
      fill(cr, 1, 1, 1);
      ellipse(cr, x, 17, 10, 10);
      fill(cr, 0.15, 0.25, 0.30);
    }
  });
  scene.fromX = 554, scene.toX = 576, scene.y = 278;
  return scene;
}

/// An identity card on a desk; a pencil lies in front of it and rolls.
Scene cardScene() {
  Scene scene;
  scene.background = drawn(Scene::width, Scene::height, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, Scene::width, Scene::height);
    fill(cr, 0.47, 0.34, 0.24);
    cairo_rectangle(cr, 462, 232, 356, 224);
    fill(cr, 0.93, 0.94, 0.90);
    cairo_rectangle(cr, 462, 232, 356, 38);
    fill(cr, 0.16, 0.40, 0.62);
    cairo_rectangle(cr, 484, 290, 100, 132);
    fill(cr, 0.72, 0.78, 0.82);
    ellipse(cr, 534, 338, 26, 32);
    fill(cr, 0.80, 0.62, 0.52);
    ellipse(cr, 534, 394, 42, 28);
    fill(cr, 0.30, 0.36, 0.50);
    for (int line = 0; line < 5; line++) {
      cairo_rectangle(cr, 606, 294 + line * 28, line % 2 ? 136 : 184, 11);
      fill(cr, 0.30, 0.32, 0.35);
    }
  });
  scene.piece = drawn(150, 20, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, 150, 20);
    fill(cr, 0.47, 0.34, 0.24);
    cairo_rectangle(cr, 8, 4, 118, 12);
    fill(cr, 0.92, 0.74, 0.18);
    cairo_move_to(cr, 126, 4);
    cairo_line_to(cr, 146, 10);
    cairo_line_to(cr, 126, 16);
    fill(cr, 0.88, 0.76, 0.60);
  });
  scene.fromX = 440, scene.toX = 690, scene.y = 520;
  return scene;
}

} // namespace

Scene Scene::draw(AVCaptureDevicePosition position) {
  return position == AVCaptureDevicePosition::Back ? cardScene() : faceScene();
}

int Scene::pieceX(std::uint64_t frame) const {
  const double phase = double(frame % framesPerSwing) / framesPerSwing;
  const double share = (1 - std::cos(fullTurn * phase)) / 2;
  return (fromX + static_cast<int>(share * (toX - fromX))) & ~1;
}

} // namespace zuvi
