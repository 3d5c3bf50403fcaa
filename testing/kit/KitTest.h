#pragma once

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYC.h>
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/Manager/ZVKYCManager.h"
#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/CoreTelephony/CarrierProvider.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/UIKit/OffscreenSurface.h"
#include "testing/AVFoundation/ScriptedCamera.h"
#include "testing/Dispatch/VirtualTime.h"
#include "testing/WebKit/ScriptedWebEngine.h"
#include "testing/support/TemporaryFolder.h"
#include "tests/kit/Backend.h"

#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zuvi {

struct RecordingDelegate final : ZVKYCDelegate {
  std::vector<std::string> calls;
  std::function<void()> told = [] {}; ///< runs at each call
  void zvKYCLoginSuccess(const std::string& id) override { note("success " + id); }
  void zvKYCLoginCancelled() override { note("cancelled"); }

private:
  void note(const std::string& call) {
    calls.push_back(call);
    told();
  }
};

struct SpeakingSurface final : OffscreenSurface {
  using OffscreenSurface::OffscreenSurface;
  std::string spoken; ///< what was announced last
  void announce(const std::string& text) override { spoken = text; }
};

struct ScriptedCarrier final : CarrierProvider {
  std::optional<CTCarrier> carrier;
  std::optional<CTCarrier> subscriberCellularProvider() override { return carrier; }
};

/// The kit as a host finds it at its start, on a screen in memory, cameras that obey and a back end
/// of the test's own.
class KitTest : public testing::Test {
protected:
  KitTest() {
    FileManager::setDocumentsDirectory(documents);
    AVCaptureDevice::setProvider(cameras);
    CTTelephonyNetworkInfo::setCarrierProvider(carrier);
    WebEngine::install(browser);
    UIApplication::shared().setURLOpener([this](const URL& url) {
      opened.push_back(url.absoluteString());
      return true;
    });
    setPrintListener([this](const std::string& line) {
      const std::lock_guard lock(printMutex);
      printed.push_back(line);
    });
    Bundle::main().setInfoDictionary(
        {{"CFBundleVersion", "42"}, {"CFBundleShortVersionString", "1.5"}});
    useServer(backend.url());
    ZVKYCHelper& helper = ZVKYCHelper::instance();
    helper.merchant = std::make_shared<ZVKYCMerchant>();
    helper.tempIdentity = std::nullopt;
    helper.supportMessages.clear();
    helper.clinetId = std::nullopt;
    ZVKYCManager::shared().authorization = std::nullopt;
    ZVKYC::instance().delegate = delegate;
    ZVKYC::instance().metadata = std::nullopt;
    ZVKYC::instance().identityId = std::nullopt;
    ZVKYC::instance().textsFile = ZVKYC::instance().language = "";
    ZVKYC::instance().userInterfaceStyle = UIUserInterfaceStyle::Light; // whatever the desktop says
  }

  ~KitTest() override {
    AVCaptureDevice::setProvider(nullptr);
    CTTelephonyNetworkInfo::setCarrierProvider(nullptr);
    WebEngine::install(nullptr);
    UIApplication::shared().setURLOpener(nullptr);
    setPrintListener(nullptr);
    FileManager::setDocumentsDirectory(std::nullopt);
  }

  /// Nothing may be left behind, whatever the test did.
  void TearDown() override {
    backend.release();
    time.advance(10);
    EXPECT_TRUE(std::isinf(DispatchQueue::main().nextDeadline())) << "a timer is left";
    std::error_code none;
    const std::filesystem::directory_iterator files(documents, none);
    EXPECT_TRUE(files == end(files)) << "left in the documents: " << files->path();
    EXPECT_FALSE(front->isRunning() || back->isRunning()) << "a camera runs";
  }

  static void useServer(const std::string& address) {
    ZVEndpoints::serverURL() = address;
    ZVEndpoints::trackingURL() = address + "track/";
    ZVEndpoints::chatTemplateURL() = ""; // the chat asks nobody
    ZVKYCManager::shared().networkManager.serverURL = address;
  }

  /// Registers and waits for the answer.
  void registerClient(const std::string& clientId,
                      const std::optional<Value::Dictionary>& metadata = std::nullopt) {
    int updates = 0;
    const auto observer = NotificationCenter::defaultCenter().observe(
        merchantUpdatedNotification, [&](const Notification&) { updates++; });
    ZVKYC::registerWithClientId(clientId, metadata);
    EXPECT_TRUE(time.waitUntil([&] { return updates == 1; }));
  }

  static ZVKYCManager& manager() { return ZVKYCManager::shared(); }
  static ZVKYCNetworkManager& transport() { return ZVKYCManager::shared().networkManager; }
  static Value::Dictionary dictionary(const std::string& json) {
    const auto value = JSONSerialization::jsonObject(json);
    return value && value->dictionary() ? *value->dictionary() : Value::Dictionary{};
  }

  /// The chat, and the page in it, live as long as the process.
  inline static const auto browser = std::make_shared<test::ScriptedWebEngine>();
  VirtualTime time;
  test::TemporaryFolder folder;
  const std::string documents = folder.path("documents");
  SpeakingSurface surface{{375, 812}, 2, {44, 0, 34, 0}};
  std::shared_ptr<ScriptedCameraProvider> cameras = make<ScriptedCameraProvider>();
  const std::shared_ptr<ScriptedCamera> front = cameras->front, back = cameras->back;
  std::shared_ptr<ScriptedCarrier> carrier = make<ScriptedCarrier>();
  std::shared_ptr<RecordingDelegate> delegate = make<RecordingDelegate>();
  std::vector<std::string> opened; ///< addresses that the kit had opened
  std::mutex printMutex;
  std::vector<std::string> printed;
  Backend backend;
};

} // namespace zuvi
