#pragma once

#include "platform/Foundation/Date.h"
#include "platform/Foundation/Value.h"

#include <string>

namespace zuvi {

/// A message that came from the support chat. Never changes once made.
struct LiveChatMessage {
  const std::string id;
  const std::string text;
  const Date date;
  const std::string authorName;
  const Value::Dictionary rawMessage; ///< as the page posted it
};

} // namespace zuvi
