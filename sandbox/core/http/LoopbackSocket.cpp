#include "sandbox/core/http/LoopbackSocket.h"

#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zuvi::sandbox {

Result<ListeningSocket> listenOnLoopback(std::uint16_t port) {
  const auto failure = [port](const char* what) {
    return Error{"cannot " + std::string(what) + " port " + std::to_string(port) + ": " +
                 std::strerror(errno)};
  };
  const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return failure("open a socket for");
  const int yes = 1;
  setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);

  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(descriptor, generic, length) != 0 || listen(descriptor, SOMAXCONN) != 0 ||
      getsockname(descriptor, generic, &length) != 0) {
    auto error = failure("listen on");
    close(descriptor);
    return error;
  }
  return ListeningSocket{descriptor, ntohs(address.sin_port)};
}

} // namespace zuvi::sandbox
