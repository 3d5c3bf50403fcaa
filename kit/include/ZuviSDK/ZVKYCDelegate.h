#pragma once

#include <ZuviSDK/Export.h>

#include <string>

namespace zuvi {

/// Tells a host how a verification ended. Both functions are called on the main queue.
class ZUVI_API ZVKYCDelegate {
public:
  virtual ~ZVKYCDelegate() = default;

  /// The person completed the run. `identityId` is the host's own identity if it set one on
  /// `ZVKYC`, else the one that was made in the run.
  virtual void zvKYCLoginSuccess(const std::string& identityId) = 0;

  /// The person confirmed leaving the flow.
  virtual void zvKYCLoginCancelled() = 0;
};

} // namespace zuvi
