#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>

namespace zuvi {

/// The kit's own resources, wherever the kit lies. The kit's view classes are known to nibs once
/// this was called.
std::shared_ptr<const Bundle> zvKitBundle();

} // namespace zuvi
