#pragma once

#include <ZuviSDK/Foundation/Timer.h>
#include <ZuviSDK/LiveChatDelegate.h>

#include <functional>
#include <memory>
#include <string>

namespace zuvi::demo {

/// Tells what the support chat does, and stands between it and whom it belongs to: everything that
/// it hears goes on to the delegate that was set before it.
class ChatWatcher final : public LiveChatDelegate,
                          public std::enable_shared_from_this<ChatWatcher> {
public:
  struct Hooks {
    std::function<void(bool presented)> stateChanged;
    std::function<void(const LiveChatMessage& message)> received;
    /// The chat has a delegate that it did not have before: it was configured anew.
    std::function<void()> configured;
  };
  explicit ChatWatcher(Hooks hooks) : hooks_(std::move(hooks)) {}
  /// Begins to look; the watcher is held by a `shared_ptr`.
  void start();

  void received(const LiveChatMessage& message) override;
  void handleURL(const URL& url) override;
  void chatPresented() override;
  void chatDismissed() override;

private:
  void look();

  Hooks hooks_;
  std::weak_ptr<LiveChatDelegate> owner_;
  bool presented_ = false;
  std::shared_ptr<Timer> timer_;
};

} // namespace zuvi::demo
