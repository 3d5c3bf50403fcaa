find_package(GIF 5 REQUIRED)
zuvi_test(kit LINKS zuvi_kit zuvi_testing_dispatch zuvi_testing_avfoundation
          zuvi_test_support GIF::GIF GTest::gtest_main)
