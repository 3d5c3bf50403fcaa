#include "platform/AVFoundation/SourceRecipesGStreamer.h"

#include <array>
#include <fstream>

namespace zuvi {

namespace {

// A file's sound, if any, is left alone.
constexpr const char* decodeFile =
    "filesrc name=file ! decodebin expose-all-streams=false caps=video/x-raw(ANY)";
// Only the parser reads how the camera was held.
constexpr const char* decodeJpeg = "filesrc name=file ! jpegparse ! jpegdec";

bool isJpeg(const std::string& path) {
  std::array<char, 2> head{};
  std::ifstream(path, std::ios::binary).read(head.data(), head.size());
  return head == std::array{'\xff', '\xd8'};
}

SourceRecipe fileRecipe(const std::string& path, const std::string& launch) {
  SourceRecipe recipe;
  recipe.key = "file:" + path;
  recipe.launch = [launch](CameraUse) { return launch; };
  recipe.configure = [path](const Pipeline& pipeline) {
    g_object_set(pipeline.element("file"), "location", path.c_str(), nullptr);
  };
  return recipe;
}

} // namespace

SourceRecipe pictureRecipe(const std::string& path) {
  return fileRecipe(path, (isJpeg(path) ? decodeJpeg : decodeFile) + upright({}) +
                              " ! imagefreeze is-live=true ! video/x-raw,framerate=30/1");
}

SourceRecipe filmRecipe(const std::string& path) {
  auto recipe = fileRecipe(path, decodeFile + upright({}) + " ! queue max-size-buffers=3");
  recipe.paced = true;
  recipe.loops = true;
  return recipe;
}

} // namespace zuvi
