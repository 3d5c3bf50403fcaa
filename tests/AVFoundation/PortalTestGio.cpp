#include "platform/AVFoundation/CameraPortal.h"
#include "platform/AVFoundation/SystemCameraProvider.h"
#include "tests/AVFoundation/CameraFixture.h"

#include <future>
#include <thread>

#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <unistd.h>

namespace zuvi {
namespace {

constexpr const char* description = R"(<node><interface name="org.freedesktop.portal.Camera">
  <method name="AccessCamera"><arg type="a{sv}"/><arg type="o" direction="out"/></method>
  <method name="OpenPipeWireRemote"><arg type="a{sv}"/><arg type="h" direction="out"/></method></interface></node>)";

constexpr const char* requestPath = "/org/freedesktop/portal/desktop/request/1";

void handOver(GDBusMethodInvocation* invocation) {
  int ends[2];
  if (::pipe(ends) != 0 || ::write(ends[1], "remote", 6) != 6) return;
  auto* list = g_unix_fd_list_new();
  g_unix_fd_list_append(list, ends[0], nullptr);
  g_dbus_method_invocation_return_value_with_unix_fd_list(invocation, g_variant_new("(h)", 0),
                                                          list);
  g_object_unref(list);
  ::close(ends[0]);
  ::close(ends[1]);
}

/// A camera portal on a bus of its own, which is the session bus as long as this object lives.
class FakePortal {
public:
  FakePortal() {
    g_test_dbus_up(daemon_);
    thread_ = std::thread([this] { serve(); });
    ready_.get_future().wait();
  }
  ~FakePortal() {
    leave();
    g_test_dbus_stop(daemon_);
    g_object_unref(daemon_);
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    g_main_context_unref(context_);
  }
  FakePortal(const FakePortal&) = delete;

  /// Takes the portal off the bus.
  void leave() {
    ending_ = true;
    g_main_context_wakeup(context_);
    if (thread_.joinable()) thread_.join();
  }

  std::atomic<int> response = 0; ///< what the user says; below 0: nothing
  std::atomic<int> asked = 0;    ///< how often the user was asked

private:
  void serve() {
    g_main_context_push_thread_default(context_);
    connection_ = g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(daemon_),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr);
    GDBusInterfaceVTable table{};
    table.method_call = [](GDBusConnection*, const char* sender, const char*, const char*,
                           const char* method, GVariant*, GDBusMethodInvocation* invocation,
                           gpointer self) {
      if (std::string(method) == "OpenPipeWireRemote") return handOver(invocation);
      static_cast<FakePortal*>(self)->askUser(sender, invocation);
    };
    auto* node = g_dbus_node_info_new_for_xml(description, nullptr);
    g_dbus_connection_register_object(connection_, "/org/freedesktop/portal/desktop",
                                      node->interfaces[0], &table, this, nullptr, nullptr);
    g_bus_own_name_on_connection(
        connection_, "org.freedesktop.portal.Desktop", G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer data) {
          static_cast<FakePortal*>(data)->ready_.set_value();
        },
        nullptr, this, nullptr);
    while (!ending_)
      g_main_context_iteration(context_, TRUE);
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
    g_dbus_node_info_unref(node);
    g_main_context_pop_thread_default(context_);
  }

  void askUser(const char* sender, GDBusMethodInvocation* invocation) {
    g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", requestPath));
    asked++;
    if (response < 0) return;
    GVariantBuilder results;
    g_variant_builder_init(&results, G_VARIANT_TYPE_VARDICT);
    g_dbus_connection_emit_signal(connection_, sender, requestPath,
                                  "org.freedesktop.portal.Request", "Response",
                                  g_variant_new("(ua{sv})", guint32(response), &results), nullptr);
  }

  GTestDBus* daemon_ = g_test_dbus_new(G_TEST_DBUS_NONE);
  GMainContext* context_ = g_main_context_new();
  GDBusConnection* connection_ = nullptr;
  std::promise<void> ready_;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

using Status = AVAuthorizationStatus;

class PortalTest : public CameraTest {
protected:
  std::shared_ptr<SystemCameraProvider> provider() {
    return make<SystemCameraProvider>(std::map<std::string, AVCaptureDevicePosition>{},
                                      SystemCameraProvider::Access::Portal);
  }
  /// 1 granted, 0 refused, -1 no answer.
  static std::shared_ptr<std::atomic<int>> start(SystemCameraProvider& asking) {
    auto answer = std::make_shared<std::atomic<int>>(-1);
    asking.requestAccess([answer](bool granted) { *answer = granted; });
    return answer;
  }
  int ask(SystemCameraProvider& from) {
    const auto answer = start(from);
    time.waitUntil([&] { return *answer >= 0; });
    return *answer;
  }
};

TEST_F(PortalTest, AnswersAreTheUsers) {
  FakePortal portal;
  const auto cameras = provider();
  EXPECT_EQ(cameras->authorizationStatus(), Status::NotDetermined);
  for (int refusals = 1; refusals <= 2; refusals++) {
    portal.response = 1;
    EXPECT_EQ(ask(*cameras), 0);
    EXPECT_EQ(portal.asked, refusals);
    EXPECT_EQ(cameras->authorizationStatus(), Status::NotDetermined) << "may be asked again";
  }
  portal.response = 0;
  EXPECT_EQ(ask(*cameras), 1);
  EXPECT_EQ(cameras->authorizationStatus(), Status::Authorized);
  EXPECT_EQ(ask(*cameras), 1);
  EXPECT_EQ(portal.asked, 3) << "known by now";
}

TEST_F(PortalTest, StandsForBothSidesUntilTheUserHasAgreed) {
  FakePortal portal;
  auto cameras = provider();
  const auto devices = cameras->devices();
  ASSERT_EQ(devices.size(), 2U);
  EXPECT_EQ(devices[0].position, AVCaptureDevicePosition::Front);
  EXPECT_EQ(devices[1].position, AVCaptureDevicePosition::Back);
  EXPECT_TRUE(cameras->open(devices[1].uniqueID)) << "it opens once the user has agreed";
  const int descriptor = CameraPortal::openCameras();
  ASSERT_GE(descriptor, 0);
  char text[8] = {};
  EXPECT_EQ(::read(descriptor, text, 6), 6);
  EXPECT_STREQ(text, "remote");
  ::close(descriptor);
}

TEST_F(PortalTest, NoPortalIsANo) {
  {
    FakePortal portal;
    portal.response = -1; // the dialogue stays open until the portal is gone
    auto cameras = provider();
    const auto answer = start(*cameras);
    EXPECT_TRUE(time.waitUntil([&] { return portal.asked > 0; }));
    EXPECT_EQ(*answer, -1);
    portal.leave();
    EXPECT_TRUE(time.waitUntil([&] { return *answer == 0; }));
  }
  auto cameras = provider(); // not even a bus
  EXPECT_EQ(ask(*cameras), 0);
  EXPECT_EQ(CameraPortal::openCameras(), -1);
}

} // namespace
} // namespace zuvi
