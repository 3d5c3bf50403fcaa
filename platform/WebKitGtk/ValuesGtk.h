#pragma once

#include <ZuviSDK/Foundation/Value.h>
#include "platform/WebKit/WebModuleGtk.h"

#include <optional>

#include <jsc/jsc.h>

namespace zuvi {

/// What a page handed out. `undefined` is null; absent: it has no form in `Value`.
std::optional<Value> valueOf(JSCValue& value, WebModuleHost& host);

} // namespace zuvi
