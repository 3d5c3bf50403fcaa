# Run by scripts/try-v4l2 on a machine that has cameras; there is nothing for it elsewhere.
file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.cpp)
add_executable(test_v4l2 ${sources} ${CMAKE_CURRENT_SOURCE_DIR}/SanitizerDefaults.cpp)
target_link_libraries(test_v4l2 PRIVATE zuvi_options zuvi_avfoundation zuvi_testing_dispatch zuvi_test_support
                      GTest::gtest_main GTest::gmock)
zuvi_use_packages(test_v4l2 gstreamer-1.0 gstreamer-app-1.0 gstreamer-video-1.0)
