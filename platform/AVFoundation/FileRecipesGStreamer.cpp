#include "platform/AVFoundation/SourceRecipesGStreamer.h"

namespace zuvi {

namespace {

// A file's sound, if any, is left alone.
constexpr const char* decodeFile =
    "filesrc name=file ! decodebin expose-all-streams=false caps=video/x-raw(ANY)";

SourceRecipe fileRecipe(const std::string& path, const std::string& launch) {
  SourceRecipe recipe;
  recipe.key = "file:" + path;
  recipe.launch = [launch] { return launch; };
  recipe.configure = [path](const Pipeline& pipeline) {
    g_object_set(pipeline.element("file"), "location", path.c_str(), nullptr);
  };
  return recipe;
}

} // namespace

SourceRecipe pictureRecipe(const std::string& path) {
  return fileRecipe(path, std::string(decodeFile) +
                              " ! imagefreeze is-live=true ! video/x-raw,framerate=30/1");
}

SourceRecipe filmRecipe(const std::string& path) {
  auto recipe = fileRecipe(path, std::string(decodeFile) + " ! queue max-size-buffers=3");
  recipe.paced = true;
  recipe.loops = true;
  return recipe;
}

} // namespace zuvi
