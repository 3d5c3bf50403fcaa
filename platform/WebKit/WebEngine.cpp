#include "platform/WebKit/WebEngine.h"

#include "platform/WebKit/MachineEngine.h"

#include <utility>

namespace zuvi {

namespace {

std::shared_ptr<WebEngine>& current() {
  // Never destroyed: pages that outlive `main` still find it.
  static auto* engine = new std::shared_ptr<WebEngine>;
  return *engine;
}

} // namespace

void WebEngine::install(std::shared_ptr<WebEngine> engine) {
  current() = std::move(engine);
}

WebEngine& WebEngine::installed() {
  static const auto* machine = new std::shared_ptr<WebEngine>(makeMachineEngine(webModulePath()));
  return current() ? *current() : **machine;
}

} // namespace zuvi
