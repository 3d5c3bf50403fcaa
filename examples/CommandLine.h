// What every example takes on its command line, so that it can be tried against zuvi-sandbox:
//   --client-id ID --server ADDRESS --ca FILE --cameras simulated|DEVICE|FILE
#pragma once

#include <ZuviSDK/ZuviSDK.h>

#include <cstdlib>
#include <cstring>
#include <string>

/// The value of that option; null without one, unless `otherwise` says else.
inline const char* option(int argc, char** argv, const char* name,
                          const char* otherwise = nullptr) {
  for (int i = 1; i + 1 < argc; i += 2)
    if (std::strcmp(argv[i], name) == 0) return argv[i + 1];
  return otherwise;
}

/// Points the kit to what the options name, and gives the client id.
inline std::string readCommandLine(int argc, char** argv) {
  if (const char* server = option(argc, argv, "--server")) {
    zuvi::ZVEndpoints::serverURL() = server;
    zuvi::ZVEndpoints::trackingURL() = std::string(server) + "track/";
  }
  if (const char* file = option(argc, argv, "--ca"))
    zuvi::ZVEndpoints::setAdditionalAuthorities(file);
  if (const char* cameras = option(argc, argv, "--cameras")) {
    std::string problem;
    const auto camera = zuvi::parseCameraSource(cameras, problem);
    if (!camera) {
      zuvi::print(problem);
      std::exit(2);
    }
    zuvi::AVCaptureDevice::setProvider(
        std::make_shared<zuvi::HostCameraProvider>(zuvi::HostCameras{*camera, *camera}));
  }
  return option(argc, argv, "--client-id", "demo");
}
