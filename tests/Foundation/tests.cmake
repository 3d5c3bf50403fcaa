zuvi_test(Foundation LINKS zuvi_foundation zuvi_coretelephony zuvi_testing_dispatch zuvi_test_support GTest::gtest_main
          PACKAGES gio-2.0)
