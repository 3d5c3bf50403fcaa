#include "demo/core/HostSetup.h"

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/ZVEndpoints.h>
#include <ZuviSDK/ZVKYC.h>
#include "demo/core/DemoCameras.h"
#include "platform/Foundation/FileManager.h"
#include "platform/ImageIO/ImageFile.h"
#include "platform/UIKit/ScreenPicture.h"

#include <filesystem>

namespace zuvi::demo {

void setUpKit(const Options& options) {
  if (options.server) ZVEndpoints::serverURL() = *options.server;
  if (options.tracking) ZVEndpoints::trackingURL() = *options.tracking;
  if (options.chatTemplate) ZVEndpoints::chatTemplateURL() = *options.chatTemplate;
  if (options.chatDomain) ZVEndpoints::chatDomain() = *options.chatDomain;
  if (options.authorities) ZVEndpoints::setAdditionalAuthorities(*options.authorities);
  installCameras(options);
  ZVKYC& kit = ZVKYC::instance();
  kit.identityId = options.identity;
  kit.textsFile = options.texts.value_or("");
  kit.language = options.language.value_or("");
  kit.userInterfaceStyle = options.style;
  Value::Dictionary host;
  if (options.hostVersion) host["CFBundleShortVersionString"] = *options.hostVersion;
  if (options.hostBuild) host["CFBundleVersion"] = *options.hostBuild;
  if (!host.empty()) Bundle::main().setInfoDictionary(host);
  if (!options.clientId) return;
  std::optional<Value::Dictionary> metadata;
  if (!options.metadata.empty()) metadata = options.metadata;
  ZVKYC::registerWithClientId(*options.clientId, metadata);
}

std::variant<std::vector<DriveCommand>, std::string> readDrive(const Options& options) {
  const auto text = FileManager::contents(*options.drive);
  auto parsed = parseDriveScript(text ? text->string() : "");
  if (const auto* problem = std::get_if<std::string>(&parsed))
    return *options.drive + ":" + *problem;
  return parsed;
}

std::string preparePictures(const Options& options) {
  std::error_code failed;
  if (options.pictures) std::filesystem::create_directories(*options.pictures, failed);
  return failed ? *options.pictures + " can't be made" : "";
}

bool writePicture(const Options& options, const std::string& name) {
  if (!options.pictures) return true;
  const auto picture = pictureOfScreen();
  return picture && FileManager::writeAtomically(*options.pictures + "/" + name + ".png",
                                                 encodePNG(*picture).view());
}

} // namespace zuvi::demo
