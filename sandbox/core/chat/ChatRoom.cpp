#include "sandbox/core/chat/ChatRoom.h"

#include "sandbox/core/text/Uuid.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zuvi::sandbox {
namespace {

// A chat that is left running must not eat the machine.
constexpr std::size_t mostVisitors = 200;
constexpr std::size_t mostLines = 500;
constexpr std::size_t longestText = 20'000; // bytes

bool isVisitorId(std::string_view id) {
  return !id.empty() && id.size() <= 64 && std::all_of(id.begin(), id.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
  });
}

std::int64_t now() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

void add(ChatRoom::Conversation& conversation, const std::string& author, const std::string& text) {
  conversation.lines.push_back({++conversation.lastNumber, newUuid(), author, text, now()});
  if (conversation.lines.size() > mostLines) conversation.lines.pop_front();
}

} // namespace

Result<Done> ChatRoom::enter(ChatVisitor visitor) {
  if (!isVisitorId(visitor.id)) return Error{"the visitor's id is none"};
  const std::lock_guard lock(mutex_);
  const auto known = conversations_.find(visitor.id);
  if (known != conversations_.end()) {
    known->second.visitor = std::move(visitor);
    return Done{};
  }
  if (conversations_.size() == mostVisitors) return Error{"too many visitors have come"};
  Conversation& conversation = conversations_[visitor.id];
  conversation.visitor = std::move(visitor);
  const std::string& name = conversation.visitor.name;
  add(conversation, "Sandbox",
      "Hello" + (name.empty() ? "" : " " + name) + ". Write something and I shall answer.");
  return Done{};
}

Result<Done> ChatRoom::visitorSays(const std::string& visitorId, const std::string& text) {
  return say(visitorId, text, {{"", text}, {"Sandbox", "You wrote: " + text}});
}

Result<Done> ChatRoom::operatorSays(const std::string& visitorId, const std::string& text) {
  return say(visitorId, text, {{"Operator", text}});
}

Result<Done>
ChatRoom::say(const std::string& visitorId, const std::string& text,
              const std::vector<std::pair<std::string, std::string>>& authorsAndTexts) {
  if (text.empty()) return Error{"the message is empty"};
  if (text.size() > longestText) return Error{"the message is too long"};
  const std::lock_guard lock(mutex_);
  const auto known = conversations_.find(visitorId);
  if (known == conversations_.end()) return Error{"there is no such visitor"};
  for (const auto& [author, line] : authorsAndTexts)
    add(known->second, author, line);
  return Done{};
}

std::optional<std::vector<ChatLine>> ChatRoom::linesAfter(const std::string& visitorId,
                                                          std::uint64_t number) const {
  const std::lock_guard lock(mutex_);
  const auto known = conversations_.find(visitorId);
  if (known == conversations_.end()) return std::nullopt;
  std::vector<ChatLine> lines;
  for (const ChatLine& line : known->second.lines)
    if (line.number > number) lines.push_back(line);
  return lines;
}

std::vector<ChatRoom::Conversation> ChatRoom::conversations() const {
  const std::lock_guard lock(mutex_);
  std::vector<Conversation> all;
  all.reserve(conversations_.size());
  for (const auto& [id, conversation] : conversations_)
    all.push_back(conversation);
  return all;
}

} // namespace zuvi::sandbox
