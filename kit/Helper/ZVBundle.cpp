#include "kit/Helper/ZVBundle.h"

#include <ZuviSDK/UIKit/UINib.h>
#include "kit/Helper/ZVCardGuideView.h"
#include "kit/Helper/ZVColumnView.h"
#include "kit/Helper/ZVField.h"
#include "kit/Helper/ZVGradientView.h"
#include "kit/Helper/ZVPointView.h"
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/Views/ZVDocumentButton.h"
#include "kit/UI/Views/ZVDocumentTableViewCell.h"
#include "platform/Foundation/ProcessInfo.h"

#include <filesystem>

namespace zuvi {

namespace {

std::string bundleFolder() {
  const std::filesystem::path code =
      ProcessInfo::folderOfCode(reinterpret_cast<const void*>(&bundleFolder));
  for (const std::filesystem::path& place :
       {code / "ZuviSDK.bundle", code / "../share/zuvisdk/ZuviSDK.bundle",
        code / "../../share/zuvisdk/ZuviSDK.bundle"}) { // from lib/ARCHITECTURE
    std::error_code failed;
    if (std::filesystem::is_directory(place, failed)) return place.string();
  }
  return (code / "ZuviSDK.bundle").string();
}

} // namespace

std::shared_ptr<const Bundle> zvKitBundle() {
  static const std::shared_ptr<const Bundle> bundle = [] {
    UINib::registerClass<ZVDocumentButton>("ZVDocumentButton");
    UINib::registerClass<ZVDocumentTableViewCell>("ZVDocumentTableViewCell");
    UINib::registerClass<ZVField>("ZVField");
    UINib::registerClass<ZVGradientView>("ZVGradientView");
    UINib::registerClass<ZVCardGuideView>("ZVCardGuideView");
    UINib::registerClass<ZVColumnView>("ZVColumnView");
    UINib::registerClass<ZVPointView>("ZVPointView");
    auto made = std::make_shared<Bundle>(bundleFolder());
    made->setLanguage([] { return rawValue(ZVKYCHelper::instance().merchant->currentLanguage); });
    return made;
  }();
  return bundle;
}

} // namespace zuvi
