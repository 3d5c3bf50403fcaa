#include "platform/QuartzCore/LayerRendererGsk.h"

#include "platform/CoreGraphics/CGImageGdk.h"
#include "platform/QuartzCore/CALayerCache.h"
#include "platform/QuartzCore/DrawingContextGsk.h"
#include "platform/QuartzCore/ShadowGsk.h"

#include <algorithm>
#include <utility>

namespace zuvi {

namespace {

std::shared_ptr<void> adopt(GtkSnapshot* snapshot) {
  GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
  if (!node) return nullptr;
  return {node, [](GskRenderNode* held) { gsk_render_node_unref(held); }};
}

GskRenderNode* nodeOf(const std::shared_ptr<void>& held) {
  return static_cast<GskRenderNode*>(held.get());
}

CGRect extents(const std::shared_ptr<void>& held) {
  if (!held) return {};
  graphene_rect_t bounds;
  gsk_render_node_get_bounds(nodeOf(held), &bounds);
  return {bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height};
}

CGRect placeContents(const CGImage& image, const CGRect& bounds, ContentsGravity gravity,
                     double scale) {
  if (gravity == ContentsGravity::Resize) return bounds;
  double width = image.width(), height = image.height();
  double factor = 1 / scale;
  if (gravity == ContentsGravity::ResizeAspect)
    factor = std::min(bounds.width / width, bounds.height / height);
  if (gravity == ContentsGravity::ResizeAspectFill)
    factor = std::max(bounds.width / width, bounds.height / height);
  width *= factor;
  height *= factor;
  return {bounds.midX() - width / 2, bounds.midY() - height / 2, width, height};
}

class Builder {
public:
  Builder(double scale, bool withCairo) : scale_(scale), withCairo_(withCairo) {}

  LayerRenderer::Frame frame;

  /// Brings the cache of a layer up to date; `toRoot` leads from its superlayer to the root.
  void update(CALayer& layer, const CGAffineTransform& toRoot) {
    CALayer::Cache& cache = layer.cache();
    if (!cache.dirty && !layer.hasAnimations()) return;
    if (layer.isHidden() || layer.presentedOpacity() <= 0) return vanish(layer, toRoot);

    const bool moves = layer.hasAnimations();
    if (moves) frame.animating = true;
    const bool moved = moves || cache.placementChanged;
    const bool redrawn = cache.contentChanged || (moves && animatesContent(layer));
    const CGAffineTransform own = layer.presentedTransformToSuperlayer();
    const CGAffineTransform childrenToRoot = own.concatenating(toRoot);
    if (redrawn) drawContent(layer);
    // An animation somewhere below keeps the path down to it dirty.
    const bool outerAnimating = std::exchange(frame.animating, false);
    for (const auto& sublayer : layer.sublayers())
      update(*sublayer, childrenToRoot);
    const bool below = frame.animating;
    frame.animating = below || outerAnimating;

    cache.placed = place(layer, own);
    const CGRect now = extents(cache.placed);
    // The toolkit cuts a see-through group softly at its bounds, so its edges change with them.
    const bool edgesChanged = layer.presentedOpacity() < 1 && now != cache.drawn;
    if (moved || edgesChanged) {
      damage(toRoot.apply(cache.drawn));
      damage(toRoot.apply(now));
    } else if (redrawn) {
      damage(childrenToRoot.apply(cache.drawnContent));
      damage(childrenToRoot.apply(contentExtents(cache)));
    }
    cache.drawn = now;
    cache.drawnContent = contentExtents(cache);
    cache.contentChanged = cache.placementChanged = false;
    cache.dirty = below;
  }

private:
  static CGRect contentExtents(const CALayer::Cache& cache) {
    return CGRectUnion(extents(cache.content), extents(cache.border));
  }

  static bool animatesContent(const CALayer& layer) {
    const auto bounds = layer.bounds();
    return layer.presented(LayerProperty::Bounds) != layerValue(bounds) ||
           layer.presented(LayerProperty::BackgroundColor) != layerValue(layer.backgroundColor()) ||
           layer.presented(LayerProperty::BorderColor) != layerValue(layer.borderColor()) ||
           layer.presented(LayerProperty::CornerRadius) != layerValue(layer.cornerRadius());
  }

  void vanish(CALayer& layer, const CGAffineTransform& toRoot) {
    CALayer::Cache& cache = layer.cache();
    damage(toRoot.apply(cache.drawn));
    cache.drawn = {};
    cache.placed = nullptr;
    cache.placementChanged = true; // to be placed anew when it shows again
    cache.dirty = false;
    // Only what fades in comes back by itself.
    if (!layer.isHidden() && layer.isAnimating(LayerProperty::Opacity)) frame.animating = true;
  }

  void damage(const CGRect& rect) {
    if (!rect.isEmpty()) frame.damage.push_back(rect);
  }

  static CGRect presentedBounds(const CALayer& layer) {
    const LayerValue b = layer.presented(LayerProperty::Bounds);
    return {b[0], b[1], b[2], b[3]};
  }

  void drawContent(CALayer& layer) {
    const CGRect bounds = presentedBounds(layer);
    const double radius = layer.presented(LayerProperty::CornerRadius)[0];
    GtkSnapshot* snapshot = gtk_snapshot_new();
    drawShadow(snapshot, layer, bounds, radius);
    DrawingContext::Native native{snapshot, scale_, layer.isAnimating(LayerProperty::Bounds),
                                  withCairo_};
    DrawingContext context(native);
    const LayerValue c = layer.presented(LayerProperty::BackgroundColor);
    context.fill(bounds, radius, CGColor{c[0], c[1], c[2], c[3]});
    drawPicture(context, snapshot, layer, bounds, radius);
    layer.draw(context);
    layer.cache().content = adopt(snapshot);
    layer.cache().border = drawBorder(layer, bounds, radius);
  }

  void drawShadow(GtkSnapshot* snapshot, const CALayer& layer, const CGRect& bounds,
                  double radius) const {
    if (layer.shadowOpacity() <= 0) return;
    const CALayer::RoundedRect shape =
        layer.shadowPath().value_or(CALayer::RoundedRect{bounds, radius});
    if (shape.rect.isEmpty()) return;
    CGColor color = layer.shadowColor();
    color.alpha *= layer.shadowOpacity();
    appendShadow(snapshot,
                 {shape.rect, shape.radius, color, layer.shadowOffset(), layer.shadowRadius()},
                 scale_);
  }

  void drawPicture(DrawingContext& context, GtkSnapshot* snapshot, const CALayer& layer,
                   const CGRect& bounds, double radius) const {
    if (!layer.contents() || bounds.isEmpty()) return;
    const CGImage& image = *layer.contents();
    const GskRoundedRect clip = toRounded(bounds, radius);
    gtk_snapshot_push_rounded_clip(snapshot, &clip);
    if (layer.contentsMirrored()) { // about the middle
      const graphene_point_t edges{float(2 * bounds.midX()), 0};
      gtk_snapshot_translate(snapshot, &edges);
      gtk_snapshot_scale(snapshot, -1, 1);
    }
    context.drawImage(image, placeContents(image, bounds, layer.contentsGravity(), scale_));
    gtk_snapshot_pop(snapshot);
  }

  static std::shared_ptr<void> drawBorder(const CALayer& layer, const CGRect& bounds,
                                          double radius) {
    if (layer.borderWidth() <= 0 || bounds.isEmpty()) return nullptr;
    const LayerValue c = layer.presented(LayerProperty::BorderColor);
    const GdkRGBA rgba = toGdk({c[0], c[1], c[2], c[3]});
    const GdkRGBA colors[] = {rgba, rgba, rgba, rgba};
    const auto width = float(layer.borderWidth());
    const float widths[] = {width, width, width, width};
    const GskRoundedRect outline = toRounded(bounds, radius);
    GtkSnapshot* snapshot = gtk_snapshot_new();
    gtk_snapshot_append_border(snapshot, &outline, widths, colors);
    return adopt(snapshot);
  }

  static std::shared_ptr<void> place(CALayer& layer, const CGAffineTransform& own) {
    const CALayer::Cache& cache = layer.cache();
    GtkSnapshot* snapshot = gtk_snapshot_new();
    GskTransform* transform = makeTransform(own);
    gtk_snapshot_transform(snapshot, transform);
    gsk_transform_unref(transform);
    const double opacity = layer.presentedOpacity();
    if (opacity < 1) gtk_snapshot_push_opacity(snapshot, opacity);
    if (layer.masksToBounds()) {
      const GskRoundedRect clip =
          toRounded(presentedBounds(layer), layer.presented(LayerProperty::CornerRadius)[0]);
      gtk_snapshot_push_rounded_clip(snapshot, &clip);
    }
    if (cache.content) gtk_snapshot_append_node(snapshot, nodeOf(cache.content));
    for (const auto& sublayer : layer.sublayers())
      if (sublayer->cache().placed)
        gtk_snapshot_append_node(snapshot, nodeOf(sublayer->cache().placed));
    if (cache.border) gtk_snapshot_append_node(snapshot, nodeOf(cache.border));
    if (layer.masksToBounds()) gtk_snapshot_pop(snapshot);
    if (opacity < 1) gtk_snapshot_pop(snapshot);
    return adopt(snapshot);
  }

  double scale_;
  bool withCairo_;
};

void addShadows(CALayer& layer, const CGAffineTransform& toRoot, const CGRect& area,
                CGRect& grown) {
  const CALayer::Cache& cache = layer.cache();
  if (!cache.placed) return;
  const CGAffineTransform own = layer.presentedTransformToSuperlayer().concatenating(toRoot);
  const CGRect content = own.apply(extents(cache.content));
  if (layer.shadowOpacity() > 0 && !CGRectIntersection(content, area).isEmpty())
    grown = CGRectUnion(grown, content);
  for (const auto& sublayer : layer.sublayers())
    addShadows(*sublayer, own, area, grown);
}

/// Draws a layer as its superlayer's coordinates have it.
void drawWithin(CALayer& layer, cairo_t* context, const CGRect& area) {
  const CALayer::Cache& cache = layer.cache();
  const auto isSeen = [](const CGRect& rect, const CGRect& in) {
    return !CGRectIntersection(rect, in).isEmpty();
  };
  if (!cache.placed || !isSeen(extents(cache.placed), area)) return;
  const CGAffineTransform own = layer.presentedTransformToSuperlayer();
  const bool moved = own.a == 1 && own.b == 0 && own.c == 0 && own.d == 1;
  const bool square = layer.presented(LayerProperty::CornerRadius)[0] <= 0;
  // What moves by itself has moved on since its node was placed.
  if (!moved || layer.hasAnimations() || layer.presentedOpacity() < 1 ||
      (layer.masksToBounds() && !square)) {
    gsk_render_node_draw(nodeOf(cache.placed), context); // in one piece
    return;
  }
  cairo_save(context);
  cairo_translate(context, float(own.tx), float(own.ty));
  const CGRect inner = area.offsetBy(-own.tx, -own.ty);
  if (layer.masksToBounds()) {
    const LayerValue b = layer.presented(LayerProperty::Bounds);
    cairo_rectangle(context, b[0], b[1], b[2], b[3]);
    cairo_clip(context);
  }
  if (isSeen(extents(cache.content), inner)) gsk_render_node_draw(nodeOf(cache.content), context);
  for (const auto& sublayer : layer.sublayers())
    drawWithin(*sublayer, context, inner);
  if (isSeen(extents(cache.border), inner)) gsk_render_node_draw(nodeOf(cache.border), context);
  cairo_restore(context);
}

} // namespace

CGRect LayerRenderer::areaWithShadows(CALayer& root, const CGRect& area) {
  CGRect grown = area;
  addShadows(root, {}, area, grown);
  return grown;
}

void LayerRenderer::draw(CALayer& root, cairo_t* context, const CGRect& area) {
  drawWithin(root, context, area);
}

LayerRenderer::Frame LayerRenderer::render(CALayer& root, double scale, bool withCairo) {
  Builder builder(scale, withCairo);
  builder.update(root, {});
  builder.frame.node = nodeOf(root.cache().placed);
  return std::move(builder.frame);
}

} // namespace zuvi
