#pragma once

#include <ZuviSDK/UIKit/UIUserInterfaceStyle.h>

namespace zuvi {

/// Light or dark, as the desktop's portal and the toolkit's settings ask. The first call begins to
/// follow the portal; until its first answer only the settings count. Main queue only.
UIUserInterfaceStyle desktopStyle();

} // namespace zuvi
