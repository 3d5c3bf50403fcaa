zuvi_test(flow LINKS zuvi_kit zuvi_demo_core zuvi_test_support GTest::gtest_main)
