add_test(NAME scripts COMMAND ${CMAKE_CURRENT_LIST_DIR}/scripts)
set_tests_properties(scripts PROPERTIES LABELS scripts SKIP_RETURN_CODE 77)
add_test(NAME mutate COMMAND ${CMAKE_CURRENT_LIST_DIR}/mutate)
set_tests_properties(mutate PROPERTIES LABELS scripts)
