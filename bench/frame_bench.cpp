// One frame of each screen at 375 x 812 points, scale 2, without a display: drawn whole, and after
// one label changed. Processor time of one core. The baseline is filling as many pixels.

#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "bench/Measure.h"
#include "kit/Helper/ZVExtensions.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVDocumentListViewController.h"
#include "kit/UI/ViewControllers/ZVKYCCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLiveCameraViewController.h"
#include "kit/UI/ViewControllers/ZVLivenessVerifyViewController.h"
#include "kit/UI/ViewControllers/ZVMainViewController.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVUploadViewController.h"
#include "kit/UI/ViewControllers/ZVVerifiedViewController.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "testing/AVFoundation/ScriptedCamera.h"
#include "testing/Dispatch/VirtualTime.h"

#include <cstring>
#include <memory>

using namespace zuvi;
using namespace zuvi::bench;

namespace {

constexpr int rounds = 60;

void measure(const char* name, const std::shared_ptr<UIViewController>& step, VirtualTime& time,
             OffscreenSurface& surface, const Figures& baseline) {
  const auto shell = make<ZVRootViewController>();
  ZVKYCHelper::instance().rootVC = shell;
  const auto window = make<UIWindow>();
  window->setRootViewController(shell);
  window->makeKeyAndVisible();
  if (step) shell->mainNC()->pushViewController(step, false);
  time.advance(4); // outlines have faded, movements have ended
  surface.drawFrame();

  std::vector<double> whole, label;
  for (int i = 0; i < rounds; i++) {
    UIScreen::main().addDamage(UIScreen::main().bounds());
    window->layer()->setNeedsDisplay();
    double start = processorSeconds();
    surface.drawFrame();
    whole.push_back(processorSeconds() - start);
    shell->titleText = "Another title " + std::to_string(i) + ".";
    start = processorSeconds();
    surface.drawFrame();
    label.push_back(processorSeconds() - start);
  }
  // A turning spinner moves by itself; everything else stands still.
  int frames = 0;
  for (int i = 0; i < 30; i++) {
    time.advance(1.0 / 30);
    frames += surface.drawFrame();
  }
  report((std::string(name) + ", whole").c_str(), figuresOf(whole), &baseline);
  report((std::string(name) + ", one label").c_str(), figuresOf(label), &baseline);
  std::printf("%-44s %d frames in a second in which nothing changes\n", name, frames);
  window->setVisible(false);
}

} // namespace

int main() {
  VirtualTime time;
  OffscreenSurface surface({375, 812}, 2);
  AVCaptureDevice::setProvider(std::make_shared<ScriptedCameraProvider>());
  registerZVFonts();
  auto merchant = std::make_shared<ZVKYCMerchant>();
  merchant->optionalDocuments = {ZVDocument::passport, ZVDocument::drivingLicense,
                                 ZVDocument::proofOfResidency};
  ZVKYCHelper::instance().merchant = merchant;

  std::vector<double> fills;
  std::vector<unsigned char> from(750ul * 1624 * 4, 7), to(from.size());
  for (int i = 0; i < rounds; i++) {
    const double start = processorSeconds();
    std::memcpy(to.data(), from.data(), from.size());
    fills.push_back(processorSeconds() - start);
  }
  const Figures baseline = figuresOf(fills);
  report("memcpy of one frame's pixels", baseline);

  const auto camera = make<ZVKYCCameraViewController>();
  camera->type = ZVKYCCameraType::ineFront;
  camera->objectId = "1";
  const auto upload = make<ZVUploadViewController>();
  upload->video = Data(std::string("film"));
  measure("start", nullptr, time, surface, baseline);
  measure("recorder", make<ZVLiveCameraViewController>(), time, surface, baseline);
  measure("review", make<ZVLivenessVerifyViewController>(), time, surface, baseline);
  measure("upload", upload, time, surface, baseline);
  measure("document camera", camera, time, surface, baseline);
  measure("document list", make<ZVDocumentListViewController>(), time, surface, baseline);
  measure("finish", make<ZVVerifiedViewController>(), time, surface, baseline);
}
