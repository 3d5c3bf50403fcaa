#include "platform/Foundation/UserDefaults.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/ProcessInfo.h"
#include "platform/Foundation/Utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <unordered_set>
#include <utility>

#include <cerrno>
#include <unistd.h>

namespace zuvi {

namespace {

constexpr double retryDelay = 10; // seconds
constexpr int deepest = 500;      // levels; the file adds one, and JSON has an end to them

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

/// The elements of a list, to look them up; a list may hold thousands of texts.
class Elements {
public:
  explicit Elements(const Value::List& list) {
    for (const Value& element : list)
      add(element);
  }
  void add(const Value& element) {
    if (const std::string* text = element.string())
      texts_.insert(*text);
    else
      others_.push_back(element);
  }
  bool hold(const Value& element) const {
    const std::string* text = element.string();
    return text ? texts_.contains(*text)
                : std::find(others_.begin(), others_.end(), element) != others_.end();
  }

private:
  std::unordered_set<std::string> texts_;
  Value::List others_;
};

/// The list `there` after what made `mine` of `known`: elements added, elements taken away.
Value::List mergedList(const Value::List& known, const Value::List& mine, Value::List there) {
  const Elements before(known), now(mine);
  std::erase_if(there, [&](const Value& e) { return before.hold(e) && !now.hold(e); });
  Elements result(there);
  for (const Value& element : mine) {
    if (before.hold(element) || result.hold(element)) continue;
    there.push_back(element);
    result.add(element);
  }
  return there;
}

/// What is on the disk after what made `mine` of `known` was done to it. Where two processes have
/// changed one entry, lists keep what either added; of other values the last one holds.
Value::Dictionary merged(const Value::Dictionary& known, const Value::Dictionary& mine,
                         Value::Dictionary there) {
  if (there == known) return mine;
  Value::Dictionary keys = mine;
  keys.insert(known.begin(), known.end());
  for (const auto& [key, any] : keys) {
    const Value *before = valueForKey(known, key), *now = valueForKey(mine, key);
    if (before && now && *before == *now) continue;
    const Value* other = valueForKey(there, key);
    const auto listOf = [](const Value* value) { return value ? value->list() : nullptr; };
    const Value::List none;
    const auto *oldList = listOf(before), *newList = listOf(now), *otherList = listOf(other);
    Value result = now ? *now : Value();
    if (otherList && (newList || (oldList && !now))) {
      auto list = mergedList(oldList ? *oldList : none, newList ? *newList : none, *otherList);
      if (now || !list.empty()) result = std::move(list);
    }
    if (result.isNull() && !now)
      there.erase(key);
    else
      there.insert_or_assign(key, std::move(result));
  }
  return there;
}

} // namespace

/// A flush to the disk takes milliseconds, so the main queue leaves it to others; what comes
/// meanwhile goes with the next one.
struct UserDefaults::File : std::enable_shared_from_this<File> {
  explicit File(std::string file) : path(std::move(file)) {}

  /// Takes what is on the disk; false when it can't be read.
  bool read(Value::Dictionary& found) const {
    const auto bytes = FileManager::contents(path);
    if (!bytes) return ::access(path.c_str(), F_OK) != 0 && errno == ENOENT;
    const auto value = JSONSerialization::jsonObject(bytes->view());
    if (value && value->dictionary())
      found = *value->dictionary();
    else
      std::rename(path.c_str(), (path + ".damaged").c_str());
    return true;
  }

  void save() {
    const std::lock_guard order(saving); // an older state never replaces a newer one
    Value::Dictionary state;
    {
      const std::lock_guard lock(mutex);
      scheduled = false;
      if (!std::exchange(dirty, false)) return;
      state = values;
    }
    if (write(state))
      known = std::move(state);
    else
      retry(state);
  }

  bool write(const Value::Dictionary& state) const {
    const FileManager::FolderLock alone(path);
    Value::Dictionary there;
    if (!read(there)) return false;
    const auto bytes = JSONSerialization::data(merged(known, state, std::move(there)));
    return !bytes || FileManager::writeAtomically(path, bytes->view());
  }

  void retry(Value::Dictionary& state) {
    {
      const std::lock_guard lock(mutex);
      state.clear(); // here, because `append` asks under the lock whether others hold a list
      dirty = true;
    }
    DispatchQueue::main().asyncAfter(retryDelay, [weak = weak_from_this()] {
      const auto file = weak.lock();
      if (file) DispatchQueue::global().async([file] { file->save(); });
    });
  }

  const std::string path;
  std::mutex saving;
  Value::Dictionary known; ///< what this process last read or wrote, without what others did
  std::mutex mutex;        ///< of all below; only the main queue writes the values
  Value::Dictionary values;
  bool dirty = false;
  bool scheduled = false;
};

UserDefaults& UserDefaults::standard() {
  static UserDefaults defaults(standardPath());
  return defaults;
}

UserDefaults::UserDefaults(std::string path) : file_(std::make_shared<File>(std::move(path))) {
  if (!file_->path.empty() && !file_->read(file_->values))
    std::fprintf(stderr, "The settings in %s can't be read.\n", file_->path.c_str());
  file_->known = file_->values;
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
  if (!isStorable(element, 1)) return false;
  {
    const std::lock_guard lock(file_->mutex);
    const auto found = file_->values.find(key);
    Value::List* list = found == file_->values.end() ? nullptr : found->second.mutableList();
    if (!list) return false;
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
