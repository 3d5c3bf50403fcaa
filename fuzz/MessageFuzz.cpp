// What the chat's page posts, of any shape.

#include <ZuviSDK/LiveChatMessage.h>
#include "fuzz/Json.h"
#include "kit/Helper/LiveChat/WebViewBridge.h"

#include <cstdio>

using namespace zuvi;

namespace {
class Listener final : public WebViewBridgeDelegate {
public:
  void received(const LiveChatMessage& message) override {
    fuzz::expect(valueForKey(message.rawMessage, "messageType") != nullptr);
    messages++;
  }
  void hideChatWindow() override { hidden++; }
  int messages = 0, hidden = 0;
};
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  return std::freopen("/dev/null", "w", stdout) ? 0 : 1; // each wrong message prints a line
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const auto message = fuzz::objectOf(bytes, size);
  if (!message) return 0;
  const auto listener = std::make_shared<Listener>();
  WebViewBridge bridge;
  bridge.delegate = listener;
  bridge.postFocusEvent();
  bridge.handle(*message);
  bridge.handle(*message);
  fuzz::expect(listener->messages + listener->hidden <= 2);
  return 0;
}
