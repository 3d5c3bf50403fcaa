#pragma once

#include "platform/WebKit/WebEngine.h"

#include <memory>
#include <string>

namespace zuvi {

/// Where the module with the machine's browser engine lies; empty when there is none.
std::string webModulePath();

/// The browser engine of the machine. Its module is loaded when it is first needed.
std::shared_ptr<WebEngine> makeMachineEngine(const std::string& module);

} // namespace zuvi
