# zuvi_use_virtual_camera(<program>): MediaServer.h starts cameras in it.
function(zuvi_use_virtual_camera program)
  if(NOT TARGET virtual_camera)
    add_executable(virtual_camera
      ${PROJECT_SOURCE_DIR}/testing/mediaserver/VirtualCamera.cpp)
    target_compile_options(virtual_camera PRIVATE -Wall -Wextra -Wshadow) # its macros are GNU C
    zuvi_use_packages(virtual_camera libpipewire-0.3)
  endif()
  add_dependencies(${program} virtual_camera)
  target_compile_definitions(${program} PRIVATE
    ZUVI_VIRTUAL_CAMERA="$<TARGET_FILE:virtual_camera>")
endfunction()
