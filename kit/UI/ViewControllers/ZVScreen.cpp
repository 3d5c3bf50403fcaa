#include "kit/UI/ViewControllers/ZVScreen.h"

#include "kit/Helper/ZVBundle.h"
#include "kit/Main/Private/ZVKYCHelper.h"

namespace zuvi {

ZVScreen::ZVScreen(const char* name) : UIViewController(name, zvKitBundle()) {}

ZVRootViewController& ZVScreen::shell() { return *ZVKYCHelper::instance().rootVC; }

} // namespace zuvi
