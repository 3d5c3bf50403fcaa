#pragma once

#include "platform/AVFoundation/CameraProvider.h"
#include "platform/AVFoundation/CameraStreamGStreamer.h"
#include "platform/Foundation/Make.h"

#include <atomic>

namespace zuvi {

/// A camera made of the given elements, which counts how often it is opened and closed.
class RecipeProvider final : public CameraProvider {
public:
  explicit RecipeProvider(const std::string& elements) {
    recipe.key = "test:" + std::to_string(++made_);
    recipe.launch = [elements] { return elements; };
    recipe.configure = [this](const Pipeline& pipeline) {
      opened++;
      g_object_weak_ref(
          G_OBJECT(pipeline.native()),
          [](gpointer self, GObject*) { static_cast<RecipeProvider*>(self)->closed++; }, this);
    };
  }

  AVAuthorizationStatus authorizationStatus() override { return AVAuthorizationStatus::Authorized; }
  void requestAccess(std::function<void(bool)> answer) override { answer(true); }
  std::vector<CameraDescription> devices() override {
    return {{"test", "Test", AVCaptureDevicePosition::Back, true}};
  }
  std::shared_ptr<CameraStream> open(const std::string&) override {
    return make<CameraStreamGStreamer>(recipe);
  }

  SourceRecipe recipe;
  std::atomic<int> opened = 0, closed = 0;

private:
  static inline std::atomic<int> made_ = 0;
};

} // namespace zuvi
