#include "kit/Helper/ZVExtensions.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UINavigationController.h>
#include <ZuviSDK/UIKit/UITabBarController.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "kit/Helper/Palette.h"
#include "kit/Helper/ZVBundle.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/URLSession.h"

#include <cctype>
#include <cmath>
#include <cstdint>

namespace zuvi {

// Fonts

void registerZVFonts() {
  for (const char* name : {"ZVSFProText-Semibold", "ZVSFProText-Regular", "ZVSFProText-Bold"})
    if (const auto path = zvKitBundle()->path(name, "otf")) CTFontManagerRegisterFontsForURL(*path);
}

std::shared_ptr<const UIFont> zvSFProText(FontStyle style, double size) {
  return UIFont::named("SFProText-" + rawValue(style), size);
}

// Pictures

std::shared_ptr<const UIImage> zvKYCImage(const std::string& name) {
  return UIImage::named(name, *zvKitBundle());
}

void downloadImage(const URL& from,
                   std::function<void(std::shared_ptr<const UIImage>)> completion) {
  // Moved, not copied: its captures must be destroyed on the main queue.
  const auto handed = std::make_shared<decltype(completion)>(std::move(completion));
  const auto finish = [handed](const std::optional<Data>& data, const std::string& problem) {
    DispatchQueue::main().async([completion = std::move(*handed), data, problem] {
      completion(data ? UIImage::fromData(*data) : nullptr);
      if (!data) print("Unable to load data: " + problem);
    });
  };
  if (from.isFileURL()) {
    DispatchQueue::global().async(
        [from, finish] { finish(FileManager::contents(from.path()), "the file can't be read"); });
    return;
  }
  URLSession::shared()
      .dataTask(URLRequest(from),
                [finish](const std::optional<Data>& data, const std::optional<URLResponse>&,
                         const std::optional<Error>& error) {
                  finish(error ? std::nullopt : data, error ? error->description : "no answer");
                })
      ->resume();
}

// Colours

UIColor colorFromHex(const std::string& hexString, double alpha) {
  const auto isBlank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  std::size_t at = 0;
  while (at < hexString.size() && isBlank(hexString[at]))
    at++;
  if (at < hexString.size() && hexString[at] == '#') at++;
  while (at < hexString.size() && isBlank(hexString[at])) // also after the sign
    at++;
  if (hexString.compare(at, 2, "0x") == 0 || hexString.compare(at, 2, "0X") == 0) at += 2;
  std::uint32_t bits = 0; // bits that do not fit are dropped
  for (; at < hexString.size() && std::isxdigit(static_cast<unsigned char>(hexString[at])); at++) {
    const char digit = static_cast<char>(std::tolower(static_cast<unsigned char>(hexString[at])));
    bits = bits * 16 + static_cast<unsigned>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
  }
  return UIColor::bytes(static_cast<int>(bits >> 16 & 0xff), static_cast<int>(bits >> 8 & 0xff),
                        static_cast<int>(bits & 0xff), alpha);
}

UIColor textColorOn(const UIColor& ground) {
  const auto linear = [](double v) {
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
  };
  const double luminance =
      0.2126 * linear(ground.red) + 0.7152 * linear(ground.green) + 0.0722 * linear(ground.blue);
  // The contrast that all text needs; among light colours the one that large bold text needs.
  const double enough = isDark() ? 4.5 : 3;
  return 1.05 / (luminance + 0.05) >= enough ? paletteColor("light") : paletteColor("dark");
}

// Screens

std::shared_ptr<UIViewController> zvKYCCurrentViewController() {
  const UIWindow* window = UIApplication::shared().keyWindow();
  std::shared_ptr<UIViewController> current = window ? window->rootViewController() : nullptr;
  while (current) {
    if (auto presented = current->presentedViewController()) current = presented;
    if (const auto tabs = std::dynamic_pointer_cast<UITabBarController>(current)) {
      if (auto selected = tabs->selectedViewController()) current = selected;
    } else if (const auto stack = std::dynamic_pointer_cast<UINavigationController>(current)) {
      if (auto visible = stack->visibleViewController()) current = visible;
    }
    if (!current->presentedViewController()) break;
  }
  return current;
}

} // namespace zuvi
