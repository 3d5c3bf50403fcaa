#include "platform/AVFoundation/CameraFormatGStreamer.h"

#include "platform/AVFoundation/PipelineGStreamer.h"

#include <gst/video/video.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace zuvi {

namespace {

/// One form of pictures that a camera offers; the smaller its cost, the better it fits.
struct Form {
  std::string caps, elements;
  double cost = 0;
};

struct Size {
  int width, height;
  double pixels() const { return double(width) * height; }
};

/// What a use asks of a size and a rate.
struct Wish {
  Size nearest;     ///< of a camera that scales to any size
  double leastRate; ///< pictures a second
  double slowness;  ///< cost of a camera that stands still
};

constexpr Wish filmWish{{1280, 720}, 24, 4};
constexpr Wish stillWish{{1920, 1080}, 10, 6};
// More than these are not worth their decoding while they are only looked at.
constexpr Size mostForStills{3840, 2160}, mostAtFullRate{1920, 1200};

double sizeCost(CameraUse use, const Size& size) {
  if (use == CameraUse::Film) return std::abs(std::log2(size.pixels() / filmWish.nearest.pixels()));
  const double smaller = std::log2(mostForStills.pixels() / size.pixels());
  return smaller >= 0 ? smaller : 3 - smaller;
}

/// The texts of a field, one or several; `absent` when there is none.
std::vector<std::string> texts(const GstStructure* offer, const char* field, const char* absent) {
  const GValue* value = gst_structure_get_value(offer, field);
  std::vector<std::string> found;
  if (!value)
    found.emplace_back(absent);
  else if (G_VALUE_HOLDS_STRING(value))
    found.emplace_back(g_value_get_string(value));
  else if (GST_VALUE_HOLDS_LIST(value))
    for (guint i = 0; i < gst_value_list_get_size(value); i++)
      if (const auto* one = gst_value_list_get_value(value, i); G_VALUE_HOLDS_STRING(one))
        found.emplace_back(g_value_get_string(one));
  return found;
}

/// The lengths of a side, one or several; of a range the one nearest to `wanted`.
std::vector<int> lengths(const GstStructure* offer, const char* field, int wanted) {
  const GValue* value = gst_structure_get_value(offer, field);
  std::vector<int> found;
  if (!value) return found;
  if (G_VALUE_HOLDS_INT(value))
    found.push_back(g_value_get_int(value));
  else if (GST_VALUE_HOLDS_LIST(value)) {
    for (guint i = 0; i < gst_value_list_get_size(value); i++)
      if (const auto* one = gst_value_list_get_value(value, i); G_VALUE_HOLDS_INT(one))
        found.push_back(g_value_get_int(one));
  } else if (GST_VALUE_HOLDS_INT_RANGE(value)) {
    const int least = gst_value_get_int_range_min(value),
              step = gst_value_get_int_range_step(value);
    const int most = gst_value_get_int_range_max(value);
    found.push_back(least + (std::clamp(wanted, least, most) - least) / step * step);
  }
  std::erase_if(found, [](int length) { return length <= 0; });
  return found;
}

std::vector<Size> sizes(const GstStructure* offer, const Size& nearest) {
  std::vector<Size> found;
  for (const int width : lengths(offer, "width", nearest.width))
    for (const int height : lengths(offer, "height", nearest.height))
      found.push_back({width, height});
  return found;
}

/// The offered rate nearest to `wanted`; absent when the offer says nothing of it.
std::optional<std::pair<int, int>> rateNear(const GstStructure* offer, int wanted) {
  if (!gst_structure_has_field(offer, "framerate")) return std::nullopt;
  const std::unique_ptr<GstStructure, decltype(&gst_structure_free)> fixed(
      gst_structure_copy(offer), gst_structure_free);
  gst_structure_fixate_field_nearest_fraction(fixed.get(), "framerate", wanted, 1);
  int numerator = 0, denominator = 1;
  if (!gst_structure_get_fraction(fixed.get(), "framerate", &numerator, &denominator) ||
      numerator <= 0)
    return std::nullopt; // varies
  return std::pair(numerator, denominator);
}

/// What the pixels are: how to make raw ones of them, and what that costs.
std::optional<Form> pixelsOf(const GstStructure* offer, const std::string& format) {
  const std::string_view name = gst_structure_get_name(offer);
  const std::string caps = std::string(name) + (format.empty() ? "" : ",format=(string)" + format);
  // Packed pictures cost more than raw ones.
  if (name == "image/jpeg") return Form{"image/jpeg", " ! jpegdec", 0.01};
  if (name == "video/x-bayer") {
    // Nobody has set the colours right.
    constexpr std::string_view known[] = {"bggr", "gbrg", "grbg", "rggb"};
    if (std::ranges::find(known, format) == std::end(known) || !hasElement("bayer2rgb"))
      return std::nullopt;
    // GStreamer 1.26's takes too little room for its pictures, unless what follows lends it some.
    return Form{caps,
                " ! bayer2rgb ! video/x-raw,format=(string)BGRx ! videoconvert ! "
                "video/x-raw,format=(string)I420",
                0.3};
  }
  if (name != "video/x-raw") return std::nullopt;
  if (format.empty()) return Form{caps, "", 0};
  const auto known = gst_video_format_from_string(format.c_str());
  if (known == GST_VIDEO_FORMAT_UNKNOWN || known == GST_VIDEO_FORMAT_ENCODED) return std::nullopt;
  const auto* info = gst_video_format_get_info(known);
  return Form{caps, "", GST_VIDEO_FORMAT_INFO_IS_GRAY(info) ? 16.0 : 0.0};
}

/// Adds how the lines come. False when they cannot be used.
bool addScan(Form& form, const GstStructure* offer) {
  if (!gst_structure_has_field(offer, "interlace-mode")) return true;
  const auto modes = texts(offer, "interlace-mode", "");
  for (const char* mode : {"progressive", "mixed", "interleaved"}) {
    if (std::ranges::find(modes, mode) == modes.end()) continue;
    form.caps += std::string(",interlace-mode=(string)") + mode;
    if (std::string_view(mode) == "progressive") return true;
    form.elements += " ! videoconvert ! deinterlace method=linear fields=top";
    form.cost += 0.5;
    return true;
  }
  return false;
}

Form withSize(Form form, const GstStructure* offer, const Size& size, CameraUse use) {
  const auto& wish = use == CameraUse::Film ? filmWish : stillWish;
  const bool large = size.pixels() > mostAtFullRate.pixels();
  form.cost += sizeCost(use, size);
  form.caps += ",width=" + std::to_string(size.width) + ",height=" + std::to_string(size.height);
  if (const auto rate = rateNear(offer, large ? 15 : 30)) {
    const double perSecond = double(rate->first) / rate->second;
    // A slow camera is worse than a small one.
    form.cost += wish.slowness * std::max(0.0, 1 - perSecond / wish.leastRate);
    form.caps += ",framerate=" + std::to_string(rate->first) + "/" + std::to_string(rate->second);
  }
  return form;
}

} // namespace

std::string chooseFormat(const GstCaps* offers, CameraUse use) {
  std::optional<Form> best;
  for (guint i = 0; offers && i < gst_caps_get_size(offers); i++) {
    const auto* features = gst_caps_get_features(offers, i);
    if (!gst_caps_features_is_equal(features, GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY)) continue;
    const auto* offer = gst_caps_get_structure(offers, i);
    for (const auto& format : texts(offer, "format", "")) {
      auto form = pixelsOf(offer, format);
      if (!form || !addScan(*form, offer)) continue;
      const auto& wish = use == CameraUse::Film ? filmWish : stillWish;
      for (const auto& size : sizes(offer, wish.nearest)) {
        auto sized = withSize(*form, offer, size, use);
        if (!best || sized.cost < best->cost) best = std::move(sized);
      }
    }
  }
  return best ? best->caps + best->elements : "";
}

} // namespace zuvi
