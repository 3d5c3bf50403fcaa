#include "platform/UIKit/OffscreenSurface.h"

#include "platform/QuartzCore/LayerRendererGsk.h"
#include "platform/UIKit/ScreenPicture.h"

#include <cmath>
#include <utility>

namespace zuvi {

namespace {

cairo_surface_t* makeSurface(CGSize size, double scale) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(std::lround(size.width * scale)),
                                 int(std::lround(size.height * scale)));
  // A device scale lets the toolkit draw text and shadows at full sharpness and speed.
  cairo_surface_set_device_scale(surface, scale, scale);
  return surface;
}

std::shared_ptr<const CGImage> imageOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  const auto row = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
  const auto* bytes = reinterpret_cast<const char*>(cairo_image_surface_get_data(surface));
  return CGImage::fromPixels(Data(std::string(bytes, row * static_cast<std::size_t>(height))),
                             width, height, row, CGImage::Format::BGRA);
}

} // namespace

std::shared_ptr<const CGImage> pictureOfScreen() {
  UIScreen& screen = UIScreen::main();
  screen.layoutIfNeeded();
  const LayerRenderer::Frame frame = LayerRenderer::render(screen.rootLayer(), screen.scale());
  for (const CGRect& rect : frame.damage)
    screen.addDamage(rect); // the surface has not drawn it yet
  screen.setNeedsFrame();
  cairo_surface_t* surface = makeSurface(screen.bounds().size(), screen.scale());
  cairo_t* context = cairo_create(surface);
  if (frame.node) gsk_render_node_draw(frame.node, context);
  cairo_destroy(context);
  auto image = imageOf(surface);
  cairo_surface_destroy(surface);
  return image;
}

struct OffscreenSurface::Native {
  cairo_surface_t* surface;
  double scale;

  Native(CGSize size, double pixels) : surface(makeSurface(size, pixels)), scale(pixels) {}
  ~Native() { cairo_surface_destroy(surface); }
  Native(const Native&) = delete;
};

OffscreenSurface::OffscreenSurface(CGSize size, double scale, UIEdgeInsets safeArea) {
  gtk_init_check(); // fails without a display, but nodes can't be made before it was asked
  UIScreen::main().configure(size, scale, safeArea);
  native_ = std::make_unique<Native>(size, scale);
  UIScreen::main().setSurface(this);
}

OffscreenSurface::~OffscreenSurface() { UIScreen::main().setSurface(nullptr); }

bool OffscreenSurface::drawFrame() {
  UIScreen& screen = UIScreen::main();
  screen.layoutIfNeeded();
  if (!std::exchange(frameDue_, false)) return false;
  LayerRenderer::Frame frame = LayerRenderer::render(screen.rootLayer(), native_->scale);
  frameDue_ = frame.animating;
  std::vector<CGRect> damage = screen.takeDamage();
  damage.insert(damage.end(), frame.damage.begin(), frame.damage.end());
  if (damage.empty()) return false;

  cairo_t* context = cairo_create(native_->surface);
  for (const CGRect& rect : damage) {
    // Whole pixels, so that no edge is blended twice.
    const double scale = native_->scale;
    const double left = std::floor(rect.minX() * scale), top = std::floor(rect.minY() * scale);
    cairo_rectangle(context, left / scale, top / scale,
                    (std::ceil(rect.maxX() * scale) - left) / scale,
                    (std::ceil(rect.maxY() * scale) - top) / scale);
  }
  cairo_clip(context);
  cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
  cairo_paint(context);
  cairo_set_operator(context, CAIRO_OPERATOR_OVER);
  if (frame.node) gsk_render_node_draw(frame.node, context);
  cairo_destroy(context);
  cairo_surface_flush(native_->surface);
  return true;
}

std::shared_ptr<const CGImage> OffscreenSurface::picture() {
  drawFrame();
  return imageOf(native_->surface);
}

} // namespace zuvi
