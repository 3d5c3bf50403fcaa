#include "tests/AVFoundation/StandInCameraGStreamer.h"

#include "platform/AVFoundation/CameraStreamGStreamer.h"
#include "platform/AVFoundation/SourceRecipesGStreamer.h"
#include "platform/AVFoundation/StillGStreamer.h"
#include "platform/Foundation/Make.h"
#include "tests/AVFoundation/MediaReaderGStreamer.h"

#include <algorithm>
#include <map>
#include <mutex>

#include <gst/base/gstpushsrc.h>
#include <gtest/gtest.h>

namespace zuvi {

namespace {

/// What the elements of one camera have in common, by its key.
struct Shared {
  StandInCamera camera;
  std::string given;
};
std::mutex mutex;
std::map<std::string, Shared>& cameras() {
  static std::map<std::string, Shared> known;
  return known;
}

struct StandIn {
  GstPushSrc parent;
  std::string* key;
  GstMini<GstBuffer>* picture; ///< in the form that was chosen
  int rate;
  std::uint64_t count;
};
struct StandInClass {
  GstPushSrcClass parent;
};
G_DEFINE_TYPE(StandIn, stand_in, GST_TYPE_PUSH_SRC)

StandIn* of(gpointer object) {
  return static_cast<StandIn*>(object);
}

/// Left half red, right half blue, as ordinary pixels.
CameraFrame twoColours(int width, int height) {
  auto frame = solidFrame(width, height, {200, 40, 40}, 0);
  auto* buffer = gst_sample_get_buffer(frame.sample.get());
  GstMapInfo map;
  gst_buffer_map(buffer, &map, GST_MAP_WRITE);
  for (int y = 0; y < height; y++)
    for (int x = width / 2; x < width; x++)
      std::copy_n("\x28\x28\xc8", 3, map.data + (std::size_t(y) * width + x) * 4);
  gst_buffer_unmap(buffer, &map);
  return frame;
}

GstMini<GstBuffer> rawPicture(const GstVideoInfo& info) {
  GstVideoInfo from, to = info;
  const auto source = twoColours(info.width, info.height);
  gst_video_info_from_caps(&from, gst_sample_get_caps(source.sample.get()));
  from.fps_n = info.fps_n;
  from.fps_d = info.fps_d;
  from.interlace_mode = info.interlace_mode;
  GstMini<GstBuffer> buffer(gst_buffer_new_allocate(nullptr, info.size, nullptr));
  auto* converter = gst_video_converter_new(&from, &to, nullptr);
  GstVideoFrame in, out;
  gst_video_frame_map(&in, &from, gst_sample_get_buffer(source.sample.get()), GST_MAP_READ);
  gst_video_frame_map(&out, &to, buffer.get(), GST_MAP_WRITE);
  gst_video_converter_frame(converter, &in, &out);
  gst_video_frame_unmap(&out);
  gst_video_frame_unmap(&in);
  gst_video_converter_free(converter);
  return buffer;
}

/// Blue, green, green and red of two by two pixels.
GstMini<GstBuffer> bayerPicture(int width, int height) {
  std::string pixels;
  for (int y = 0; y < height; y++) {
    std::string row;
    for (int x = 0; x < width; x++) {
      const bool left = x < width / 2;
      const int red = left ? 200 : 40, blue = left ? 40 : 200;
      row += char(y % 2 == 0 ? (x % 2 == 0 ? blue : 40) : (x % 2 == 0 ? 40 : red));
    }
    row.resize(std::size_t(width + 3) & ~std::size_t(3)); // rows begin at multiples of four
    pixels += row;
  }
  return GstMini<GstBuffer>(gst_buffer_new_memdup(pixels.data(), pixels.size()));
}

gboolean setCaps(GstBaseSrc* element, GstCaps* caps) {
  auto& self = *of(element);
  const auto* form = gst_caps_get_structure(caps, 0);
  int width = 0, height = 0, rate = 30, per = 1;
  gst_structure_get_int(form, "width", &width);
  gst_structure_get_int(form, "height", &height);
  gst_structure_get_fraction(form, "framerate", &rate, &per);
  self.rate = std::max(1, rate / std::max(1, per));
  const std::string name = gst_structure_get_name(form);
  GstVideoInfo info;
  if (!gst_caps_features_is_equal(gst_caps_get_features(caps, 0),
                                  GST_CAPS_FEATURES_MEMORY_SYSTEM_MEMORY))
    return FALSE;
  if (name == "image/jpeg") {
    const auto jpeg = *encodeStill(twoColours(width, height));
    self.picture->reset(gst_buffer_new_memdup(jpeg.bytes(), jpeg.size()));
  } else if (name == "video/x-bayer") {
    *self.picture = bayerPicture(width, height);
  } else if (gst_video_info_from_caps(&info, caps)) {
    *self.picture = rawPicture(info);
  } else {
    return FALSE;
  }
  const std::unique_ptr<char, decltype(&g_free)> text(gst_caps_to_string(caps), g_free);
  std::lock_guard lock(mutex);
  cameras()[*self.key].given = text.get();
  return TRUE;
}

GstCaps* offersOf(GstBaseSrc* element, GstCaps* filter) {
  std::string offers = "ANY"; // before it is told which camera it is
  if (!of(element)->key->empty()) {
    std::lock_guard lock(mutex);
    offers = cameras()[*of(element)->key].camera.offers;
  }
  GstMini<GstCaps> caps(gst_caps_from_string(offers.c_str()));
  return filter ? gst_caps_intersect(filter, caps.get()) : caps.release();
}

GstFlowReturn create(GstPushSrc* element, GstBuffer** buffer) {
  auto& self = *of(element);
  if (self.count++ == 0) {
    std::lock_guard lock(mutex);
    const auto& tag = cameras()[*self.key].camera.orientationTag;
    if (!tag.empty())
      gst_pad_push_event(
          GST_BASE_SRC_PAD(element),
          gst_event_new_tag(gst_tag_list_new(GST_TAG_IMAGE_ORIENTATION, tag.c_str(), nullptr)));
  }
  g_usleep(gulong(G_USEC_PER_SEC / self.rate)); // the sensor's pace
  *buffer = gst_buffer_copy(self.picture->get());
  return GST_FLOW_OK;
}

void finalize(GObject* object) {
  delete of(object)->picture;
  delete of(object)->key;
  G_OBJECT_CLASS(stand_in_parent_class)->finalize(object);
}

void stand_in_init(StandIn* self) {
  self->key = new std::string;
  self->picture = new GstMini<GstBuffer>;
  gst_base_src_set_live(GST_BASE_SRC(self), TRUE);
  gst_base_src_set_format(GST_BASE_SRC(self), GST_FORMAT_TIME);
  gst_base_src_set_do_timestamp(GST_BASE_SRC(self), TRUE);
}

void stand_in_class_init(StandInClass* type) {
  G_OBJECT_CLASS(type)->finalize = finalize;
  auto* base = GST_BASE_SRC_CLASS(type);
  base->set_caps = setCaps;
  base->get_caps = offersOf;
  GST_PUSH_SRC_CLASS(type)->create = create;
  auto* element = GST_ELEMENT_CLASS(type);
  GstMini<GstCaps> any(gst_caps_new_any());
  gst_element_class_add_pad_template(
      element, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, any.get()));
  gst_element_class_set_static_metadata(element, "Camera", "Source/Video", "Stands in", "us");
}

} // namespace

StandInProvider::StandInProvider(StandInCamera camera, AVCaptureDevicePosition position)
    : camera_(std::move(camera)), position_(position), key_("stand-in:" + std::to_string(++made_)) {
  startGStreamer();
  static const bool registered =
      gst_element_register(nullptr, "zuvistandin", GST_RANK_NONE, stand_in_get_type());
  EXPECT_TRUE(registered);
  std::lock_guard lock(mutex);
  cameras()[key_] = {camera_, {}};
}

std::shared_ptr<CameraStream> StandInProvider::open(const std::string&) {
  CameraElement element;
  element.key = key_;
  element.factory = "zuvistandin";
  element.configure = [key = key_](GstElement* source) { *of(source)->key = key; };
  element.formats = [offers = camera_.offers] {
    return std::shared_ptr<GstCaps>(gst_caps_from_string(offers.c_str()), GstMiniUnref());
  };
  element.rotation = [camera = camera_]() -> std::optional<int> {
    if (!camera.orientationTag.empty()) return std::nullopt;
    return camera.rotation;
  };
  CameraOpening opening;
  opening.recipe = [element] { return std::optional(deviceRecipe(element)); };
  return make<CameraStreamGStreamer>(std::move(opening));
}

std::string StandInProvider::given() const {
  std::lock_guard lock(mutex);
  return cameras()[key_].given;
}

} // namespace zuvi
