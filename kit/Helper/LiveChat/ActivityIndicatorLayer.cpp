#include "kit/Helper/LiveChat/ActivityIndicatorLayer.h"

#include "kit/Helper/LiveChat/LoadingViewDrawing.h"

#include <numbers>
#include <utility>

namespace zuvi {

namespace {

std::shared_ptr<CAShapeLayer> filled(const CGColor& color) {
  auto layer = std::make_shared<CAShapeLayer>();
  layer->setFillColor(color);
  return layer;
}

} // namespace

ActivityIndicatorLayer::ActivityIndicatorLayer()
    : darkCircleLayer_(filled({0.392, 0.439, 0.498, 1})),
      lightCircleLayer_(filled({0.824, 0.855, 0.89, 1})), maskingLayer_(filled(CGColor::white())),
      outMaskingLayer_(filled(CGColor::clear())),
      darkGreyCirclePath_(CGPath::ellipse({0, 0, 60, 60})),
      maskingCirclePath_(CGPath::ellipse({6, 6, 48, 48})),
      outMaskingCirclePath_(CGPath::ellipse({0, 0, 60, 60})) {
  constexpr double pi = std::numbers::pi;
  lightGrayCirclePath_.arc({30, 30}, 30, -pi / 4, 2 * pi - 3 * pi / 4);
  lightGrayCirclePath_.lineTo({30, 30});
  lightGrayCirclePath_.close();
  // Hides the rough edge that the two discs leave.
  outMaskingLayer_->setStrokeColor(CGColor::white());
  outMaskingLayer_->setLineWidth(1.0);
  for (const auto& layer : {darkCircleLayer_, lightCircleLayer_, maskingLayer_, outMaskingLayer_})
    addSublayer(layer);
}

void ActivityIndicatorLayer::layoutSublayers() {
  const std::pair<CAShapeLayer&, const CGPath&> circles[] = {
      {*darkCircleLayer_, darkGreyCirclePath_},
      {*lightCircleLayer_, lightGrayCirclePath_},
      {*maskingLayer_, maskingCirclePath_},
      {*outMaskingLayer_, outMaskingCirclePath_}};
  for (const auto& [layer, path] : circles) {
    layer.setFrame(bounds());
    applyScaled(layer, path, baseSize);
  }
}

} // namespace zuvi
