#pragma once

#include "platform/Export.h"

#include <optional>
#include <string>

namespace zuvi {

/// An address that parsed: it has a scheme, holds no blank or control character, and its escapes
/// are well formed.
class ZUVI_API URL {
public:
  /// Absent when `text` is no address.
  static std::optional<URL> fromString(const std::string& text);
  static URL fromFilePath(const std::string& path);

  const std::string& absoluteString() const { return text_; }
  /// Lower case, such as "https".
  std::string scheme() const;
  /// Empty when the address has none.
  std::string host() const;
  /// Decoded path; of a file address, the file's path.
  std::string path() const;
  bool isFileURL() const { return scheme() == "file"; }

  bool operator==(const URL&) const = default;

private:
  explicit URL(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

} // namespace zuvi
