#pragma once

#include <ZuviSDK/Export.h>

#include <optional>
#include <string>

namespace zuvi {

/// An address that parsed: it has a scheme, holds no blank or control character, and its escapes
/// are well formed.
class URL {
public:
  /// Absent when `text` is no address.
  ZUVI_API static std::optional<URL> fromString(const std::string& text);
  /// Of an absolute path; what an address may not hold is escaped.
  static URL fromFilePath(const std::string& path);

  /// The text as it was given.
  const std::string& absoluteString() const { return text_; }
  /// Lower case, such as "https".
  ZUVI_API std::string scheme() const;
  /// Empty when the address has none.
  std::string host() const;
  /// Decoded path; of a file address, the file's path.
  std::string path() const;
  /// Whether it leads to a file of this machine.
  bool isFileURL() const { return scheme() == "file"; }

  /// Letter for letter; two ways to write one address are different.
  bool operator==(const URL&) const = default;

private:
  explicit URL(std::string text) : text_(std::move(text)) {}
  std::string text_;
};

} // namespace zuvi
