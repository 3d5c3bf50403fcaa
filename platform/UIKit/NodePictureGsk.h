#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/CoreGraphics/CGImage.h>

#include <memory>

#include <gtk/gtk.h>

namespace zuvi {

/// A surface of that size in points, on which a point is `scale` pixels wide.
cairo_surface_t* makeSurface(CGSize size, double scale);

std::shared_ptr<const CGImage> imageOf(cairo_surface_t* surface);

/// What a node draws from the origin to `size` (points); null draws nothing.
std::shared_ptr<const CGImage> pictureOfNode(GskRenderNode* node, CGSize size, double scale);

} // namespace zuvi
