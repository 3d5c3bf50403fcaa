zuvi_test(WebKit WINDOWS LINKS zuvi_webkit zuvi_test_support GTest::gtest_main PACKAGES gtk4)
