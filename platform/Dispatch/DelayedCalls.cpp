#include <ZuviSDK/Dispatch/DelayedCalls.h>

#include <utility>

namespace zuvi {

DelayedCalls::~DelayedCalls() {
  cancelAll();
}

void DelayedCalls::perform(const std::string& operation, TimeInterval delay, Work work) {
  const auto entry = waiting_.emplace(operation, 0);
  entry->second = DispatchQueue::main().asyncAfter(delay, [this, entry, work = std::move(work)] {
    waiting_.erase(entry);
    work(); // may end the owner
  });
}

void DelayedCalls::cancel(const std::string& operation) {
  std::multimap<std::string, WorkId> dropped;
  const auto [first, last] = waiting_.equal_range(operation);
  for (auto entry = first; entry != last;)
    dropped.insert(waiting_.extract(entry++));
  for (const auto& [name, id] : dropped)
    DispatchQueue::main().cancel(id);
}

void DelayedCalls::cancelAll() {
  const auto dropped = std::exchange(waiting_, {});
  for (const auto& [name, id] : dropped)
    DispatchQueue::main().cancel(id);
}

} // namespace zuvi
