#include "platform/UIKit/OffscreenSurface.h"

#include "platform/QuartzCore/LayerRendererGsk.h"

#include <cmath>
#include <utility>

namespace zuvi {

struct OffscreenSurface::Native {
  cairo_surface_t* surface = nullptr;
  double scale = 1;

  Native(CGSize size, double pixels) : scale(pixels) {
    surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(std::lround(size.width * scale)),
                                         int(std::lround(size.height * scale)));
    // A device scale lets the toolkit draw text and shadows at full sharpness and speed.
    cairo_surface_set_device_scale(surface, scale, scale);
  }
  ~Native() { cairo_surface_destroy(surface); }
  Native(const Native&) = delete;
};

OffscreenSurface::OffscreenSurface(CGSize size, double scale, UIEdgeInsets safeArea) {
  gtk_init_check(); // fails without a display, but nodes can't be made before it was asked
  UIScreen::main().configure(size, scale, safeArea);
  native_ = std::make_unique<Native>(size, scale);
  UIScreen::main().addDamage(UIScreen::main().bounds());
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
    const double left = std::floor(rect.minX()), top = std::floor(rect.minY());
    cairo_rectangle(context, left, top, std::ceil(rect.maxX()) - left,
                    std::ceil(rect.maxY()) - top);
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
  const int width = cairo_image_surface_get_width(native_->surface);
  const int height = cairo_image_surface_get_height(native_->surface);
  const auto row = static_cast<std::size_t>(cairo_image_surface_get_stride(native_->surface));
  const auto* bytes =
      reinterpret_cast<const char*>(cairo_image_surface_get_data(native_->surface));
  return CGImage::fromPixels(Data(std::string(bytes, row * static_cast<std::size_t>(height))),
                             width, height, row, CGImage::Format::BGRA);
}

} // namespace zuvi
