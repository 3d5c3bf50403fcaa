#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>

namespace zuvi {

/// The kit's own resources, found relative to the kit's code.
std::shared_ptr<const Bundle> zvKitBundle();

} // namespace zuvi
