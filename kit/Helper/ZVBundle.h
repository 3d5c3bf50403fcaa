#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>

namespace zuvi {

/// The kit's own resources, found relative to the kit's code.
std::shared_ptr<const Bundle> zvKitBundle();

/// Whether the kit's bundle gives the dark colours and pictures; light ones at start. Screens that
/// were made keep theirs.
/// @{
bool isDark();
void setDark(bool dark);
/// @}

} // namespace zuvi
