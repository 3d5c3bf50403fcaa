#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Value.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zuvi {

/// A folder of resources. Any thread, but for the info dictionary, the language and the values of
/// nibs, which are the main one's.
class Bundle {
public:
  /// The folder need not exist: then nothing is found in it.
  explicit Bundle(std::string folder) : folder_(std::move(folder)) {}

  /// The host program: the folder of its executable, and the information it gave about itself.
  ZUVI_API static Bundle& main();

  /// The path of `name`.`type` in the bundle; absent when there is no such file. A name that would
  /// leave the folder is never found.
  std::optional<std::string> path(const std::string& name, const std::string& type) const;

  /// The folder inside the bundle whose files `path` prefers, such as "dark"; empty: none. Asked at
  /// each search, on its thread. Set it before another thread searches.
  void setVariant(std::function<std::string()> variant) { variant_ = std::move(variant); }

  /// The path as it was given.
  const std::string& folder() const { return folder_; }
  /// Empty until the host has said something.
  const Value::Dictionary& infoDictionary() const { return info_; }
  /// What the host says about itself, such as "CFBundleVersion".
  void setInfoDictionary(Value::Dictionary info) { info_ = std::move(info); }

  /// Which language its nibs are made in; empty unless somebody says.
  std::string language() const { return language_ ? language_() : std::string(); }
  /// Asked at each nib.
  void setLanguage(std::function<std::string()> language) { language_ = std::move(language); }

  /// Gives the value that stands for "@NAME" in an attribute of a nib; absent when there is none.
  using NibValues = std::function<std::optional<std::string>(const std::string& attribute,
                                                             const std::string& name)>;
  /// Null unless somebody sets them: then "@" in a nib is a plain character.
  const NibValues& nibValues() const { return nibValues_; }
  /// Asked at each nib.
  void setNibValues(NibValues values) { nibValues_ = std::move(values); }

private:
  std::string folder_;
  Value::Dictionary info_;
  std::function<std::string()> variant_;
  std::function<std::string()> language_;
  NibValues nibValues_;
};

} // namespace zuvi
