#include "platform/QuartzCore/ShadowGsk.h"

#include "platform/QuartzCore/DrawingContextGsk.h"

#include <algorithm>
#include <cmath>

namespace zuvi {

namespace {

/// Where the shadow may be seen.
CGRect extentOf(const Shadow& shadow) {
  const double reach = 3 * shadow.radius + 1;
  return CGRectInset(shadow.rect, -reach, -reach)
      .offsetBy(shadow.offset.width, shadow.offset.height);
}

// The toolkit leaves out what lies under the thing that throws the shadow, which shows when the
// shadow is of another shape. So the thing is put to the side, and the shadow moved back.
GskRenderNode* shadowAlone(const Shadow& shadow, CGRect& thing) {
  const double aside = shadow.rect.width + 2 * (3 * shadow.radius + 1) + shadow.offset.width;
  thing = shadow.rect.offsetBy(shadow.offset.width - aside, 0);
  const GskRoundedRect outline = toRounded(thing, shadow.cornerRadius);
  const GdkRGBA rgba = toGdk(shadow.color);
  return gsk_outset_shadow_node_new(&outline, &rgba, float(aside), float(shadow.offset.height), 0,
                                    float(2 * shadow.radius));
}

/// The node on a surface that shows `area`.
cairo_surface_t* drawn(GskRenderNode* node, const CGRect& area, double scale) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(std::lround(area.width * scale)),
                                 int(std::lround(area.height * scale)));
  cairo_surface_set_device_scale(surface, scale, scale);
  cairo_surface_set_device_offset(surface, -area.x * scale, -area.y * scale);
  cairo_t* context = cairo_create(surface);
  gsk_render_node_draw(node, context);
  cairo_destroy(context);
  cairo_surface_flush(surface);
  return surface;
}

/// Whether the toolkit draws a shadow where the thing that throws it is not in sight. GTK 4.18, for
/// one, does not when it draws with cairo.
bool toolkitDrawsItAlone() {
  static const bool does = [] {
    CGRect thing;
    GskRenderNode* node = shadowAlone({{0, 0, 4, 4}, 0, {0, 0, 0, 1}, {0, 0}, 0}, thing);
    cairo_surface_t* surface = drawn(node, {0, 0, 4, 4}, 1);
    const bool seen = cairo_image_surface_get_data(surface)[3] != 0;
    cairo_surface_destroy(surface);
    gsk_render_node_unref(node);
    return seen;
  }();
  return does;
}

/// Draws it once, with an edge of the thing in sight, and keeps the pixels.
void appendPicture(GtkSnapshot* snapshot, GskRenderNode* node, const CGRect& thing,
                   const CGRect& extent, double scale) {
  // Whole pixels, so that they fall on those of the screen.
  const double left = std::floor((thing.maxX() - 1) * scale) / scale;
  const double top = std::floor(std::min(thing.y, extent.y) * scale) / scale;
  const CGRect area{left, top, std::ceil((extent.maxX() - left) * scale) / scale,
                    std::ceil((std::max(thing.maxY(), extent.maxY()) - top) * scale) / scale};
  cairo_surface_t* surface = drawn(node, area, scale);
  const int width = cairo_image_surface_get_width(surface),
            height = cairo_image_surface_get_height(surface),
            stride = cairo_image_surface_get_stride(surface);
  GBytes* bytes = g_bytes_new_with_free_func(
      cairo_image_surface_get_data(surface), gsize(height) * gsize(stride),
      [](gpointer kept) { cairo_surface_destroy(static_cast<cairo_surface_t*>(kept)); }, surface);
  GdkTexture* texture =
      gdk_memory_texture_new(width, height, GDK_MEMORY_DEFAULT, bytes, gsize(stride));
  const graphene_rect_t place = toGraphene(area);
  gtk_snapshot_append_texture(snapshot, texture, &place);
  g_object_unref(texture);
  g_bytes_unref(bytes);
}

} // namespace

void appendShadow(GtkSnapshot* snapshot, const Shadow& shadow, double scale) {
  const CGRect extent = extentOf(shadow);
  const graphene_rect_t seen = toGraphene(extent);
  CGRect thing;
  GskRenderNode* node = shadowAlone(shadow, thing);
  gtk_snapshot_push_clip(snapshot, &seen);
  if (toolkitDrawsItAlone())
    gtk_snapshot_append_node(snapshot, node);
  else
    appendPicture(snapshot, node, thing, extent, scale);
  gtk_snapshot_pop(snapshot);
  gsk_render_node_unref(node);
}

} // namespace zuvi
