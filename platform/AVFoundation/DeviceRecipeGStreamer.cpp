#include "platform/AVFoundation/CameraFormatGStreamer.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"

#include <algorithm>

namespace zuvi {

namespace {

/// Whether something else than raw pictures is offered that a decoder may know.
bool offersCoded(const GstCaps* offers) {
  for (guint i = 0; i < gst_caps_get_size(offers); i++)
    if (!g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(offers, i)), "video/x-raw"))
      return true;
  return false;
}

std::string picturesOf(const GstCaps* offers, CameraUse use) {
  auto form = chooseFormat(offers, use);
  if (form.empty() && (!offers || offersCoded(offers))) return "decodebin";
  return form;
}

} // namespace

bool givesPictures(const GstCaps* offers) {
  return !picturesOf(offers, CameraUse::Film).empty();
}

std::string upright(std::optional<int> rotation) {
  const char* direction = "auto"; // as the stream's tags say
  switch (rotation.value_or(-1)) {
  case 0:
    return "";
  case 90:
    direction = "90l";
    break;
  case 180:
    direction = "180";
    break;
  case 270:
    direction = "90r";
    break;
  default:
    break;
  }
  return std::string(" ! videoconvert ! videoflip video-direction=") + direction;
}

SourceRecipe deviceRecipe(const CameraElement& camera) {
  SourceRecipe recipe;
  recipe.key = camera.key;
  recipe.launch = [camera](CameraUse use) -> std::string {
    const auto pictures = picturesOf(camera.formats().get(), use);
    if (pictures.empty()) return "";
    return camera.factory + " name=source ! " + pictures + upright(camera.rotation());
  };
  recipe.configure = [configure = camera.configure](const Pipeline& pipeline) {
    configure(pipeline.element("source"));
  };
  return recipe;
}

} // namespace zuvi
