// Nibs, of any bytes: made, connected, laid out and drawn.

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UINib.h>
#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "fuzz/Json.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/support/TemporaryFolder.h"

using namespace zuvi;

/// It keeps offsets in place of pointers, which the leak check can't follow.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const test::TemporaryFolder folder;
  static const auto bundle = std::make_shared<Bundle>(folder.path());
  static VirtualTime time;
  static OffscreenSurface surface({100, 100}, 1);
  static const auto window = make<UIWindow>();

  folder.write("Fuzz.xml", fuzz::textOf(bytes, size));
  std::weak_ptr<UIView> box;
  NibDeclaration owner;
  owner.outlet("box", box);
  owner.action("tap", [] {});
  const UINib::Result result = UINib("Fuzz", bundle).instantiate(std::move(owner));
  fuzz::expect(result.view ? !box.expired() : !result.error.empty());
  if (!result.view) return 0;
  const auto controller = make<UIViewController>();
  controller->setView(result.view);
  window->setRootViewController(controller);
  window->setVisible(true);
  time.advance(0.05);
  surface.drawFrame();
  window->setRootViewController(nullptr);
  return 0;
}
