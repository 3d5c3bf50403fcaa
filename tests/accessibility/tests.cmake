zuvi_test(accessibility WINDOWS LINKS zuvi_foundation zuvi_test_support GTest::gtest_main
          PACKAGES gio-2.0 nlohmann_json)
if(TARGET zuvi-demo)
  add_dependencies(test_accessibility zuvi-demo)
endif()
target_compile_definitions(test_accessibility PRIVATE ZUVI_DEMO_PROGRAM="$<TARGET_FILE:zuvi-demo>")
