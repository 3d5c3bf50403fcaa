#include "platform/Foundation/ProgramRun.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <csignal>
#include <gio/gio.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace zuvi {

namespace {

template <class Type> std::shared_ptr<Type> owned(Type* object) {
  return {object, g_object_unref};
}

constexpr std::size_t longestLine = 1 << 20; // bytes; a program that prints more has gone wrong

/// Lives until the program has ended.
struct Run {
  std::shared_ptr<GSubprocess> program;
  std::function<void(const std::string&)> line;
  std::function<void(int)> ended;
  std::string text; ///< of a line whose end has not come
  std::array<char, 4096> buffer;
};

void onEnd(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Run> run(static_cast<Run*>(data));
  GSubprocess* program = run->program.get();
  g_subprocess_wait_finish(program, result, nullptr);
  run->ended(g_subprocess_get_if_exited(program) ? g_subprocess_get_exit_status(program) : -1);
}

void read(Run* run);

void onRead(GObject* pipe, GAsyncResult* result, gpointer data) {
  auto* run = static_cast<Run*>(data);
  const gssize size = g_input_stream_read_finish(G_INPUT_STREAM(pipe), result, nullptr);
  run->text.append(run->buffer.data(), std::size_t(std::max<gssize>(size, 0)));
  if (size <= 0 && !run->text.empty()) run->text += '\n'; // the last line may lack it
  std::size_t begin = 0;
  for (std::size_t end; (end = run->text.find('\n', begin)) != std::string::npos; begin = end + 1)
    run->line(run->text.substr(begin, end - begin));
  run->text.erase(0, begin);
  if (size > 0 && run->text.size() <= longestLine) return read(run);
  if (size != 0) g_subprocess_force_exit(run->program.get());
  g_subprocess_wait_async(run->program.get(), nullptr, onEnd, run);
}

void read(Run* run) {
  // Below drawing: a program may print without pause.
  g_input_stream_read_async(g_subprocess_get_stdout_pipe(run->program.get()), run->buffer.data(),
                            run->buffer.size(), G_PRIORITY_LOW, nullptr, onRead, run);
}

/// A file in memory, at its beginning: what it holds is on no disk, and a program that ends before
/// it has read it does no harm, as one behind a pipe would. -1: there is none.
int fileOf(const std::string& text) {
  const int file = ::memfd_create("input", MFD_CLOEXEC);
  std::size_t written = 0;
  while (file >= 0 && written < text.size()) {
    const ssize_t more = ::write(file, text.data() + written, text.size() - written);
    if (more < 0) break;
    written += std::size_t(more);
  }
  if (file >= 0) ::lseek(file, 0, SEEK_SET);
  return file;
}

} // namespace

void runProgram(const std::vector<std::string>& command, const std::string& input,
                std::function<void(const std::string&)> line, std::function<void(int)> ended) {
  const auto launcher = owned(g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE));
  g_subprocess_launcher_set_child_setup(
      launcher.get(), [](gpointer) { ::prctl(PR_SET_PDEATHSIG, SIGTERM); }, nullptr, nullptr);
  g_subprocess_launcher_take_stdin_fd(launcher.get(), fileOf(input));
  std::vector<const char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& part : command)
    arguments.push_back(part.c_str());
  arguments.push_back(nullptr);
  GSubprocess* program = g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), nullptr);
  if (!program) {
    DispatchQueue::main().async([ended = std::move(ended)] { ended(-1); });
    return;
  }
  read(new Run{owned(program), std::move(line), std::move(ended), {}, {}});
}

} // namespace zuvi
