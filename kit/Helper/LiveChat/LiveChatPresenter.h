#pragma once

#include <functional>

namespace zuvi {

/// How the flow opens the support chat. Main queue only.
class LiveChatPresenter {
public:
  virtual ~LiveChatPresenter() = default;
  virtual bool isChatPresented() const = 0;
  /// `completion` may be empty; it hears whether the chat came all the way in.
  virtual void presentChat(bool animated, std::function<void(bool finished)> completion) = 0;
};

} // namespace zuvi
