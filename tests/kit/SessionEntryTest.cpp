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
      merchantUpdatedNotification, [&](const Notification&) {
        updates++;
        nameWhenTold = ZVKYCHelper::instance().merchant->displayName.value_or("-");
      });
  ZVKYC::registerWithClientId("client 1", Value::Dictionary{{"a", 1}});
  EXPECT_EQ(*transport().authorization, "Bearer client 1");
  EXPECT_TRUE(time.waitUntil([&] { return backend.requests().size() == 1; }));
  const auto request = backend.requests()[0];
  EXPECT_EQ(request.method + " " + request.path, "GET /api/v1/merchants/me");
  EXPECT_EQ(request.headers.at("authorization"), "Bearer client 1");
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
  ZVKYCHelper& helper = ZVKYCHelper::instance();
  helper.success();
  EXPECT_TRUE(delegate->calls.empty()) << "there is no identity to tell";
  helper.tempIdentity = "run's";
  helper.success();
  ZVKYC::instance().identityId = "host's";
  helper.success();
  helper.cancelled();
  EXPECT_THAT(delegate->calls,
              testing::ElementsAre("success run's", "success host's", "cancelled"));
  const std::weak_ptr<RecordingDelegate> gone = std::exchange(delegate, nullptr);
  EXPECT_TRUE(gone.expired()) << "the kit does not keep it alive";
  helper.success();
  helper.cancelled();
}

} // namespace
} // namespace zuvi
