#include "kit/Main/Public/ZVKYC.h"

#include "kit/Main/Private/ZVKYCHelper.h"

#include <utility>

namespace zuvi {

ZVKYC::ZVKYC() : helper_(ZVKYCHelper::instance()) {}

ZVKYC& ZVKYC::instance() {
  // Never destroyed: screens may outlive `main`.
  static auto* instance = new ZVKYC;
  return *instance;
}

void ZVKYC::registerWithClientId(const std::string& clientId,
                                 std::optional<Value::Dictionary> metadata) {
  ZVKYC& kit = instance();
  kit.helper_.clinetId = clientId;
  kit.metadata = std::move(metadata);
}

} // namespace zuvi
