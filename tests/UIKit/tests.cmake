zuvi_test(UIKit LINKS zuvi_uikit zuvi_testing_dispatch zuvi_test_support GTest::gtest_main)
