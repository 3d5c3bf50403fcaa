#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>

namespace zuvi {

/// The kit's bundle for nibs: "@name" in them is a text of Localization.plist (in `text`, `title`,
/// `label` and `placeholder`) or a colour of Palette.plist. The first call registers the small view
/// classes that nibs name; screens register their own.
std::shared_ptr<const Bundle> zvNibBundle();

} // namespace zuvi
