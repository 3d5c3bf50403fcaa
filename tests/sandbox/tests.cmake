zuvi_test(sandbox LINKS zuvi_sandbox_core zuvi_test_support GTest::gtest_main
          PACKAGES libcurl nlohmann_json)
