#include "platform/Foundation/UserDefaults.h"

#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/ProcessInfo.h"

#include <cstdio>
#include <utility>

namespace zuvi {

namespace {

// Empty without a home: such defaults last as long as the process.
std::string standardPath() {
  const auto folder = ProcessInfo::userConfigurationFolder();
  return folder ? *folder + '/' + ProcessInfo::processName() + "/defaults.json" : std::string();
}

} // namespace

UserDefaults& UserDefaults::standard() {
  static UserDefaults defaults(standardPath());
  return defaults;
}

UserDefaults::UserDefaults(std::string path) : path_(std::move(path)) {
  const auto bytes = FileManager::contents(path_);
  if (!bytes) return;
  const auto value = JSONSerialization::jsonObject(bytes->view());
  if (value && value->dictionary())
    values_ = *value->dictionary();
  else
    std::rename(path_.c_str(), (path_ + ".damaged").c_str());
}

Value UserDefaults::value(const std::string& key) const {
  const Value* value = valueForKey(values_, key);
  return value ? *value : Value();
}

void UserDefaults::set(const std::string& key, const Value& value) {
  if (value.isNull())
    values_.erase(key);
  else if (JSONSerialization::data(Value::Dictionary{{key, value}}))
    values_.insert_or_assign(key, value);
  else
    return;
  save();
}

void UserDefaults::save() const {
  const auto bytes = JSONSerialization::data(values_);
  if (bytes && !path_.empty()) FileManager::writeAtomically(path_, bytes->view());
}

} // namespace zuvi
