#include "platform/QuartzCore/DrawingContextGsk.h"

#include "platform/CoreGraphics/CGImageGdk.h"
#include "platform/CoreText/TextLayout.h"

#include <cmath>
#include <numbers>

namespace zuvi {

namespace {

/// Adds the outline to the context of a drawing.
void trace(cairo_t* context, const CGPath& path) {
  for (const CGPath::Element& element : path.elements()) {
    const CGPoint* p = element.points;
    switch (element.verb) {
    case CGPath::Verb::Move:
      cairo_move_to(context, p[0].x, p[0].y);
      break;
    case CGPath::Verb::Line:
      cairo_line_to(context, p[0].x, p[0].y);
      break;
    case CGPath::Verb::Curve:
      cairo_curve_to(context, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
      break;
    case CGPath::Verb::Close:
      cairo_close_path(context);
      break;
    }
  }
}

/// Where cairo draws, GTK 4.8 converts each pixel of a texture twice for each frame; this does not.
void drawWithCairo(GtkSnapshot* snapshot, const CGImage& image, const graphene_rect_t& area,
                   cairo_filter_t filter) {
  cairo_t* context = gtk_snapshot_append_cairo(snapshot, &area);
  cairo_translate(context, area.origin.x, area.origin.y);
  cairo_scale(context, area.size.width / image.width(), area.size.height / image.height());
  cairo_set_source_surface(context, surfaceOf(image), 0, 0);
  cairo_pattern_set_filter(cairo_get_source(context), filter);
  cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
  cairo_rectangle(context, 0, 0, image.width(), image.height());
  cairo_fill(context);
  cairo_destroy(context);
}

} // namespace

GskTransform* makeTransform(const CGAffineTransform& t) {
  const graphene_point_t offset{float(t.tx), float(t.ty)};
  GskTransform* made = gsk_transform_translate(nullptr, &offset);
  if (t.a == 1 && t.b == 0 && t.c == 0 && t.d == 1) return made;
  const double e = (t.a + t.d) / 2, f = (t.a - t.d) / 2, g = (t.b + t.c) / 2, h = (t.b - t.c) / 2;
  const double q = std::hypot(e, h), r = std::hypot(f, g);
  const double a1 = std::atan2(g, f), a2 = std::atan2(h, e);
  constexpr double degrees = 180 / std::numbers::pi;
  const double first = (a2 - a1) / 2 * degrees, second = (a2 + a1) / 2 * degrees;
  if (second != 0) made = gsk_transform_rotate(made, float(second));
  made = gsk_transform_scale(made, float(q + r), float(q - r));
  if (first != 0) made = gsk_transform_rotate(made, float(first));
  return made;
}

double DrawingContext::scale() const {
  return native_.scale;
}

void DrawingContext::fill(const CGRect& rect, const CGColor& color) {
  if (rect.isEmpty() || color.alpha <= 0) return;
  const GdkRGBA rgba = toGdk(color);
  const graphene_rect_t area = toGraphene(rect);
  gtk_snapshot_append_color(native_.snapshot, &rgba, &area);
}

void DrawingContext::fill(const CGRect& rect, double cornerRadius, const CGColor& color) {
  if (rect.isEmpty() || color.alpha <= 0) return;
  if (cornerRadius <= 0) return fill(rect, color);
  const GskRoundedRect rounded = toRounded(rect, cornerRadius);
  gtk_snapshot_push_rounded_clip(native_.snapshot, &rounded);
  fill(rect, color);
  gtk_snapshot_pop(native_.snapshot);
}

void DrawingContext::fill(const CGPath& path, const CGColor& color, FillRule rule) {
  if (path.isEmpty() || color.alpha <= 0) return;
  const graphene_rect_t area = toGraphene(CGRectInset(path.boundingBox(), -1, -1));
  cairo_t* context = gtk_snapshot_append_cairo(native_.snapshot, &area);
  trace(context, path);
  cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
  cairo_set_fill_rule(context, rule == FillRule::EvenOdd ? CAIRO_FILL_RULE_EVEN_ODD
                                                         : CAIRO_FILL_RULE_WINDING);
  cairo_fill(context);
  cairo_destroy(context);
}

void DrawingContext::stroke(const CGPath& path, const CGColor& color, double width) {
  if (path.isEmpty() || color.alpha <= 0 || width <= 0) return;
  const graphene_rect_t area = toGraphene(CGRectInset(path.boundingBox(), -width, -width));
  cairo_t* context = gtk_snapshot_append_cairo(native_.snapshot, &area);
  trace(context, path);
  cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
  cairo_set_line_width(context, width);
  cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
  cairo_stroke(context);
  cairo_destroy(context);
}

void DrawingContext::fillGradient(const CGRect& rect, const std::vector<CGColor>& colors) {
  if (rect.isEmpty() || colors.empty()) return;
  if (colors.size() == 1) return fill(rect, colors.front());
  std::vector<GskColorStop> stops;
  stops.reserve(colors.size());
  for (std::size_t i = 0; i < colors.size(); i++)
    stops.push_back({float(i) / float(colors.size() - 1), toGdk(colors[i])});
  const graphene_rect_t area = toGraphene(rect);
  const graphene_point_t top{float(rect.midX()), float(rect.minY())};
  const graphene_point_t bottom{float(rect.midX()), float(rect.maxY())};
  gtk_snapshot_append_linear_gradient(native_.snapshot, &area, &top, &bottom, stops.data(),
                                      stops.size());
}

void DrawingContext::drawImage(const CGImage& image, const CGRect& rect) {
  if (rect.isEmpty()) return;
  const graphene_rect_t area = toGraphene(rect);
  // Without a GPU a texture below three quarters of its size is filtered with such care that it
  // takes longer than a frame. While its size changes, a quick filter looks the same.
  if (native_.resizing || native_.withCairo)
    drawWithCairo(native_.snapshot, image, area,
                  native_.resizing ? CAIRO_FILTER_BILINEAR : CAIRO_FILTER_GOOD);
  else
    gtk_snapshot_append_texture(native_.snapshot, image.native().texture, &area);
}

void DrawingContext::drawText(const TextLayout& text, CGPoint origin) {
  gtk_snapshot_save(native_.snapshot);
  const graphene_point_t offset{float(origin.x), float(origin.y)};
  gtk_snapshot_translate(native_.snapshot, &offset);
  const GdkRGBA rgba = toGdk(text.color());
  gtk_snapshot_append_layout(native_.snapshot, static_cast<PangoLayout*>(text.native()), &rgba);
  gtk_snapshot_restore(native_.snapshot);
}

} // namespace zuvi
