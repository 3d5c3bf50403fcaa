#include "demo/verify/JSONOutput.h"

#include "platform/Foundation/JSONSerialization.h"

#include <fcntl.h>
#include <unistd.h>

namespace zuvi::demo {

JSONOutput::JSONOutput()
    : file_(::fdopen(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1), "w")) {
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

void JSONOutput::write(const Value::Dictionary& object) const {
  const auto line = JSONSerialization::data(object);
  if (!file_ || !line) return;
  std::fprintf(file_, "%s\n", line->string().c_str());
  std::fflush(file_);
}

} // namespace zuvi::demo
