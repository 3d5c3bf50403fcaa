zuvi_test(Dispatch LINKS zuvi_testing_dispatch GTest::gtest_main PACKAGES glib-2.0)
