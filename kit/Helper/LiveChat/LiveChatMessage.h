#pragma once

#include <string>

namespace zuvi {

/// A message that came from the support chat while nobody was looking.
struct LiveChatMessage {
  std::string id;
  std::string text;
};

} // namespace zuvi
