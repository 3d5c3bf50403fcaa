#include "platform/Foundation/UserDefaults.h"

#include "platform/Dispatch/DispatchQueue.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/ProcessInfo.h"
#include "platform/Foundation/Utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <utility>

namespace zuvi {

namespace {

constexpr int deepest = 500; // levels; the file adds one, and JSON has an end to them

// Empty without a home: such defaults last as long as the process.
std::string standardPath() {
  const auto folder = ProcessInfo::userConfigurationFolder();
  return folder ? *folder + '/' + ProcessInfo::processName() + "/defaults.json" : std::string();
}

/// Whether JSON holds the value; far cheaper than to write it and see.
bool isStorable(const Value& value, int depth = 0) {
  if (const std::string* text = value.string()) return isValidUtf8(*text);
  if (const auto number = value.number()) return std::isfinite(*number);
  if (value.isNull() || value.boolean()) return true;
  if (depth == deepest) return false;
  if (const auto* list = value.list())
    return std::all_of(list->begin(), list->end(),
                       [depth](const Value& element) { return isStorable(element, depth + 1); });
  const auto* dictionary = value.dictionary();
  return dictionary && std::all_of(dictionary->begin(), dictionary->end(), [depth](const auto& e) {
           return isValidUtf8(e.first) && isStorable(e.second, depth + 1);
         });
}

} // namespace

/// A flush to the disk takes milliseconds, so the main queue leaves it to others; what comes
/// meanwhile goes with the next one.
struct UserDefaults::File {
  explicit File(std::string file) : path(std::move(file)) {}

  void save() {
    const std::lock_guard order(saving); // an older state never replaces a newer one
    Value::Dictionary state;
    {
      const std::lock_guard lock(mutex);
      scheduled = false;
      if (!std::exchange(dirty, false)) return;
      state = values;
    }
    if (const auto bytes = JSONSerialization::data(state))
      FileManager::writeAtomically(path, bytes->view());
  }

  const std::string path;
  std::mutex saving;
  std::mutex mutex; ///< of all below; only the main queue writes the values
  Value::Dictionary values;
  bool dirty = false;
  bool scheduled = false;
};

UserDefaults& UserDefaults::standard() {
  static UserDefaults defaults(standardPath());
  return defaults;
}

UserDefaults::UserDefaults(std::string path) : file_(std::make_shared<File>(std::move(path))) {
  const auto bytes = FileManager::contents(file_->path);
  if (!bytes) return;
  const auto value = JSONSerialization::jsonObject(bytes->view());
  if (value && value->dictionary())
    file_->values = *value->dictionary();
  else
    std::rename(file_->path.c_str(), (file_->path + ".damaged").c_str());
}

UserDefaults::~UserDefaults() {
  synchronize();
}

const Value& UserDefaults::value(const std::string& key) const {
  static const Value none;
  const Value* value = valueForKey(file_->values, key);
  return value ? *value : none;
}

void UserDefaults::set(const std::string& key, const Value& value) {
  const bool removes = value.isNull();
  if (!isValidUtf8(key) || !isStorable(value)) return;
  {
    const std::lock_guard lock(file_->mutex);
    if (removes)
      file_->values.erase(key);
    else
      file_->values.insert_or_assign(key, value);
  }
  saveSoon();
}

bool UserDefaults::append(const std::string& key, const Value& element) {
  const auto found = file_->values.find(key);
  Value::List* list = found == file_->values.end() ? nullptr : found->second.list();
  if (!list || !isStorable(element, 1)) return false;
  {
    const std::lock_guard lock(file_->mutex);
    list->push_back(element);
  }
  saveSoon();
  return true;
}

void UserDefaults::saveSoon() {
  if (file_->path.empty()) return;
  {
    const std::lock_guard lock(file_->mutex);
    file_->dirty = true;
    if (std::exchange(file_->scheduled, true)) return;
  }
  DispatchQueue::global().async([file = file_] { file->save(); });
}

void UserDefaults::synchronize() {
  file_->save();
}

} // namespace zuvi
