zuvi_test(host WINDOWS LINKS zuvi_kit zuvi_test_support GTest::gtest_main PACKAGES gtk4)
