#pragma once

#include <ZuviSDK/Export.h>

#include <string>

namespace zuvi {

/// How a host hears the end of a verification. Both calls come on the main queue.
class ZUVI_API ZVKYCDelegate {
public:
  virtual ~ZVKYCDelegate() = default;

  /// The person went through to the end. `identityId` is the host's own identity if it set one on
  /// `ZVKYC`, else the one that was made in the run.
  virtual void zvKYCLoginSuccess(const std::string& identityId) = 0;

  /// The person confirmed leaving the flow.
  virtual void zvKYCLoginCancelled() = 0;
};

} // namespace zuvi
