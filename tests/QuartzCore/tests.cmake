zuvi_test(QuartzCore LINKS zuvi_uikit zuvi_testing_dispatch GTest::gtest_main)
