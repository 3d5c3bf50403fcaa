#include "kit/Main/Private/ZVKYCHelper.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/NotificationCenter.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYCDelegate.h>
#include "kit/Helper/ZVExtensions.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Manager/ZVKYCManager.h"
#include "platform/AVFoundation/FilmFile.h"
#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/Foundation/FileManager.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace zuvi {

ZVKYCHelper::ZVKYCHelper()
    : merchant(std::make_shared<ZVKYCMerchant>()),
      clinetId(std::nullopt, [this] { clientIdChanged(); }) {
  setTextLanguage([this] {
    std::string hosts = language();
    return hosts.empty() ? std::string(rawValue(merchant->currentLanguage)) : hosts;
  });
  setHostTexts([this] { return textsFile(); });
  ZVKYCManager::setMetadataSource([this] { return metadata(); });
}

ZVKYCHelper& ZVKYCHelper::instance() {
  static auto* instance = new ZVKYCHelper;
  return *instance;
}

void ZVKYCHelper::connect(const Host& host, std::shared_ptr<ZVRootViewController> firstShell) {
  host_.emplace(host);
  rootVC = std::move(firstShell);
}

std::optional<Value::Dictionary> ZVKYCHelper::metadata() const {
  return host_ ? host_->metadata : std::nullopt;
}

std::optional<std::string> ZVKYCHelper::identity() const {
  return host_ ? host_->identityId : std::nullopt;
}

std::string ZVKYCHelper::textsFile() const {
  return host_ ? host_->textsFile : "";
}

std::string ZVKYCHelper::language() const {
  return host_ ? host_->language : "";
}

UIUserInterfaceStyle ZVKYCHelper::style() const {
  return host_ ? host_->style : UIUserInterfaceStyle::Unspecified;
}

std::shared_ptr<ZVKYCDelegate> ZVKYCHelper::delegate() const {
  return host_ ? host_->delegate.lock() : nullptr;
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
  const auto own = identity();
  const auto id = own ? own : tempIdentity;
  if (!id) return;
  if (const auto call = ended) call(id); // a copy: it may remove itself
  if (const auto listener = delegate()) listener->zvKYCLoginSuccess(*id);
}

void ZVKYCHelper::cancelled() {
  if (const auto call = ended) call(std::nullopt);
  if (const auto listener = delegate()) listener->zvKYCLoginCancelled();
}

} // namespace zuvi
