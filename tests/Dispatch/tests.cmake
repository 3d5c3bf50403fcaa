zuvi_test(Dispatch LINKS zuvi_dispatch GTest::gtest_main PACKAGES glib-2.0)
