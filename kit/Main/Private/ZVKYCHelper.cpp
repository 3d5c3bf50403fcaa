#include "kit/Main/Private/ZVKYCHelper.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYC.h>
#include "kit/Helper/ZVExtensions.h"
#include "kit/Manager/ZVKYCManager.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "platform/AVFoundation/FilmFile.h"
#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/Foundation/FileManager.h"

#include <algorithm>
#include <cstdio>

namespace zuvi {

ZVKYCHelper::ZVKYCHelper()
    : merchant(std::make_shared<ZVKYCMerchant>()), rootVC(make<ZVRootViewController>()),
      clinetId(std::nullopt, [this] { clientIdChanged(); }) {}

ZVKYCHelper& ZVKYCHelper::instance() {
  static auto* instance = new ZVKYCHelper;
  return *instance;
}

const std::optional<Value::Dictionary>& ZVKYCHelper::metadata() const {
  return ZVKYC::instance().metadata;
}

const std::optional<std::string>& ZVKYCHelper::identity() const {
  return ZVKYC::instance().identityId;
}

void ZVKYCHelper::clientIdChanged() {
  if (!*clinetId) return;
  registerZVFonts();
  // If the program was killed, it may have left a film.
  DispatchQueue::global().async([folders = FileManager::documentsDirectories()] {
    std::for_each(folders.begin(), folders.end(), FilmFile::removeAbandoned);
  });
  CTTelephonyNetworkInfo().subscriberCellularProvider(); // so that the first event has it
  ZVKYCManager::shared().networkManager.serverURL = ZVEndpoints::serverURL();
  ZVKYCManager::shared().authorization = "Bearer " + **clinetId;
  if (const auto problem = ZVKYCManager::shared().networkManager.refusal())
    std::fprintf(stderr, "ZuviSDK: Nothing can be sent to the back end: %s.\n",
                 problem->description.c_str());
  ZVKYCManager::shared().getMerchant([this](const std::shared_ptr<const ZVKYCMerchant>& answer) {
    if (answer) merchant = answer;
    NotificationCenter::defaultCenter().post(merchantUpdatedNotification);
  });
}

void ZVKYCHelper::success() {
  const auto id = identity() ? identity() : tempIdentity; // a copy: the host may change its own
  if (!id) return;
  if (const auto delegate = ZVKYC::instance().delegate.lock()) delegate->zvKYCLoginSuccess(*id);
}

void ZVKYCHelper::cancelled() {
  if (const auto delegate = ZVKYC::instance().delegate.lock()) delegate->zvKYCLoginCancelled();
}

} // namespace zuvi
