zuvi_test(QuartzCore LINKS zuvi_uikit GTest::gtest_main)
