#pragma once

#include <ZuviSDK/Foundation/Date.h>
#include <ZuviSDK/Foundation/Value.h>

#include <string>

namespace zuvi {

/// A message that came from the support chat. Never changes once made.
struct LiveChatMessage {
  const std::string id;               ///< the page's own; a message is told once by it
  const std::string text;             ///< what it says; may be empty
  const Date date;                    ///< when it was sent
  const std::string authorName;       ///< who wrote it
  const Value::Dictionary rawMessage; ///< as the page posted it
};

} // namespace zuvi
