#include "demo/core/Options.h"

#include <gtest/gtest.h>

namespace zuvi::demo {
namespace {

std::string problemWith(const std::vector<std::string>& arguments) {
  const auto parsed = parseOptions(arguments);
  const auto* problem = std::get_if<std::string>(&parsed);
  return problem ? *problem : "";
}

TEST(DemoOptions, ReadsWhatItIsGiven) {
  const auto parsed = parseOptions(
      {"--client-id", "demo", "--metadata", "a=1", "--metadata", "b=x=y", "--identity", "id-1",
       "--server", "https://host/api/", "--front-camera", "simulated", "--back-camera", "none",
       "--camera-permission", "refuse", "--screen", "320x568@1.5", "--offscreen"});
  ASSERT_TRUE(std::holds_alternative<Options>(parsed)) << std::get<std::string>(parsed);
  const auto& options = std::get<Options>(parsed);
  EXPECT_EQ(options.clientId, "demo");
  EXPECT_EQ(options.metadata.at("b"), Value("x=y"));
  EXPECT_EQ(options.identity, "id-1");
  EXPECT_EQ(options.frontCamera->kind, CameraSourceDescription::Kind::Simulated);
  EXPECT_EQ(options.backCamera->kind, CameraSourceDescription::Kind::None);
  EXPECT_EQ(options.permission, CameraPermission::Refuse);
  EXPECT_EQ(options.screen, (CGSize{320, 568}));
  EXPECT_EQ(options.scale, 1.5);
  EXPECT_TRUE(options.offscreen);
}

TEST(DemoOptions, RefusesWhatItCannotUse) {
  const std::vector<std::vector<std::string>> wrong{{"--colour", "red"},
                                                    {"--client-id"},
                                                    {"--client-id", ""},
                                                    {"--metadata", "novalue"},
                                                    {"--metadata", "=x"},
                                                    {"--server", "https://host/api"},
                                                    {"--server", "ftp://host/"},
                                                    {"--server", "host/"},
                                                    {"--tracking", "not an address"},
                                                    {"--front-camera", "/no/such/film.mov"},
                                                    {"--camera-permission", "perhaps"},
                                                    {"--screen", "375"},
                                                    {"--screen", "375xfar"},
                                                    {"--screen", "0x812"},
                                                    {"--screen", "375x812@0"},
                                                    {"--screen", "nanx812"},
                                                    {"--ca", "/no/such/file.pem"},
                                                    {"--drive", "/no/such/file.drive"}};
  for (const auto& arguments : wrong) {
    const std::string problem = problemWith(arguments);
    EXPECT_NE(problem, "") << arguments.front();
    EXPECT_NE(problem.find(arguments.front()), std::string::npos) << problem;
    EXPECT_EQ(problem.find('\n'), std::string::npos) << problem;
  }
}

} // namespace
} // namespace zuvi::demo
