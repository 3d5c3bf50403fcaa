zuvi_test(sandbox LINKS zuvi_foundation zuvi_test_support GTest::gtest_main PACKAGES nlohmann_json)
