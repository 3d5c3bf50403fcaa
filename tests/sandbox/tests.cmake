zuvi_test(sandbox LINKS zuvi_foundation zuvi_test_support GTest::gtest_main PACKAGES nlohmann_json)

# The page in a browser, with a film and pictures of the real program.
if(TARGET zuvi-sandbox AND TARGET zuvi-verify AND NOT ZUVI_SANITIZE)
  add_test(NAME browser COMMAND ${CMAKE_CURRENT_LIST_DIR}/browser $<TARGET_FILE:zuvi-sandbox>
                                $<TARGET_FILE:zuvi-verify>)
  set_tests_properties(browser PROPERTIES LABELS sandbox TIMEOUT 300)
endif()
