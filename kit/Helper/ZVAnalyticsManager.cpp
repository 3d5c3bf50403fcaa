#include "kit/Helper/ZVAnalyticsManager.h"

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/ZVEndpoints.h>
#include "kit/Helper/ZVJSONHandler.h"
#include "platform/CoreTelephony/CTTelephonyNetworkInfo.h"
#include "platform/Foundation/Locale.h"
#include "platform/Foundation/URLSession.h"
#include "platform/Foundation/UUID.h"
#include "platform/UIKit/UIDevice.h"
#include "platform/UIKit/UIScreen.h"

#include <cmath>
#include <limits>
#include <sys/utsname.h>
#include <utility>

namespace zuvi {

namespace {

constexpr double requestTimeout = 10; // seconds
// Bytes. The answer is ignored, but after reading all of it the connection can be reused.
constexpr std::size_t longestAnswer = 1024;

/// The machine's model as the system names it: one character for each byte, so that any bytes can
/// be sent.
std::string machineIdentifier() {
  utsname system{};
  uname(&system);
  std::string text;
  for (const char c : system.machine) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= 0x80) text += static_cast<char>(0xc0 | code >> 6);
    if (code != 0) text += static_cast<char>(code < 0x80 ? code : 0x80 | (code & 0x3f));
  }
  return text;
}

float narrowed(double number) {
  constexpr double most = std::numeric_limits<float>::max();
  if (std::abs(number) > most) number = std::copysign(HUGE_VAL, number); // undefined otherwise
  return static_cast<float>(number);
}

Value::Dictionary normalized(const Value::Dictionary& properties) {
  Value::Dictionary result;
  for (const auto& [key, value] : properties) {
    std::optional<double> number = value.number();
    if (const bool* flag = value.boolean()) number = *flag ? 1 : 0;
    const auto narrow = narrowed(number.value_or(0));
    if (!number)
      result[key] = value;
    else if (narrow == 1.0F || narrow == 0.0F)
      result[key] = *number != 0; // a number too small for the narrow type is still not zero
    else
      result[key] = narrow;
  }
  return result;
}

ZVAnalyticsManager::Listener currentListener;

} // namespace

void ZVAnalyticsManager::setListener(Listener listener) {
  currentListener = std::move(listener);
}

void ZVAnalyticsManager::track(const std::optional<std::string>& event,
                               const std::optional<Value::Dictionary>& properties) {
  if (event) sendMixpanelEvent(*event, properties);
}

void ZVAnalyticsManager::sendMixpanelEvent(const std::string& event,
                                           const std::optional<Value::Dictionary>& properties) {
  const Value::Dictionary& info = Bundle::main().infoDictionary();
  const auto version = stringValue(info, "CFBundleVersion");
  auto shortVersion = stringValue(info, "CFBundleShortVersionString");
  if (!shortVersion) shortVersion = version;
  const std::string machine = machineIdentifier();
  std::optional<std::string> carrier;
  if (const auto provider = CTTelephonyNetworkInfo().subscriberCellularProvider())
    carrier = provider->carrierName;
  const Locale locale = Locale::current();
  const auto region = locale.localizedStringForRegionCode(locale.regionCode().value_or(""));
  const CGRect screen = UIScreen::main().bounds();

  Value::Dictionary all = normalized(properties.value_or(Value::Dictionary{}));
  const std::pair<const char*, Value> own[] = {
      {"$app_release", shortVersion},
      {"$app_version", version},
      {"$app_build_number", version},
      {"$app_version_string", shortVersion},
      {"$carrier", carrier},
      {"$model", machine},
      {"$lib_version", "3.1.6"},
      {"$manufacturer", "Apple"},
      {"mp_lib", "iphone"},
      {"mp_device_model", machine},
      {"$os_version", UIDevice::current().systemVersion()},
      {"$os", "iOS"},
      {"$radio", "None"},
      {"$screen_height", screen.height},
      {"$screen_width", screen.width},
      {"distinct_id", uuidString()},
      {"token", "0f3ab9d17c2e46a8b5d90e7f1c64a382"},
      {"$region", region},
      {"$country_code", region}, // the region's name again, not a code
  };
  for (const auto& [key, value] : own) {
    if (value.isNull())
      all.erase(key); // an unknown property is left out, even if the caller set it
    else
      all[key] = value;
  }
  if (currentListener) currentListener(event, all);
  sendMixapnelRequest({{"properties", std::move(all)}, {"event", event}});
}

void ZVAnalyticsManager::sendMixapnelRequest(const Value::Dictionary& parameters) {
  const auto data = ZVJSONHandler::encodeAPIData(parameters);
  if (!data) return;
  const auto url = URL::fromString(ZVEndpoints::trackingURL() + "?data=" + *data);
  if (!url) return;
  URLRequest request(*url);
  request.timeoutInterval = requestTimeout;
  request.longestAnswer = longestAnswer;
  request.httpMethod = "POST";
  URLSession::shared().dataTask(request, [](auto&&...) {})->resume();
}

} // namespace zuvi
