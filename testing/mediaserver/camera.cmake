# zuvi_use_virtual_camera(<program>): MediaServer.h starts cameras in it.
function(zuvi_use_virtual_camera program)
  if(NOT TARGET virtual_camera)
    add_executable(virtual_camera
      ${PROJECT_SOURCE_DIR}/testing/mediaserver/VirtualCamera.cpp)
    target_link_libraries(virtual_camera PRIVATE zuvi_options)
    zuvi_use_packages(virtual_camera libpipewire-0.3)
  endif()
  add_dependencies(${program} virtual_camera)
  target_compile_definitions(${program} PRIVATE
    ZUVI_VIRTUAL_CAMERA="$<TARGET_FILE:virtual_camera>")
endfunction()
