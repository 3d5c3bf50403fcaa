#include "kit/Helper/ZVNibs.h"

#include <ZuviSDK/UIKit/UINib.h>
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVCardGuideView.h"
#include "kit/Helper/ZVColumnView.h"
#include "kit/Helper/ZVField.h"
#include "kit/Helper/ZVGradientView.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVPointView.h"

namespace zuvi {

std::shared_ptr<const Bundle> zvNibBundle() {
  static const std::shared_ptr<const Bundle> bundle = [] {
    UINib::registerClass<ZVCardGuideView>("ZVCardGuideView");
    UINib::registerClass<ZVColumnView>("ZVColumnView");
    UINib::registerClass<ZVField>("ZVField");
    UINib::registerClass<ZVGradientView>("ZVGradientView");
    UINib::registerClass<ZVPointView>("ZVPointView");
    auto made = std::make_shared<Bundle>(zvKitBundle()->folder());
    made->setLanguage([] { return rawValue(textLanguage()); });
    return made;
  }();
  return bundle;
}

} // namespace zuvi
