# A sanitizer's runtime would have to come first in every program that links the library.
if(NOT ZUVI_SANITIZE AND TARGET zuvi-sandbox AND TARGET zuvi-demo)
  add_test(NAME install
           COMMAND ${CMAKE_CURRENT_LIST_DIR}/installation ${PROJECT_BINARY_DIR}
                   ${CMAKE_CXX_COMPILER} $<BOOL:${ZUVI_CHAT}>)
  set_tests_properties(install PROPERTIES LABELS install TIMEOUT 900)
endif()

# A sanitizer's build exports the same, and some of its own.
if(NOT ZUVI_SANITIZE)
  add_test(NAME abi COMMAND ${PROJECT_SOURCE_DIR}/cmake/abi/check $<TARGET_FILE:zuvi_sdk>)
  set_tests_properties(abi PROPERTIES LABELS install)
endif()
