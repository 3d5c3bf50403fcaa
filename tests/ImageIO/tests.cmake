find_package(GIF 5 REQUIRED)
zuvi_test(ImageIO LINKS zuvi_imageio zuvi_test_support GIF::GIF GTest::gtest_main)
