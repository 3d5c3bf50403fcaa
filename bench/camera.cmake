zuvi_bench(camera_bench LINKS zuvi_avfoundation PACKAGES gstreamer-1.0 gstreamer-app-1.0)
zuvi_bench(pipewire_bench LINKS zuvi_kit PACKAGES gstreamer-1.0 gio-2.0)
include(${PROJECT_SOURCE_DIR}/testing/mediaserver/camera.cmake)
zuvi_use_virtual_camera(pipewire_bench)
