zuvi_test(chatpage WINDOWS LINKS zuvi_kit zuvi_test_support GTest::gtest_main PACKAGES gtk4)
target_sources(test_chatpage PRIVATE ${CMAKE_CURRENT_LIST_DIR}/../WebKit/WebFixtureGtk.cpp)
