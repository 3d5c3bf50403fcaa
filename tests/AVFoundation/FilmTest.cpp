#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/FilmGStreamer.h"
#include "tests/AVFoundation/CameraFixture.h"
#include "tests/AVFoundation/MediaReaderGStreamer.h"

#include <sys/stat.h>
#include <unistd.h>

namespace zuvi {
namespace {

using std::filesystem::exists;
constexpr double oneFrame = 1.0 / 30;

class FilmTest : public CameraTest {
protected:
  FilmTest() { useHost(simulated()); }

  /// Starts a session and a film in it.
  std::unique_ptr<Rig> filming(const std::string& to) {
    auto rig = running();
    rig->film->startRecording(to, listener);
    return rig;
  }
  bool ended(std::size_t films = 1) {
    return time.waitUntil([&] { return listener->ends().size() >= films; });
  }

  const std::string path = folder.path("film.mov");
  std::shared_ptr<FilmListener> listener = std::make_shared<FilmListener>();
};

TEST_F(FilmTest, LastsFromStartToStopAndPlays) {
  constexpr double seconds = 7;
  auto rig = filming(path);
  const auto start = std::chrono::steady_clock::now();
  film(seconds);
  EXPECT_TRUE(rig->film->isRecording());
  rig->film->stopRecording();
  const std::chrono::duration<double> lasted = std::chrono::steady_clock::now() - start;
  EXPECT_FALSE(rig->film->isRecording());
  ASSERT_TRUE(ended());
  film(0.1); // a second call would come now
  ASSERT_EQ(listener->ends().size(), 1U);
  const auto end = listener->ends().front();
  EXPECT_EQ(end.path, path);
  EXPECT_FALSE(end.error || end.onMain);

  const auto facts = readFilm(path);
  EXPECT_EQ(test::TemporaryFolder::read(path).substr(4, 6), "ftypqt");
  EXPECT_EQ(facts.streams, 1) << "it has no sound";
  EXPECT_NEAR(facts.seconds, lasted.count(), oneFrame);
  EXPECT_NEAR(facts.end, lasted.count(), 2 * oneFrame);
  EXPECT_GE(facts.frames, seconds * 30 * 0.8);
  EXPECT_EQ(std::pair(facts.width, facts.height), std::pair(1280, 720));
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0077, 0U) << "others may read the film";
}

TEST_F(FilmTest, TakesFollowEachOther) {
  auto rig = filming(folder.path("1.mov"));
  rig->film->startRecording(folder.path("refused.mov"), listener); // one is under way
  ASSERT_TRUE(ended(1));
  EXPECT_EQ(listener->ends()[0].path, folder.path("refused.mov"));
  EXPECT_TRUE(listener->ends()[0].error);
  EXPECT_FALSE(exists(folder.path("refused.mov")));
  film(0.3);
  rig->film->stopRecording();
  rig->film->startRecording(folder.path("2.mov"), listener); // while the first is completed
  film(0.3);
  rig->session->stopRunning(); // which completes it as well
  ASSERT_TRUE(ended(3));
  EXPECT_FALSE(listener->ends()[2].error || rig->film->isRecording());
  EXPECT_GT(readFilm(folder.path("1.mov")).frames, 3);
  EXPECT_GT(readFilm(folder.path("2.mov")).frames, 3);
}

TEST_F(FilmTest, CancellingRemovesTheFileAndTellsNobody) {
  for (bool stopFirst : {false, true}) {
    auto rig = filming(path);
    film(0.3);
    EXPECT_TRUE(exists(path));
    if (stopFirst) rig->film->stopRecording();
    rig->film->cancelRecording();
    EXPECT_FALSE(rig->film->isRecording());
    EXPECT_TRUE(time.waitUntil([&] { return !exists(path); }));
    // The next film's end comes after anything that the first may still tell.
    ASSERT_TRUE(shoot(*rig, folder.path("next.mov"), 0.2, listener));
    ASSERT_EQ(listener->ends().size(), 1U);
    EXPECT_EQ(listener->ends()[0].path, folder.path("next.mov"));
    EXPECT_FALSE(exists(path));
    listener = std::make_shared<FilmListener>();
  }
}

TEST_F(FilmTest, DroppingItsOwnersRemovesTheFile) {
  for (const bool dropSession : {true, false}) {
    auto rig = filming(path);
    film(0.3);
    if (dropSession) {
      rig->session.reset();
      ASSERT_TRUE(ended());
      EXPECT_EQ(listener->ends()[0].error.value().code, AVErrorOperationInterrupted);
    } else {
      listener.reset();
      rig->film->stopRecording();
    }
    EXPECT_TRUE(time.waitUntil([&] { return !exists(path); }));
    listener = std::make_shared<FilmListener>();
  }
}

TEST_F(FilmTest, DiskThatCannotTakeItGivesAnErrorAndLeavesTheCamera) {
  std::filesystem::create_symlink("/dev/full", folder.path("full.mov"));
  for (const auto& full : {folder.path("full.mov"), folder.path("none/film.mov")}) {
    SCOPED_TRACE(full);
    auto rig = filming(full);
    film(0.3);
    rig->film->stopRecording();
    ASSERT_TRUE(ended());
    ASSERT_EQ(listener->ends().size(), 1U);
    EXPECT_EQ(listener->ends()[0].error.value().code, AVErrorDiskFull);
    EXPECT_FALSE(std::filesystem::is_symlink(full)) << "what was written is removed";
    EXPECT_TRUE(rig->session->isRunning());
    EXPECT_TRUE(warm(*rig));
    listener = std::make_shared<FilmListener>();
  }
}

TEST_F(FilmTest, WithoutPictureThereIsNoFile) {
  Rig rig(back());
  rig.film->startRecording(path, listener); // nothing runs
  ASSERT_TRUE(ended());
  EXPECT_EQ(listener->ends()[0].error.value().code, AVErrorSessionNotRunning);
  rig.session->startRunning();
  rig.film->startRecording(path, listener);
  rig.film->stopRecording(); // before the camera has given anything
  ASSERT_TRUE(ended(2));
  EXPECT_EQ(listener->ends()[1].error.value().code, AVErrorNoDataCaptured);
  EXPECT_FALSE(exists(path));
}

TEST_F(FilmTest, ProgramMayEndWhileFilming) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static std::string root, left;
  root = folder.path();
  left = path;
  EXPECT_EXIT(
      {
        std::atexit([] { // registered first, so it sees what all others have left
          const int code = exists(left) ? 3 : 0;
          std::filesystem::remove_all(root);
          ::_exit(code);
        });
        static auto rig = filming(path); // goes after the cameras were closed
        film(0.3);
        std::exit(exists(path) ? 0 : 4);
      },
      ::testing::ExitedWithCode(0), "");
}

/// Films that are fed by hand.
class EncoderTest : public FilmTest {
protected:
  /// As many as a film keeps while its encoder has not begun, so a slow machine loses none.
  static constexpr int pictures = 9;

  /// A film through these encoders, whose last picture comes a second after the first. `length` is
  /// how long it was under way.
  std::optional<Error> encode(std::vector<FilmEncoder> encoders, int width, int height) {
    struct End { // outlives a test that gave up
      std::atomic<bool> told = false;
      std::optional<Error> error;
    };
    const auto end = std::make_shared<End>();
    auto written = make<FilmGStreamer>(
        path, std::nullopt,
        [end](std::optional<Error> error) {
          end->error = std::move(error);
          end->told = true;
        },
        std::move(encoders));
    auto picture = solidFrame(width, height, colour, 0);
    written->begin();
    film(0.3); // the pipeline is up
    const auto start = monotonicTime();
    for (int i = 0; i < pictures; i++) {
      picture.time = start + (i + 1 < pictures ? i * GST_SECOND / 30 : GST_SECOND);
      written->frame(picture);
      film(1.0 / 50); // an encoder works meanwhile
    }
    length = std::max(1.0, double(monotonicTime() - start) / GST_SECOND);
    written->stop();
    EXPECT_FALSE(written->frame(picture));
    EXPECT_TRUE(time.waitUntil([&] { return end->told.load(); }));
    return end->told ? end->error : Error{"test", 0, "The film's end was never told."};
  }
  const Rgb colour{200, 60, 40};
  double length = 0;
};

/// Every encoder of this machine, on a picture of odd size.
TEST_F(EncoderTest, KeepLengthAndColours) {
  const auto encoders = filmEncoders();
  ASSERT_FALSE(encoders.empty());
  EXPECT_STREQ(encoders.back().element, "jpegenc"); // the one that is always there
  for (const auto& encoder : encoders) {
    SCOPED_TRACE(encoder.element);
    testing::internal::CaptureStderr();
    const auto error = encode({encoder}, 321, 241);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "libraries say their own word";
    EXPECT_FALSE(error) << error->description;
    const auto facts = readFilm(path);
    EXPECT_EQ(facts.frames, pictures);
    EXPECT_EQ(std::pair(facts.width, facts.height), std::pair(320, 240));
    EXPECT_NEAR(facts.seconds, length, 2 * oneFrame);
    for (int part = 0; part < 3; part++)
      EXPECT_NEAR(facts.center[part], colour[part], 8) << part;
  }
}

TEST_F(EncoderTest, OneThatFailsIsFollowedByTheNext) {
  const FilmEncoder works{"jpegenc", "jpegenc", true};
  // At its first picture, in the middle, when it is told to finish, and twice.
  for (const char* failing :
       {"identity error-after=1 ! jpegenc", "identity error-after=5 ! jpegenc",
        "jpegenc ! identity error-after=9"}) {
    SCOPED_TRACE(failing);
    const FilmEncoder fails{"failing", failing, true};
    testing::internal::CaptureStderr();
    EXPECT_FALSE(encode({fails, fails, works}, 1920, 1080));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "libraries say their own word";
    const auto facts = readFilm(path);
    EXPECT_EQ(std::pair(facts.width, facts.height), std::pair(1280, 720)) << "enough for a film";
    EXPECT_GE(facts.frames, 1);
    EXPECT_NEAR(facts.seconds, length, 2 * oneFrame);

    EXPECT_EQ(encode({fails}, 64, 64).value().code, AVErrorUnknown);
    EXPECT_FALSE(exists(path));
  }
}

} // namespace
} // namespace zuvi
