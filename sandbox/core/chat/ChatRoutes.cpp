#include "sandbox/core/chat/ChatRoutes.h"

#include "sandbox/core/Embedded.h"
#include "sandbox/core/api/Operations.h"
#include "sandbox/core/text/Json.h"
#include "sandbox/core/text/PercentCoding.h"

#include <charconv>
#include <chrono>

namespace zuvi::sandbox {
namespace {

using namespace std::chrono_literals;

// How long an asking page waits for a line before it is told that there is none.
constexpr auto patience = 20s;
constexpr auto interval = 100ms;

constexpr auto contentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src 'self'; "
    "base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

Response jsonResponse(const Json& json) {
  Response response;
  response.body = jsonText(json);
  response.headers.emplace_back("Cache-Control", "no-store");
  return response;
}

Response shipped(const std::string& name, const std::string& type) {
  Response response;
  response.contentType = type + "; charset=utf-8";
  response.body = embeddedFile(name);
  response.headers.emplace_back("Content-Security-Policy", contentSecurityPolicy);
  response.headers.emplace_back("Cache-Control", "no-store");
  return response;
}

Json lineJson(const ChatLine& line) {
  return {{"number", line.number},
          {"id", line.id},
          {"author", line.author},
          {"text", line.text},
          {"time", line.time}};
}

Json linesJson(const std::vector<ChatLine>& lines) {
  Json list = Json::array();
  for (const ChatLine& line : lines)
    list.push_back(lineJson(line));
  return {{"lines", list}};
}

Json conversationJson(const ChatRoom::Conversation& conversation) {
  const ChatVisitor& visitor = conversation.visitor;
  Json lines = Json::array();
  for (const ChatLine& line : conversation.lines)
    lines.push_back(lineJson(line));
  return {{"visitor", visitor.id},
          {"name", visitor.name},
          {"email", visitor.email},
          {"group", visitor.group},
          {"lines", lines}};
}

ChatVisitor visitorOf(const Json& json) {
  const auto text = [&](const char* key) { return stringMember(json, key).value_or(""); };
  ChatVisitor visitor{text("visitor"), text("name"),  text("email"),
                      text("license"), text("group"), {}};
  if (const auto variables = json.find("variables");
      variables != json.end() && variables->is_object())
    for (const auto& [key, value] : variables->items())
      if (value.is_string()) visitor.variables.emplace_back(key, value.get<std::string>());
  return visitor;
}

Response outcome(const Result<Done>& result) {
  if (!result) return messageResponse(400, result.error().message);
  return jsonResponse(Json::object());
}

using Say = Result<Done> (ChatRoom::*)(const std::string&, const std::string&);

Response spoken(ChatRoom& room, Say say, const Request& request) {
  const auto json = parseJson(request.content());
  if (!json || !json->is_object()) return messageResponse(400, "the body is no JSON object");
  const auto visitor = stringMember(*json, "visitor"), text = stringMember(*json, "text");
  if (!visitor || !text) return messageResponse(400, "\"visitor\" or \"text\" is no string");
  return outcome((room.*say)(*visitor, *text));
}

/// Waits until there is a line after the one that the page has.
Response news(const ChatRoom& room, const Request& request) {
  const auto visitor = decodePercent(queryValue(request.query, "visitor").value_or(""));
  const auto after = queryValue(request.query, "after").value_or("0");
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(after.data(), after.data() + after.size(), number);
  if (!visitor || error != std::errc() || end != after.data() + after.size())
    return messageResponse(400, "\"after\" is no number");
  for (auto waited = 0ms; waited < patience; waited += interval) {
    const auto lines = room.linesAfter(*visitor, number);
    if (!lines) return messageResponse(404, "there is no such visitor");
    if (!lines->empty()) return jsonResponse(linesJson(*lines));
    if (!request.wait(interval)) break;
  }
  return jsonResponse(linesJson({}));
}

} // namespace

void addChatRoutes(Router& router, ChatRoom& room, std::function<std::string()> address) {
  const auto add = [&](const char* method, const char* path, std::string_view operation,
                       const RouteHandler& handler) {
    router.add({method, path, std::string(operation), handler});
  };
  add("GET", "/app/mobile/urls.json", operation::chatTemplate,
      [address = std::move(address)](const Request&, const PathArguments&) {
        const std::string whole = address();
        // The reader puts its own scheme in front.
        return jsonResponse({{"chat_url", whole.substr(whole.find("://") + 3) +
                                              "/chat/open?license={%license%}&group={%group%}"}});
      });
  add("GET", "/chat/open", operation::chatPage,
      [](const Request&, const PathArguments&) { return shipped("chat.html", "text/html"); });
  const auto ship = [&](const std::string& name, const std::string& type) {
    add("GET", ("/chat/" + name).c_str(), {},
        [name, type](const Request&, const PathArguments&) { return shipped(name, type); });
  };
  ship("chat.css", "text/css");
  ship("chat.js", "text/javascript");
  add("POST", "/chat/enter", operation::chatMessage,
      [&room](const Request& request, const PathArguments&) {
        const auto json = parseJson(request.content());
        if (!json || !json->is_object()) return messageResponse(400, "the body is no JSON object");
        return outcome(room.enter(visitorOf(*json)));
      });
  add("POST", "/chat/say", operation::chatMessage,
      [&room](const Request& request, const PathArguments&) {
        return spoken(room, &ChatRoom::visitorSays, request);
      });
  add("GET", "/chat/news", {},
      [&room](const Request& request, const PathArguments&) { return news(room, request); });
  add("GET", "/chat/conversations", {}, [&room](const Request&, const PathArguments&) {
    Json list = Json::array();
    for (const auto& conversation : room.conversations())
      list.push_back(conversationJson(conversation));
    return jsonResponse(list);
  });
  add("POST", "/chat/operator", {}, [&room](const Request& request, const PathArguments&) {
    return spoken(room, &ChatRoom::operatorSays, request);
  });
}

} // namespace zuvi::sandbox
