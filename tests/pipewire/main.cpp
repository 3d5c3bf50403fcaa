#include "testing/mediaserver/MediaServer.h"

#include <gtest/gtest.h>

int main(int count, char** arguments) {
  ::testing::InitGoogleTest(&count, arguments);
  if (!GTEST_FLAG_GET(list_tests)) zuvi::test::MediaServer::instance();
  return RUN_ALL_TESTS();
}
