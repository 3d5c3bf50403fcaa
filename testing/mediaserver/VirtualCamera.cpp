// A camera of the media server until it is killed: VirtualCamera NAME COLOUR LOCATION. It gives 30
// pictures of one colour a second, like a webcam: YUY2, 1280 x 720, the server's clock follows it.
// gst-launch's pipewiresink would do, but on PipeWire 1.4 it ends with its first client.

#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include <pipewire/pipewire.h>
#include <spa/param/buffers.h>
#include <spa/param/video/format-utils.h>

namespace {

constexpr uint32_t width = 1280, height = 720, stride = width * 2;
constexpr int64_t interval = SPA_NSEC_PER_SEC / 30;

struct Camera {
  std::array<uint8_t, 4> pixels{}; ///< of two neighbours: Y, U, Y, V
  pw_loop* loop = nullptr;
  pw_stream* stream = nullptr;
  spa_source* timer = nullptr;
};

void changeState(void* data, pw_stream_state, pw_stream_state state, const char*) {
  const auto& camera = *static_cast<Camera*>(data);
  if (state == PW_STREAM_STATE_PAUSED) {
    std::puts("ready");
    std::fflush(stdout);
  }
  timespec first{0, state == PW_STREAM_STATE_STREAMING ? 1 : 0}, next{0, interval};
  pw_loop_update_timer(camera.loop, camera.timer, &first, &next, false);
}

void changeParameter(void* data, uint32_t id, const spa_pod* format) {
  if (id != SPA_PARAM_Format || !format) return;
  std::array<uint8_t, 512> memory{};
  spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), uint32_t(memory.size()));
  const auto* buffers = static_cast<const spa_pod*>(spa_pod_builder_add_object(
      &builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
      SPA_POD_CHOICE_RANGE_Int(8, 2, 16), SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1),
      SPA_PARAM_BUFFERS_size, SPA_POD_Int(stride * height), SPA_PARAM_BUFFERS_stride,
      SPA_POD_Int(stride)));
  pw_stream_update_params(static_cast<Camera*>(data)->stream, &buffers, 1);
}

void drawPicture(void* data) {
  const auto& camera = *static_cast<Camera*>(data);
  pw_buffer* buffer = pw_stream_dequeue_buffer(camera.stream);
  if (!buffer) return;
  spa_data& picture = buffer->buffer->datas[0];
  for (uint32_t at = 0; picture.data && at < stride * height; at += 4)
    std::memcpy(static_cast<uint8_t*>(picture.data) + at, camera.pixels.data(), 4);
  *picture.chunk = {0, stride * height, int32_t(stride), 0};
  pw_stream_queue_buffer(camera.stream, buffer);
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::string_view colour = argv[2], location = argv[3];
  Camera camera;
  camera.pixels = colour == "red"     ? std::array<uint8_t, 4>{81, 90, 81, 240}
                  : colour == "green" ? std::array<uint8_t, 4>{145, 54, 145, 34}
                                      : std::array<uint8_t, 4>{41, 240, 41, 110};
  pw_init(nullptr, nullptr);
  pw_main_loop* loop = pw_main_loop_new(nullptr);
  camera.loop = pw_main_loop_get_loop(loop);
  pw_properties* traits =
      pw_properties_new(PW_KEY_MEDIA_CLASS, "Video/Source", PW_KEY_MEDIA_ROLE, "Camera",
                        PW_KEY_NODE_NAME, argv[1], PW_KEY_NODE_DESCRIPTION, argv[1], nullptr);
  if (!location.empty()) pw_properties_set(traits, "api.libcamera.location", argv[3]);
  pw_stream_events events{};
  events.version = PW_VERSION_STREAM_EVENTS;
  events.state_changed = changeState;
  events.param_changed = changeParameter;
  events.process = drawPicture;
  camera.stream = pw_stream_new_simple(camera.loop, argv[1], traits, &events, &camera);
  camera.timer = pw_loop_add_timer(
      camera.loop,
      [](void* data, uint64_t) { pw_stream_trigger_process(static_cast<Camera*>(data)->stream); },
      &camera);

  std::array<uint8_t, 512> memory{};
  spa_pod_builder builder = SPA_POD_BUILDER_INIT(memory.data(), uint32_t(memory.size()));
  const spa_rectangle size = SPA_RECTANGLE(width, height);
  const spa_fraction rate = SPA_FRACTION(30, 1);
  const auto* format = static_cast<const spa_pod*>(spa_pod_builder_add_object(
      &builder, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat, SPA_FORMAT_mediaType,
      SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype, SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw),
      SPA_FORMAT_VIDEO_format, SPA_POD_Id(SPA_VIDEO_FORMAT_YUY2), SPA_FORMAT_VIDEO_size,
      SPA_POD_Rectangle(&size), SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&rate)));
  if (pw_stream_connect(camera.stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                        pw_stream_flags(PW_STREAM_FLAG_DRIVER | PW_STREAM_FLAG_MAP_BUFFERS),
                        &format, 1) < 0)
    return 1;
  return pw_main_loop_run(loop);
}
