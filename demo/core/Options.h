#pragma once

#include <ZuviSDK/AVFoundation/HostCameraProvider.h>
#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/Foundation/Value.h>
#include <ZuviSDK/UIKit/UIUserInterfaceStyle.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zuvi::demo {

enum class Program { Demo, Verify };

/// Which cameras are used where none is named.
enum class Cameras {
  Real,  ///< the machine's own; the demo takes drawn ones where it has none
  Drawn, ///< moving scenes
};

/// What the command line asks for.
struct Options {
  Program program = Program::Demo;
  std::optional<std::string> clientId; ///< absent: the host never registers
  Value::Dictionary metadata;
  std::optional<std::string> identity;
  std::optional<std::string> server, tracking, chatTemplate, chatDomain, authorities;
  std::optional<std::string> chatLicense, chatGroup, chatName, chatEmail;
  Cameras cameras = Cameras::Real;
  std::optional<std::string> texts, language;
  UIUserInterfaceStyle style = UIUserInterfaceStyle::Unspecified;
  std::optional<std::string> hostVersion, hostBuild;
  std::optional<CameraSourceDescription> frontCamera, backCamera; ///< one alone: the other is none
  std::optional<CameraPermission> permission;
  CGSize screen{375, 812};
  std::optional<double> textScale;
  double scale = 2;
  bool fullScreen = false;
  bool offscreen = false;
  bool help = false; ///< asked for, and nothing else looked at
  std::optional<std::string> drive, pictures, events;
  bool showsCardReview = false;
  std::optional<std::string> picture; ///< of the document to review
};

/// The options, or in one line what is wrong with them. `arguments` without the program's name.
std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments,
                                                Program program = Program::Demo);

/// The program's options, one a line.
std::string usage(Program program = Program::Demo);

} // namespace zuvi::demo
