zuvi_test(chat LINKS zuvi_kit zuvi_testing_dispatch zuvi_testing_avfoundation
          zuvi_test_support GTest::gtest_main)
