#include "platform/AVFoundation/MediaServerLink.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace zuvi {

namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// Where the server listens, by the same variables by which its clients find it.
std::string socketPath() {
  auto name = variable("PIPEWIRE_REMOTE");
  if (name.empty()) name = "pipewire-0";
  if (name.front() == '/') return name;
  auto folder = variable("PIPEWIRE_RUNTIME_DIR");
  if (folder.empty()) folder = variable("XDG_RUNTIME_DIR");
  return folder.empty() ? "" : folder + "/" + name;
}

} // namespace

std::unique_ptr<MediaServerLink> MediaServerLink::toMachine() {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto path = socketPath();
  if (path.empty() || path.size() >= sizeof address.sun_path) return nullptr;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  std::unique_ptr<MediaServerLink> link(
      new MediaServerLink(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)));
  const auto* where = reinterpret_cast<const sockaddr*>(&address);
  return ::connect(link->descriptor_, where, sizeof address) == 0 ? std::move(link) : nullptr;
}

std::unique_ptr<MediaServerLink> MediaServerLink::by(int descriptor) {
  const int own = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  return std::unique_ptr<MediaServerLink>(own < 0 ? nullptr : new MediaServerLink(own));
}

MediaServerLink::~MediaServerLink() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

} // namespace zuvi
