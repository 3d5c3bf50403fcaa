#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>

namespace zuvi {

/// The kit's bundle for nibs: they are made in the language of the kit's texts. The first call
/// registers the small view classes that they name; screens register their own.
std::shared_ptr<const Bundle> zvNibBundle();

} // namespace zuvi
