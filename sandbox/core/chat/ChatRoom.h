#pragma once

#include "sandbox/core/Result.h"
#include "sandbox/core/store/Records.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

/// One line of a conversation.
struct ChatLine {
  std::uint64_t number = 0; ///< counts up in one conversation
  std::string id;
  std::string author; ///< empty: the visitor
  std::string text;
  std::int64_t time = 0; ///< milliseconds since 1970
};

/// Who has the chat open, as the page says it.
struct ChatVisitor {
  std::string id;
  std::string name;
  std::string email;
  std::string license;
  std::string group;
  Metadata variables;
};

/// The conversations of a run. They are kept in memory only. Safe on every thread.
class ChatRoom {
public:
  struct Conversation {
    ChatVisitor visitor;
    std::deque<ChatLine> lines;
    std::uint64_t lastNumber = 0;
  };

  /// Makes the conversation, or takes over what the page says anew of its visitor.
  Result<Done> enter(ChatVisitor visitor);
  /// What the visitor says, and what the sandbox answers.
  Result<Done> visitorSays(const std::string& visitorId, const std::string& text);
  Result<Done> operatorSays(const std::string& visitorId, const std::string& text);

  /// The lines after that number; absent when nobody of that id has come.
  std::optional<std::vector<ChatLine>> linesAfter(const std::string& visitorId,
                                                  std::uint64_t number) const;
  /// In the order of their ids.
  std::vector<Conversation> conversations() const;

private:
  Result<Done> say(const std::string& visitorId, const std::string& text,
                   const std::vector<std::pair<std::string, std::string>>& authorsAndTexts);

  mutable std::mutex mutex_;
  std::map<std::string, Conversation> conversations_;
};

} // namespace zuvi::sandbox
