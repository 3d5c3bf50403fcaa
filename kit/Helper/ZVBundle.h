#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>

namespace zuvi {

/// The kit's own resources, found relative to the kit's code. The first call also registers the
/// kit's view classes for nibs.
std::shared_ptr<const Bundle> zvKitBundle();

} // namespace zuvi
