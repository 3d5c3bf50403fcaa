zuvi_test(AVFoundation REALTIME LINKS zuvi_testing_avfoundation zuvi_testing_dispatch
          zuvi_test_support GTest::gtest_main
          PACKAGES gstreamer-1.0 gstreamer-app-1.0 gstreamer-video-1.0)
