#pragma once

#include <ZuviSDK/Foundation/Date.h>
#include <ZuviSDK/Foundation/Value.h>

#include <string>

namespace zuvi {

/// A message that came from the support chat. Never changes once made.
struct LiveChatMessage {
  const std::string id;               ///< from the page; an id is reported once
  const std::string text;             ///< may be empty
  const Date date;                    ///< when it was sent
  const std::string authorName;       ///< who wrote it
  const Value::Dictionary rawMessage; ///< as the page posted it
};

} // namespace zuvi
