#include "platform/AVFoundation/SourceRecipesGStreamer.h"

#include <gst/video/video.h>

#include <cmath>
#include <cstdlib>
#include <optional>

namespace zuvi {

namespace {

constexpr int wantedWidth = 1280, wantedHeight = 720, wantedRate = 30, leastRate = 24;

/// One form of pictures that a camera offers; the smaller its cost, the better it fits.
struct Offer {
  std::string text;
  double cost = 0;
};

/// The rate of `structure`, brought as near to the wanted one as it offers.
double fixRate(GstStructure* structure) {
  if (!gst_structure_has_field(structure, "framerate"))
    gst_structure_set(structure, "framerate", GST_TYPE_FRACTION, wantedRate, 1, nullptr);
  gst_structure_fixate_field_nearest_fraction(structure, "framerate", wantedRate, 1);
  int numerator = 0, denominator = 1;
  gst_structure_get_fraction(structure, "framerate", &numerator, &denominator);
  return denominator > 0 ? double(numerator) / denominator : 0;
}

std::optional<Offer> offerOf(const GstStructure* offered) {
  const bool jpeg = gst_structure_has_name(offered, "image/jpeg");
  if (!jpeg && !gst_structure_has_name(offered, "video/x-raw")) return std::nullopt;
  if (!gst_structure_has_field(offered, "width") || !gst_structure_has_field(offered, "height"))
    return std::nullopt;

  std::unique_ptr<GstStructure, decltype(&gst_structure_free)> fixed(gst_structure_copy(offered),
                                                                     gst_structure_free);
  gst_structure_fixate_field_nearest_int(fixed.get(), "width", wantedWidth);
  gst_structure_fixate_field_nearest_int(fixed.get(), "height", wantedHeight);
  int width = 0, height = 0;
  if (!gst_structure_get_int(fixed.get(), "width", &width) ||
      !gst_structure_get_int(fixed.get(), "height", &height))
    return std::nullopt;
  const double rate = fixRate(fixed.get());

  Offer offer;
  // A slow camera is worse than a small one, and packed pictures cost more than raw ones.
  if (rate < leastRate) offer.cost += 4 * (leastRate - rate) / leastRate;
  offer.cost += std::abs(std::log2(double(width) * height / (wantedWidth * wantedHeight)));
  if (jpeg) offer.cost += 0.01;
  offer.text = std::string(jpeg ? "image/jpeg" : "video/x-raw") +
               ",width=" + std::to_string(width) + ",height=" + std::to_string(height);
  int numerator = 0, denominator = 1;
  if (gst_structure_get_fraction(fixed.get(), "framerate", &numerator, &denominator))
    offer.text += ",framerate=" + std::to_string(numerator) + "/" + std::to_string(denominator);
  return offer;
}

} // namespace

std::string chooseFormat(const GstCaps* formats) {
  std::optional<Offer> best;
  for (guint i = 0; formats && i < gst_caps_get_size(formats); i++) {
    auto offer = offerOf(gst_caps_get_structure(formats, i));
    if (offer && (!best || offer->cost < best->cost)) best = std::move(offer);
  }
  return best ? best->text : "";
}

SourceRecipe deviceRecipe(const CameraElement& camera) {
  SourceRecipe recipe;
  recipe.key = camera.key;
  recipe.launch = [factory = camera.factory, formats = camera.formats] {
    const auto format = chooseFormat(formats().get());
    auto launch = factory + " name=source ! " + (format.empty() ? "decodebin" : format);
    return format.starts_with("image/jpeg") ? launch + " ! jpegdec" : launch;
  };
  recipe.configure = [configure = camera.configure](const Pipeline& pipeline) {
    configure(pipeline.element("source"));
  };
  return recipe;
}

} // namespace zuvi
