#pragma once

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include <ZuviSDK/Foundation/Make.h>
#include "platform/AVFoundation/CameraStreamGStreamer.h"

#include <atomic>

namespace zuvi {

/// A camera made of the given elements, which counts how often it is opened and closed.
class RecipeProvider final : public CameraProvider {
public:
  explicit RecipeProvider(const std::string& elements)
      : RecipeProvider([elements](CameraUse) { return elements; }) {}
  explicit RecipeProvider(std::function<std::string(CameraUse)> elements,
                          AVCaptureDevicePosition position = AVCaptureDevicePosition::Back)
      : position_(position) {
    recipe_.key = "test:" + std::to_string(++made_);
    recipe_.launch = std::move(elements);
    // The camera may be closed after this object has gone.
    recipe_.configure = [counts = counts_](const Pipeline& pipeline) {
      counts->opened++;
      g_object_weak_ref(
          G_OBJECT(pipeline.native()),
          [](gpointer data, GObject*) {
            const std::unique_ptr<std::shared_ptr<Counts>> held(
                static_cast<std::shared_ptr<Counts>*>(data));
            (*held)->closed++;
          },
          new std::shared_ptr<Counts>(counts));
    };
  }

  int opened() const { return counts_->opened; }
  int closed() const { return counts_->closed; }

  AVAuthorizationStatus authorizationStatus() override { return AVAuthorizationStatus::Authorized; }
  void requestAccess(std::function<void(bool)> answer) override { answer(true); }
  std::vector<CameraDescription> devices() override { return {{"test", "Test", position_, true}}; }
  std::shared_ptr<CameraStream> open(const std::string&) override {
    CameraOpening opening;
    opening.recipe = [recipe = recipe_] { return std::optional(recipe); };
    return make<CameraStreamGStreamer>(std::move(opening));
  }

private:
  struct Counts {
    std::atomic<int> opened = 0, closed = 0;
  };
  const std::shared_ptr<Counts> counts_ = std::make_shared<Counts>();
  const AVCaptureDevicePosition position_;
  SourceRecipe recipe_;
  static inline std::atomic<int> made_ = 0;
};

} // namespace zuvi
