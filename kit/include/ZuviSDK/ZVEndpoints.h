#pragma once

#include <ZuviSDK/Export.h>

#include <string>

namespace zuvi {

/// Where the kit's services are. A host's own code may replace an address before it registers;
/// the back end's holds from the next registration on.
struct ZUVI_API ZVEndpoints {
  /// The back end; ends in "/".
  static std::string& serverURL();
  /// The whole address that events are posted to, without the query.
  static std::string& trackingURL();
  /// The whole address of the document that holds the template of the support chat's page.
  static std::string& chatTemplateURL();
  /// Under which the support chat, beside its own name, leaves data in the web view.
  static std::string& chatDomain();
  /// A file of certificate authorities (PEM) to trust beside the system's, for all of the kit's
  /// requests made afterwards; empty: none.
  static void setAdditionalAuthorities(const std::string& pemFile);
};

} // namespace zuvi
