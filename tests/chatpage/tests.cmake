zuvi_test(chatpage WINDOWS LINKS zuvi_kit zuvi_test_support GTest::gtest_main PACKAGES gtk4)
