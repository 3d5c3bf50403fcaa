#pragma once

// What both sides of the comparison run in the page.

#include <string>

namespace zuvi::bench {

constexpr int pings = 200;
constexpr int flood = 10000;

/// Posts messages of those numbers, without the last.
inline std::string postScript(int first, int end) {
  return "for (let i = " + std::to_string(first) + "; i < " + std::to_string(end) +
         "; i++) window.webkit.messageHandlers.iosMobileWidget.postMessage({messageType: "
         "'newMessage', id: 'message-' + i, text: 'How can I help you?', timestamp: 1700000000000, "
         "author: {name: 'Support'}}); 0";
}

} // namespace zuvi::bench
