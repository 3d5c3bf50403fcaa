// What every example takes on its command line, so that it can be tried against zuvi-sandbox:
//   --client-id ID --server ADDRESS --ca FILE --cameras simulated|DEVICE|FILE
#pragma once

#include <ZuviSDK/ZuviSDK.h>
#include <ZuviSDK/ZuviUI.h>

#include <cstdlib>
#include <map>
#include <string>

using CommandLine = std::map<std::string, std::string>; ///< values by option

/// Points the kit to what the options name. Others are the caller's.
inline CommandLine readCommandLine(int argc, char** argv) {
  CommandLine options{{"--client-id", "demo"}};
  for (int i = 1; i + 1 < argc; i += 2)
    options[argv[i]] = argv[i + 1];
  if (options.contains("--server")) {
    zuvi::ZVEndpoints::serverURL() = options["--server"];
    zuvi::ZVEndpoints::trackingURL() = options["--server"] + "track/";
  }
  if (options.contains("--ca")) zuvi::ZVEndpoints::setAdditionalAuthorities(options["--ca"]);
  if (options.contains("--cameras")) {
    const auto read = zuvi::parseCameraSource(options["--cameras"]);
    if (const auto* problem = std::get_if<zuvi::Error>(&read)) {
      zuvi::print(problem->description);
      std::exit(2);
    }
    const auto camera = std::get<zuvi::CameraSourceDescription>(read);
    zuvi::AVCaptureDevice::setProvider(
        std::make_shared<zuvi::HostCameraProvider>(zuvi::HostCameras{camera, camera}));
  }
  return options;
}
