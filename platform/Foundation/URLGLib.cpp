#include <ZuviSDK/Foundation/URL.h>

#include "platform/Foundation/PercentEncoding.h"
#include "platform/Foundation/Utf8.h"

#include <algorithm>
#include <memory>

#include <glib.h>

namespace zuvi {

namespace {

struct Unref {
  void operator()(GUri* uri) const { g_uri_unref(uri); }
};
using Parsed = std::unique_ptr<GUri, Unref>;

// Components stay as they are written; whoever needs one decodes it.
Parsed parse(const std::string& text) {
  return Parsed(g_uri_parse(text.c_str(), G_URI_FLAGS_ENCODED, nullptr));
}

bool isBlankOrControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code <= 0x20 || code == 0x7f;
}

bool hasWellFormedEscapes(const std::string& text) {
  for (auto i = text.find('%'); i != std::string::npos; i = text.find('%', i + 1))
    if (text.size() - i < 3 || !g_ascii_isxdigit(text[i + 1]) || !g_ascii_isxdigit(text[i + 2]))
      return false;
  return true;
}

std::string textOrEmpty(const char* text) {
  return text ? text : "";
}

} // namespace

std::optional<URL> URL::fromString(const std::string& text) {
  if (std::any_of(text.begin(), text.end(), isBlankOrControl) || !isValidUtf8(text) ||
      !hasWellFormedEscapes(text) || !parse(text))
    return std::nullopt;
  return URL(text);
}

URL URL::fromFilePath(const std::string& path) {
  static const CharacterSet allowed = [] {
    CharacterSet set = CharacterSet::urlQueryAllowed();
    set.remove("?");
    return set;
  }();
  // A file's name may be any bytes; those that are no text are escaped one by one.
  if (const auto escaped = addingPercentEncoding(path, allowed)) return URL("file://" + *escaped);
  gchar* escaped =
      g_uri_escape_bytes(reinterpret_cast<const guint8*>(path.data()), path.size(), "/");
  URL url("file://" + std::string(escaped));
  g_free(escaped);
  return url;
}

std::string URL::scheme() const {
  const auto uri = parse(text_);
  return uri ? textOrEmpty(g_uri_get_scheme(uri.get())) : std::string();
}

std::string URL::host() const {
  const auto uri = parse(text_);
  return uri ? textOrEmpty(g_uri_get_host(uri.get())) : std::string();
}

std::string URL::path() const {
  const auto uri = parse(text_);
  if (!uri) return {};
  std::string path = g_uri_get_path(uri.get());
  // Escapes that are no text can still name a file.
  GBytes* bytes =
      g_uri_unescape_bytes(path.data(), static_cast<gssize>(path.size()), nullptr, nullptr);
  if (!bytes) return path;
  gsize size = 0;
  const auto* data = static_cast<const char*>(g_bytes_get_data(bytes, &size));
  std::string decoded = data ? std::string(data, size) : std::string();
  g_bytes_unref(bytes);
  return decoded;
}

} // namespace zuvi
