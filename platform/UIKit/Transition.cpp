#include "platform/UIKit/Transition.h"

#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <memory>
#include <utility>

namespace zuvi {

std::function<void()> runTransition(bool animated, TimeInterval duration,
                                    const std::function<void()>& changes,
                                    std::function<void()> done) {
  if (!animated) {
    changes();
    done();
    return [] {};
  }
  UIApplication::shared().beginIgnoringInteractionEvents();
  auto pending = std::make_shared<std::function<void()>>(std::move(done));
  auto finish = [pending] {
    if (!*pending) return;
    const auto ended = std::exchange(*pending, nullptr);
    UIApplication::shared().endIgnoringInteractionEvents();
    ended();
  };
  AnimationCurve curve;
  curve.kind = AnimationCurve::Kind::Spring;
  UIView::animate(duration, 0, curve, changes, [finish](bool) { finish(); });
  return finish;
}

} // namespace zuvi
