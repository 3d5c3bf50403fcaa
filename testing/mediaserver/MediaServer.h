#pragma once

#include "testing/support/ChildProcess.h"
#include "testing/support/TemporaryFolder.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>

#include <gio/gio.h>

namespace zuvi::test {

/// The desktop's media server and its session manager, on a bus and in folders of the test's own.
/// One for the whole process: whoever watches the machine's cameras does so to its end.
class MediaServer {
public:
  static MediaServer& instance() {
    static MediaServer server;
    return server;
  }

  const TemporaryFolder& folder() const { return folder_; }

  /// Ends it, as an update of the system does; its cameras go with it.
  void stop() {
    manager_.reset();
    server_.reset();
  }
  /// Returns once cameras may come.
  void start() {
    server_.emplace(std::vector<std::string>{"pipewire"}, folder_.path("pipewire.log"));
    if (!comesToHold([] { return !std::system("pw-cli info 0 >/dev/null 2>&1"); }))
      throw std::runtime_error("the media server does not start");
    manager_.emplace(std::vector<std::string>{"wireplumber"}, folder_.path("wireplumber.log"));
    // A camera that comes before the manager is ready is overlooked.
    if (!comesToHold([] { return !std::system("pw-dump 2>/dev/null | grep -q metadata.name"); }))
      throw std::runtime_error("the session manager does not start");
  }

private:
  MediaServer() {
    std::error_code none; // see tests.cmake
    if (std::filesystem::file_size("/.flatpak-info", none) == 0)
      std::filesystem::remove("/.flatpak-info", none);
    g_test_dbus_up(bus_); // first, as it forgets the folder of the runtime
    // The server is found by this folder, and nothing of the person's own desktop.
    for (const auto& [name, part] : {std::pair("XDG_RUNTIME_DIR", "run"),
                                     {"HOME", "home"},
                                     {"XDG_CONFIG_HOME", "config"},
                                     {"XDG_STATE_HOME", "state"},
                                     {"XDG_DATA_HOME", "data"}}) {
      std::filesystem::create_directory(folder_.path(part));
      ::setenv(name, folder_.path(part).c_str(), 1);
    }
    // Without systemd's folders, as in a container, the manager would end for want of sessions; its
    // version 0.4 reads the first of these, 0.5 the other.
    for (const auto& [file, text] :
         {std::pair("config/wireplumber/bluetooth.lua.d/51-here.lua",
                    "bluez_monitor.properties[\"with-logind\"] = false\n"),
          {"config/wireplumber/wireplumber.conf.d/here.conf",
           "wireplumber.profiles = { main = { support.logind = disabled } }\n"}}) {
      std::filesystem::create_directories(std::filesystem::path(folder_.path(file)).parent_path());
      folder_.write(file, text);
    }
    std::filesystem::permissions(folder_.path("run"), std::filesystem::perms::owner_all);
    ::unsetenv("PIPEWIRE_REMOTE");
    ::unsetenv("PIPEWIRE_RUNTIME_DIR");
    start();
  }
  ~MediaServer() {
    stop();
    g_test_dbus_stop(bus_);
    g_object_unref(bus_);
  }

  TemporaryFolder folder_;
  GTestDBus* bus_ = g_test_dbus_new(G_TEST_DBUS_NONE);
  std::optional<ChildProcess> server_, manager_;
};

/// A camera of the media server: a picture of one colour, in the way in which webcams offer theirs.
class VirtualCamera {
public:
  struct Traits {
    std::string location = {};  ///< "front", "back" or "external"; empty: it tells none
    std::string colour = "red"; ///< "red", "green" or "blue"
  };

  /// Returns once the media server has it.
  VirtualCamera(const std::string& name, const Traits& traits)
      : log_(MediaServer::instance().folder().path(name + ".log")),
        process_({ZUVI_VIRTUAL_CAMERA, name, traits.colour, traits.location}, log_) {
    if (!comesToHold([this] { return !TemporaryFolder::read(log_).empty(); }))
      throw std::runtime_error("the camera " + name + " does not start");
  }
  ~VirtualCamera() {
    unplug();
    std::filesystem::remove(log_);
  }

  /// Pulls the plug.
  void unplug() { process_.end(SIGKILL); }

private:
  const std::string log_;
  ChildProcess process_;
};

} // namespace zuvi::test
