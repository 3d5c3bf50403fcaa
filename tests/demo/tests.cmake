zuvi_test(demo WINDOWS RENDERERS LINKS zuvi_demo_core zuvi_testing_dispatch
          zuvi_test_support GTest::gtest_main PACKAGES nlohmann_json)
if(NOT ZUVI_CHAT)
  set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/ChatRunTest.cpp PROPERTIES HEADER_FILE_ONLY ON)
endif()
# The window tests run the real program.
if(TARGET zuvi-demo)
  add_dependencies(test_demo zuvi-demo)
endif()
target_compile_definitions(test_demo PRIVATE ZUVI_DEMO_PROGRAM="$<TARGET_FILE:zuvi-demo>")
