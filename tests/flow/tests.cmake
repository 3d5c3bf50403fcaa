zuvi_test(flow LINKS zuvi_kit zuvi_testing_dispatch zuvi_testing_avfoundation zuvi_testing_uikit
          zuvi_test_support GTest::gtest_main)

# The layouts, in a folder of their own whose bundle has fonts that are alike on every machine.
zuvi_test(flow/layout LINKS zuvi_kit zuvi_testing_dispatch zuvi_testing_avfoundation zuvi_testing_uikit
          zuvi_test_support GTest::gtest_main)
set(layout ${CMAKE_CURRENT_BINARY_DIR}/flow/layout)
set(fonts ${layout}/fonts/ZVSFProText-Regular.otf ${layout}/fonts/ZVSFProText-Semibold.otf
          ${layout}/fonts/ZVSFProText-Bold.otf)
# Which font stands for another would hang on the order in which the folder lists them.
file(WRITE ${layout}/fonts.conf "<fontconfig><dir>${layout}/fonts</dir>"
     "<cachedir>${layout}/cache</cachedir><match><edit name='family' mode='append' binding='same'>"
     "<string>Layout Regular</string></edit></match></fontconfig>\n")
add_custom_command(
  OUTPUT ${fonts}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${layout}/fonts
  COMMAND ${ZUVI_PYTHON} ${CMAKE_CURRENT_LIST_DIR}/layout/make_fonts.py ${layout}/fonts
  DEPENDS ${CMAKE_CURRENT_LIST_DIR}/layout/make_fonts.py)
get_target_property(bundled zuvi_bundle ZUVI_FILES)
add_custom_command(
  OUTPUT ${layout}/bundled
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_BINARY_DIR}/ZuviSDK.bundle
          ${layout}/ZuviSDK.bundle
  COMMAND ${CMAKE_COMMAND} -E copy ${fonts} ${layout}/ZuviSDK.bundle
  COMMAND ${CMAKE_COMMAND} -E touch ${layout}/bundled
  DEPENDS ${fonts} ${bundled} VERBATIM)
add_custom_target(zuvi_layout_bundle DEPENDS ${layout}/bundled)
add_dependencies(zuvi_layout_bundle zuvi_bundle)
add_dependencies(test_flow_layout zuvi_layout_bundle)
set_target_properties(test_flow_layout PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${layout})
target_compile_definitions(test_flow_layout PRIVATE
  ZUVI_LAYOUTS="${CMAKE_CURRENT_LIST_DIR}/layout" ZUVI_LAYOUT_FOLDER="${layout}")

# The walk at random, in a folder of its own whose bundle lacks the recorder's instruction: its
# pictures cost more to read than all else in a walk.
zuvi_test(flow/model LINKS zuvi_kit zuvi_testing_dispatch zuvi_testing_avfoundation zuvi_testing_uikit
          zuvi_test_support GTest::gtest_main)
set(model ${CMAKE_CURRENT_BINARY_DIR}/flow/model)
add_custom_command(
  OUTPUT ${model}/bundled
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${PROJECT_BINARY_DIR}/ZuviSDK.bundle
          ${model}/ZuviSDK.bundle
  COMMAND ${CMAKE_COMMAND} -E rm -f ${model}/ZuviSDK.bundle/liveness.gif
  COMMAND ${CMAKE_COMMAND} -E touch ${model}/bundled
  DEPENDS ${bundled} VERBATIM)
add_custom_target(zuvi_model_bundle DEPENDS ${model}/bundled)
add_dependencies(zuvi_model_bundle zuvi_bundle)
add_dependencies(test_flow_model zuvi_model_bundle)
set_target_properties(test_flow_model PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${model})
