zuvi_test(verify LINKS zuvi_demo_core zuvi_test_support GTest::gtest_main PACKAGES nlohmann_json)
if(TARGET zuvi-verify)
  add_dependencies(test_verify zuvi-verify)
endif()
target_compile_definitions(test_verify PRIVATE ZUVI_VERIFY_PROGRAM="$<TARGET_FILE:zuvi-verify>"
                                               ZUVI_DEMO_PROGRAM="$<TARGET_FILE:zuvi-demo>")
