# Not beside tests that show pages: as root the browser engine leaves an empty /.flatpak-info on the
# machine, and then the media server takes every program for a broken sandboxed one.
zuvi_test(pipewire WINDOWS REALTIME LINKS zuvi_avfoundation zuvi_uikit zuvi_testing_dispatch zuvi_test_support
          PACKAGES gstreamer-1.0 gstreamer-app-1.0 gstreamer-video-1.0 gio-2.0 gio-unix-2.0
                   nlohmann_json)
if(TARGET zuvi-demo)
  add_dependencies(test_pipewire zuvi-demo)
endif()
target_compile_definitions(test_pipewire PRIVATE ZUVI_DEMO_PROGRAM="$<TARGET_FILE:zuvi-demo>")
include(${PROJECT_SOURCE_DIR}/testing/mediaserver/camera.cmake)
zuvi_use_virtual_camera(test_pipewire)
