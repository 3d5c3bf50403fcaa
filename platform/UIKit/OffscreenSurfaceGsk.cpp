#include "platform/UIKit/OffscreenSurface.h"

#include "platform/QuartzCore/LayerRendererGsk.h"
#include "platform/UIKit/NodePictureGsk.h"
#include "platform/UIKit/ScreenPicture.h"

#include <cmath>
#include <utility>

namespace zuvi {

std::shared_ptr<const CGImage> pictureOfScreen() {
  UIScreen& screen = UIScreen::main();
  screen.layoutIfNeeded();
  const LayerRenderer::Frame frame =
      LayerRenderer::render(screen.rootLayer(), screen.scale(), false);
  for (const CGRect& rect : frame.damage)
    screen.addDamage(rect); // the surface has not drawn it yet
  screen.setNeedsFrame();
  return pictureOfNode(frame.node, screen.bounds().size(), screen.scale());
}

struct OffscreenSurface::Native {
  cairo_surface_t* surface;
  double scale;

  Native(CGSize size, double pixels) : surface(makeSurface(size, pixels)), scale(pixels) {}
  ~Native() { cairo_surface_destroy(surface); }
  Native(const Native&) = delete;

  /// In pixels.
  CGRect extent() const {
    return {0, 0, double(cairo_image_surface_get_width(surface)),
            double(cairo_image_surface_get_height(surface))};
  }

  CGRect wholePixels(const CGRect& points) const {
    const double left = std::floor(points.minX() * scale), top = std::floor(points.minY() * scale);
    return {left, top, std::ceil(points.maxX() * scale) - left,
            std::ceil(points.maxY() * scale) - top};
  }

  /// A surface of those pixels alone, with the layers on it.
  cairo_surface_t* draw(CALayer& root, const CGRect& pixels) const {
    cairo_surface_t* part = makeSurface({pixels.width / scale, pixels.height / scale}, scale);
    cairo_surface_set_device_offset(part, -pixels.x, -pixels.y);
    cairo_t* context = cairo_create(part);
    LayerRenderer::draw(
        root, context,
        {pixels.x / scale, pixels.y / scale, pixels.width / scale, pixels.height / scale});
    cairo_destroy(context);
    return part;
  }
};

OffscreenSurface::OffscreenSurface(CGSize size, double scale, UIEdgeInsets safeArea) {
  gtk_init_check(); // fails without a display, but nodes can't be made before it was asked
  UIScreen::main().configure(size, scale, safeArea);
  native_ = std::make_unique<Native>(size, scale);
  UIScreen::main().setSurface(this);
}

OffscreenSurface::~OffscreenSurface() {
  UIScreen::main().setSurface(nullptr);
}

bool OffscreenSurface::drawFrame() {
  UIScreen& screen = UIScreen::main();
  screen.layoutIfNeeded();
  if (!std::exchange(frameDue_, false)) return false;
  LayerRenderer::Frame frame = LayerRenderer::render(screen.rootLayer(), native_->scale, true);
  frameDue_ = frame.animating;
  std::vector<CGRect> damage = screen.takeDamage();
  damage.insert(damage.end(), frame.damage.begin(), frame.damage.end());
  if (damage.empty()) return false;

  cairo_t* context = cairo_create(native_->surface);
  CGRect all; // in whole pixels, so that no edge is blended twice
  for (const CGRect& rect : damage) {
    const CGRect pixels = CGRectIntersection(native_->wholePixels(rect), native_->extent());
    all = CGRectUnion(all, pixels);
    cairo_rectangle(context, pixels.x / native_->scale, pixels.y / native_->scale,
                    pixels.width / native_->scale, pixels.height / native_->scale);
  }
  if (all.isEmpty()) {
    cairo_destroy(context);
    return false; // out of sight
  }
  // Drawn without a clip, for soft edges come out a shade different under one.
  const double scale = native_->scale;
  const CGRect area = LayerRenderer::areaWithShadows(
      screen.rootLayer(), {all.x / scale, all.y / scale, all.width / scale, all.height / scale});
  cairo_surface_t* fresh = native_->draw(
      screen.rootLayer(), CGRectIntersection(native_->wholePixels(area), native_->extent()));
  cairo_clip(context);
  cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context, fresh, 0, 0);
  cairo_paint(context);
  cairo_destroy(context);
  cairo_surface_destroy(fresh);
  cairo_surface_flush(native_->surface);
  return true;
}

std::shared_ptr<const CGImage> OffscreenSurface::picture() {
  drawFrame();
  return imageOf(native_->surface);
}

} // namespace zuvi
