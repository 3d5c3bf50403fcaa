#include <ZuviSDK/ZVKYC.h>

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/UIKit/UINib.h>
#include <ZuviSDK/ZVKYCButton.h>
#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/Dispatch/AssertMainQueue.h"
#include "platform/UIKit/DesktopStyle.h"

#include <utility>

namespace zuvi {

// A host's nib may name the button before the host calls the kit. The registration is here because
// every host links this file.
[[maybe_unused]] static const bool buttonIsKnown =
    (UINib::registerClass<ZVKYCButton>("ZVKYCButton"), true);

ZVKYC::ZVKYC() : helper_(ZVKYCHelper::instance()) {
  helper_.connect({delegate, metadata, identityId, textsFile, language, userInterfaceStyle},
                  make<ZVRootViewController>());
  desktopStyle(); // so that the desktop has answered before a run
  ZVAnalyticsManager::setListener(
      [this](const std::string& event, const Value::Dictionary& properties) {
        if (const auto listener = eventListener)
          listener(event, properties); // it may replace itself
      });
}

ZVKYC& ZVKYC::instance() {
  assertMainQueue("ZVKYC");
  // Never destroyed: screens may outlive `main`.
  static auto* instance = new ZVKYC;
  return *instance;
}

void ZVKYC::registerWithClientId(const std::string& clientId,
                                 std::optional<Value::Dictionary> metadata) {
  ZVKYC& kit = instance();
  MainLoop::attach(); // so that the answer is read before a run
  kit.helper_.clinetId = clientId;
  kit.metadata = std::move(metadata);
}

} // namespace zuvi
