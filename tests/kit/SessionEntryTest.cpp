#include "kit/Helper/ZVExtensions.h"
#include "tests/kit/KitTest.h"

namespace zuvi {
namespace {

class SessionEntryTest : public KitTest {};

TEST_F(SessionEntryTest, RegistersInOrder) {
  backend.hold();
  backend.answer(R"({"name":"N","configurations":[{"color":"red"}]})");
  int updates = 0;
  std::string nameWhenTold;
  const auto observer = NotificationCenter::defaultCenter().observe(
      merchantUpdatedNotification, [&](const Notification& notice) {
        updates++;
        nameWhenTold = ZVKYCHelper::instance().merchant->displayName.value_or("-");
        EXPECT_TRUE(notice.userInfo.empty());
      });
  ZVKYC::registerWithClientId("client 1", Value::Dictionary{{"a", 1}});
  EXPECT_EQ(*transport().authorization, "Bearer client 1");
  EXPECT_TRUE(zvSFProText(FontStyle::bold, 12));
  EXPECT_TRUE(ZVKYC::instance().metadata);
  EXPECT_TRUE(time.waitUntil([&] { return backend.requests().size() == 1; }));
  const auto request = backend.requests()[0];
  EXPECT_EQ(request.method + " " + request.path, "GET /api/v1/merchants/me");
  EXPECT_EQ(request.headers.at("authorization"), "Bearer client 1");
  EXPECT_EQ(request.body, "");
  EXPECT_EQ(updates, 0);
  backend.release();
  EXPECT_TRUE(time.waitUntil([&] { return updates == 1; }));
  EXPECT_EQ(nameWhenTold, "N") << "the record is in force before anybody is told";

  // Once more, without metadata and with another id.
  registerClient("2");
  EXPECT_EQ(backend.requests().back().headers.at("authorization"), "Bearer 2");
  EXPECT_FALSE(ZVKYC::instance().metadata);
  EXPECT_EQ(updates, 2);

  ZVKYCHelper::instance().clinetId = std::nullopt;
  time.settle();
  EXPECT_EQ(*transport().authorization, "Bearer 2") << "an absent id changes nothing";
  EXPECT_EQ(backend.requests().size(), 2U);
}

TEST_F(SessionEntryTest, KeepsTheRecordWhenNoMerchantComes) {
  backend.answer(R"({"name":"First"})");
  registerClient("1");
  const auto kept = ZVKYCHelper::instance().merchant;
  for (const char* body : {"", "[]", "<html>"}) {
    backend.answer(body);
    registerClient("1"); // waits for the notice
    EXPECT_EQ(ZVKYCHelper::instance().merchant, kept) << body;
  }
  backend.answer(
      [](const auto&) { return test::Reply{.mode = test::Reply::Mode::DropConnection}; });
  registerClient("1");
  EXPECT_EQ(ZVKYCHelper::instance().merchant, kept);
  backend.answer(R"({"message":"who are you"})", 401);
  registerClient("1");
  EXPECT_FALSE(ZVKYCHelper::instance().merchant->displayName) << "an error object is a record too";
}

TEST_F(SessionEntryTest, TellsTheDelegateHowARunEnded) {
  using Id = std::optional<std::string>;
  const struct {
    Id host, run;
    std::vector<std::string> calls;
  } rows[] = {{Id("h"), Id("r"), {"success h"}},
              {Id("h"), Id(), {"success h"}},
              {Id(), Id("r"), {"success r"}},
              {Id(), Id(), {}}};
  ZVKYCHelper& helper = ZVKYCHelper::instance();
  for (const auto& row : rows) {
    delegate->calls.clear();
    ZVKYC::instance().identityId = row.host;
    helper.tempIdentity = row.run;
    helper.success();
    EXPECT_EQ(delegate->calls, row.calls);
    helper.cancelled();
    EXPECT_EQ(delegate->calls.back(), "cancelled");
  }
  const auto calls = delegate->calls;
  const std::weak_ptr<RecordingDelegate> gone = std::exchange(delegate, nullptr);
  EXPECT_TRUE(gone.expired()) << "the kit does not keep it alive";
  helper.success();
  helper.cancelled();
}

} // namespace
} // namespace zuvi
