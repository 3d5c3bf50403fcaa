#include <ZuviSDK/AVFoundation/AVCaptureDevice.h>

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/AVFoundation/SystemCameraProvider.h>
#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Make.h>

#include <mutex>

namespace zuvi {

namespace {

struct Installed {
  std::mutex mutex;
  std::shared_ptr<CameraProvider> provider;
};

Installed& installed() {
  static Installed instance;
  return instance;
}

} // namespace

AVCaptureDevice::AVCaptureDevice(std::shared_ptr<CameraProvider> provider,
                                 CameraDescription description)
    : provider_(std::move(provider)), description_(std::move(description)) {}

void AVCaptureDevice::setProvider(std::shared_ptr<CameraProvider> provider) {
  std::lock_guard lock(installed().mutex);
  installed().provider.swap(provider);
}

std::shared_ptr<CameraProvider> AVCaptureDevice::provider() {
  std::lock_guard lock(installed().mutex);
  if (!installed().provider) installed().provider = make<SystemCameraProvider>();
  return installed().provider;
}

AVAuthorizationStatus AVCaptureDevice::authorizationStatus() {
  return provider()->authorizationStatus();
}

void AVCaptureDevice::requestAccess(std::function<void(bool)> handler) {
  auto source = provider();
  // The request holds the provider: it may be replaced while a dialogue is open.
  source->requestAccess([source, handler = std::move(handler)](bool granted) {
    source->callbackQueue().async([handler, granted] { handler(granted); });
  });
}

void AVCaptureDevice::discover() {
  provider()->devices();
}

bool AVCaptureDevice::areDevicesKnown() {
  return provider()->areDevicesKnown();
}

std::vector<std::shared_ptr<AVCaptureDevice>> AVCaptureDevice::devices() {
  auto source = provider();
  std::vector<std::shared_ptr<AVCaptureDevice>> devices;
  for (auto& description : source->devices())
    devices.push_back(make<AVCaptureDevice>(source, std::move(description)));
  return devices;
}

} // namespace zuvi
