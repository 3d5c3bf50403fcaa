#include "platform/Foundation/ProgramRun.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>

#include <memory>
#include <utility>

#include <csignal>
#include <gio/gio.h>
#include <sys/prctl.h>

namespace zuvi {

namespace {

template <class Type> std::shared_ptr<Type> owned(Type* object) {
  return {object, g_object_unref};
}

/// Lives until the program has ended.
struct Run {
  std::shared_ptr<GSubprocess> program;
  std::shared_ptr<GDataInputStream> output;
  std::function<void(const std::string&)> line;
  std::function<void(int)> ended;
};

void onEnd(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Run> run(static_cast<Run*>(data));
  GSubprocess* program = run->program.get();
  g_subprocess_wait_finish(program, result, nullptr);
  run->ended(g_subprocess_get_if_exited(program) ? g_subprocess_get_exit_status(program) : -1);
}

void readLine(Run* run);

void onLine(GObject*, GAsyncResult* result, gpointer data) {
  auto* run = static_cast<Run*>(data);
  GError* error = nullptr;
  char* text = g_data_input_stream_read_line_finish(run->output.get(), result, nullptr, &error);
  if (!text) {
    if (error) g_subprocess_force_exit(run->program.get());
    g_clear_error(&error);
    g_subprocess_wait_async(run->program.get(), nullptr, onEnd, run);
    return;
  }
  const std::string line = text;
  g_free(text);
  run->line(line);
  readLine(run);
}

void readLine(Run* run) {
  // Below drawing: a program may print without pause.
  g_data_input_stream_read_line_async(run->output.get(), G_PRIORITY_LOW, nullptr, onLine, run);
}

void onWritten(GObject* pipe, GAsyncResult* result, gpointer kept) {
  const std::unique_ptr<std::string> input(static_cast<std::string*>(kept));
  g_output_stream_write_all_finish(G_OUTPUT_STREAM(pipe), result, nullptr, nullptr);
  g_output_stream_close_async(G_OUTPUT_STREAM(pipe), G_PRIORITY_DEFAULT, nullptr, nullptr, nullptr);
}

} // namespace

void runProgram(const std::vector<std::string>& command, const std::string& input,
                std::function<void(const std::string&)> line, std::function<void(int)> ended) {
  const auto launcher = owned(g_subprocess_launcher_new(
      GSubprocessFlags(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE)));
  g_subprocess_launcher_set_child_setup(
      launcher.get(), [](gpointer) { ::prctl(PR_SET_PDEATHSIG, SIGTERM); }, nullptr, nullptr);
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
  auto* kept = new std::string(input); // until it is written
  g_output_stream_write_all_async(g_subprocess_get_stdin_pipe(program), kept->data(), kept->size(),
                                  G_PRIORITY_DEFAULT, nullptr, onWritten, kept);
  GDataInputStream* output = g_data_input_stream_new(g_subprocess_get_stdout_pipe(program));
  readLine(new Run{owned(program), owned(output), std::move(line), std::move(ended)});
}

} // namespace zuvi
