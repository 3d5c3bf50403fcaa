#include "sandbox/core/page/ArrivalsHtml.h"

#include "sandbox/core/page/Html.h"
#include "sandbox/core/page/Words.h"
#include "sandbox/core/text/Json.h"

namespace zuvi::sandbox {
namespace {

// A page that grows without end stops being readable; the JSON keeps them all.
constexpr std::size_t mostEvents = 300;

std::string valueText(const Json& value) {
  return value.is_string() ? value.get<std::string>() : jsonText(value);
}

std::string eventHtml(const Event& event) {
  std::string out =
      html(R"(<li data-key="%"><b>%</b> <time datetime="%">%</time>)", std::to_string(event.number),
           event.name, event.arrived, timeWords(event.arrived));
  const Json properties = parseJson(event.properties).value_or(Json::object());
  if (!properties.empty()) {
    out += html("<details><summary>%</summary><dl class=\"metadata\">",
                countWords(properties.size(), "property", "properties"));
    for (const auto& [key, value] : properties.items())
      out += html("<div><dt>%</dt><dd>%</dd></div>", key, valueText(value));
    out += "</dl></details>";
  }
  return out + "</li>\n";
}

} // namespace

std::string eventsHtml(const std::vector<Event>& events) {
  if (events.empty()) return "<p class=\"quiet\" data-key=\"none\">No event has arrived yet.</p>\n";
  std::string out = "<ol data-key=\"list\">\n";
  std::size_t shown = 0;
  for (auto event = events.rbegin(); event != events.rend() && shown < mostEvents; ++event, ++shown)
    out += eventHtml(*event);
  out += "</ol>\n";
  if (events.size() > shown)
    out += html("<p class=\"quiet\" data-key=\"earlier\">and % earlier ones</p>\n",
                std::to_string(events.size() - shown));
  return out;
}

} // namespace zuvi::sandbox
