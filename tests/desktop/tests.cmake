zuvi_test(desktop WINDOWS RENDERERS
          LINKS zuvi_uikit zuvi_test_support GTest::gtest_main
          PACKAGES gtk4 wayland-client nlohmann_json)
if(TARGET zuvi-demo)
  add_dependencies(test_desktop zuvi-demo)
endif()
target_compile_definitions(test_desktop PRIVATE ZUVI_DEMO_PROGRAM="$<TARGET_FILE:zuvi-demo>")
if(NOT ZUVI_CHAT)
  target_compile_definitions(test_desktop PRIVATE ZUVI_WITHOUT_CHAT)
endif()
