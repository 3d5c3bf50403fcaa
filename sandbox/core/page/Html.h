#pragma once

#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// Text as it may stand in a page, between tags and in quoted attributes.
std::string escapeHtml(std::string_view text);

/// Replaces each "%" of the markup by the next text, escaped.
template <typename... Texts> std::string html(std::string_view markup, const Texts&... texts) {
  std::string out;
  const auto piece = [&](std::string_view text) {
    const auto mark = markup.find('%');
    out += markup.substr(0, mark);
    if (mark == std::string_view::npos) return;
    markup.remove_prefix(mark + 1);
    out += escapeHtml(text);
  };
  (piece(texts), ...);
  out += markup;
  return out;
}

} // namespace zuvi::sandbox
