zuvi_test(chat LINKS zuvi_kit zuvi_test_support GTest::gtest_main)
