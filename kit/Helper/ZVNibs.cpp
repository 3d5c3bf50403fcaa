#include "kit/Helper/ZVNibs.h"

#include <ZuviSDK/UIKit/UINib.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/ZVBundle.h"
#include "kit/Helper/ZVCardGuideView.h"
#include "kit/Helper/ZVColumnView.h"
#include "kit/Helper/ZVField.h"
#include "kit/Helper/ZVGradientView.h"
#include "kit/Helper/ZVLocalization.h"
#include "kit/Helper/ZVPointView.h"

namespace zuvi {

namespace {

std::optional<std::string> nibValue(const std::string& attribute, const std::string& name) {
  // Where a file is missing the screens can still be used; a name missing in it is our mistake.
  const ZVLocalizationManager& texts = ZVLocalizationManager::shared();
  const Palette& palette = Palette::shared();
  for (const char* ofText : {"text", "title", "label", "placeholder"})
    if (attribute == ofText) return texts.isEmpty() ? name : texts.text(name);
  const auto color = palette.isEmpty() ? paletteColor(name) : palette.color(name);
  return color ? std::optional(textFromColor(*color)) : std::nullopt;
}

} // namespace

std::shared_ptr<const Bundle> zvNibBundle() {
  static const std::shared_ptr<const Bundle> bundle = [] {
    UINib::registerClass<ZVCardGuideView>("ZVCardGuideView");
    UINib::registerClass<ZVColumnView>("ZVColumnView");
    UINib::registerClass<ZVField>("ZVField");
    UINib::registerClass<ZVGradientView>("ZVGradientView");
    UINib::registerClass<ZVPointView>("ZVPointView");
    auto made = std::make_shared<Bundle>(*zvKitBundle());
    made->setNibValues(nibValue);
    return made;
  }();
  return bundle;
}

} // namespace zuvi
