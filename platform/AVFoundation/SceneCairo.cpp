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

/// A face before a wall; both eyes look from side to side.
Scene faceScene() {
  Scene scene;
  scene.background = drawn(Scene::width, Scene::height, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, Scene::width, Scene::height);
    fill(cr, 0.55, 0.68, 0.78);
    ellipse(cr, 640, 760, 330, 220); // shoulders
    fill(cr, 0.25, 0.32, 0.48);
    ellipse(cr, 640, 320, 210, 250); // hair
    fill(cr, 0.28, 0.19, 0.13);
    ellipse(cr, 640, 370, 180, 220);
    fill(cr, 0.86, 0.67, 0.55);
    cairo_set_source_rgb(cr, 0.62, 0.30, 0.28);
    cairo_set_line_width(cr, 12);
    cairo_arc(cr, 640, 440, 70, 0.5, std::numbers::pi - 0.5); // mouth
    cairo_stroke(cr);
  });
  scene.piece = drawn(216, 48, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, 216, 48);
    fill(cr, 0.86, 0.67, 0.55);
    for (double x : {36.0, 180.0}) {
      ellipse(cr, x, 24, 34, 22);
      fill(cr, 1, 1, 1);
      ellipse(cr, x, 24, 15, 15);
      fill(cr, 0.15, 0.25, 0.30);
    }
  });
  scene.fromX = 516, scene.toX = 548, scene.y = 312;
  return scene;
}

/// An identity card on a desk; a pencil lies in front of it and rolls.
Scene cardScene() {
  Scene scene;
  scene.background = drawn(Scene::width, Scene::height, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, Scene::width, Scene::height);
    fill(cr, 0.47, 0.34, 0.24);
    cairo_rectangle(cr, 300, 110, 680, 428);
    fill(cr, 0.93, 0.94, 0.90);
    cairo_rectangle(cr, 300, 110, 680, 70);
    fill(cr, 0.16, 0.40, 0.62);
    cairo_rectangle(cr, 340, 220, 190, 250);
    fill(cr, 0.72, 0.78, 0.82);
    ellipse(cr, 435, 310, 50, 60);
    fill(cr, 0.80, 0.62, 0.52);
    ellipse(cr, 435, 412, 80, 58);
    fill(cr, 0.30, 0.36, 0.50);
    for (int line = 0; line < 5; line++) {
      cairo_rectangle(cr, 570, 230 + line * 52, line % 2 ? 260 : 350, 20);
      fill(cr, 0.30, 0.32, 0.35);
    }
  });
  scene.piece = drawn(240, 28, [](cairo_t* cr) {
    cairo_rectangle(cr, 0, 0, 240, 28);
    fill(cr, 0.47, 0.34, 0.24);
    cairo_rectangle(cr, 20, 6, 190, 16);
    fill(cr, 0.92, 0.74, 0.18);
    cairo_move_to(cr, 210, 6);
    cairo_line_to(cr, 236, 14);
    cairo_line_to(cr, 210, 22);
    fill(cr, 0.88, 0.76, 0.60);
  });
  scene.fromX = 200, scene.toX = 840, scene.y = 610;
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
