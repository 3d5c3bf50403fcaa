#pragma once

#include <ZuviSDK/Export.h>

#include <string>

namespace zuvi {

/// Addresses of the kit's services. A host's own code may replace an address before it registers;
/// a new back end address takes effect at the next registration.
struct ZUVI_API ZVEndpoints {
  /// The back end; ends in "/".
  static std::string& serverURL();
  /// The full address to which events are posted, without the query.
  static std::string& trackingURL();
  /// The full address of the document with the template of the chat page's address.
  static std::string& chatTemplateURL();
  /// A second domain whose data in the web view belongs to the support chat.
  static std::string& chatDomain();
  /// A file of certificate authorities (PEM) to trust in addition to the system's, for all later
  /// requests of the kit. Empty: none.
  static void setAdditionalAuthorities(const std::string& pemFile);
  /// The file that was set; empty: none.
  ZUVI_HIDDEN static const std::string& additionalAuthorities();
};

} // namespace zuvi
