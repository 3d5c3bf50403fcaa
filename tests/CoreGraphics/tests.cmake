zuvi_test(CoreGraphics LINKS zuvi_uikit zuvi_test_support GTest::gtest_main)
