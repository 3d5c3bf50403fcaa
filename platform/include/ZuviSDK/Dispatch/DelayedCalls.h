#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Export.h>

#include <map>
#include <string>

namespace zuvi {

/// Calls that an object has asked to get later, by the name of the operation. They die with this
/// object, so a call may capture its owner without holding it. Main queue only.
class ZUVI_API DelayedCalls {
public:
  DelayedCalls() = default; ///< nothing waits
  DelayedCalls(const DelayedCalls&) = delete;
  DelayedCalls& operator=(const DelayedCalls&) = delete;
  ~DelayedCalls();

  /// Runs `work` once on the main queue, `delay` seconds from now. Several calls of one name may
  /// wait side by side.
  void perform(const std::string& operation, TimeInterval delay, Work work);
  /// Forgets every waiting call of that name.
  void cancel(const std::string& operation);
  /// Forgets every waiting call.
  void cancelAll();

private:
  std::multimap<std::string, WorkId> waiting_;
};

} // namespace zuvi
