#include "platform/AVFoundation/AVError.h"
#include "platform/AVFoundation/FilmGStreamer.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/ProcessInfo.h"
#include "testing/AVFoundation/CameraFixture.h"
#include "testing/AVFoundation/MediaReaderGStreamer.h"
#include "testing/support/ChildProcess.h"
#include "testing/support/ScopedEnvironment.h"

#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
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

  /// In the folder, hidden ones too.
  int files() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
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

TEST_F(FilmTest, LeavesNoFileThatNobodyHearsOf) {
  for (const std::string how :
       {"cancelled", "stopped and cancelled", "no session", "no listener"}) {
    SCOPED_TRACE(how);
    listener = std::make_shared<FilmListener>();
    auto rig = filming(path);
    film(0.3);
    EXPECT_EQ(files(), 0) << "it has no name while it is written";
    if (how == "stopped and cancelled") rig->film->stopRecording();
    if (how.ends_with("cancelled")) rig->film->cancelRecording();
    if (how == "no listener") {
      listener = std::make_shared<FilmListener>();
      rig->film->stopRecording();
    }
    if (how == "no session") {
      rig->session.reset();
      ASSERT_TRUE(ended());
      EXPECT_EQ(listener->ends()[0].error.value().code, AVErrorOperationInterrupted);
    } else {
      EXPECT_FALSE(rig->film->isRecording());
      // The next film's end comes after anything that the first may still tell.
      ASSERT_TRUE(shoot(*rig, folder.path("next.mov"), 0.2, listener));
      ASSERT_EQ(listener->ends().size(), 1U);
      EXPECT_TRUE(FileManager::removeItem(folder.path("next.mov")));
    }
    EXPECT_EQ(files(), 0);
  }
}

TEST_F(FilmTest, DiskThatCannotTakeItGivesAnErrorAndLeavesTheCamera) {
  const rlimit usual = [] {
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    return limit;
  }();
  for (const std::string why : {"no folder", "folder gone", "file limit"}) {
    SCOPED_TRACE(why);
    listener = std::make_shared<FilmListener>();
    const std::string in = folder.path("in");
    if (why != "no folder") std::filesystem::create_directory(in);
    const rlimit small{1000, usual.rlim_max};
    if (why == "file limit") ::setrlimit(RLIMIT_FSIZE, &small);
    auto rig = filming(in + "/film.mov");
    film(0.5);
    if (why == "folder gone") std::filesystem::remove_all(in);
    rig->film->stopRecording();
    EXPECT_TRUE(ended());
    ::setrlimit(RLIMIT_FSIZE, &usual);
    ASSERT_EQ(listener->ends().size(), 1U);
    EXPECT_EQ(listener->ends()[0].error.value_or(Error{}).code, AVErrorDiskFull);
    EXPECT_TRUE(rig->session->isRunning());
    EXPECT_TRUE(warm(*rig));
    std::filesystem::remove(in); // empty, then
    EXPECT_EQ(files(), 0);
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

/// As on a file system that has no files without a name; for the rest of the process.
void refuseNamelessFiles() {
  sock_filter program[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                           BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
                           BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
                           BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_TMPFILE & ~O_DIRECTORY, 0, 1),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog filter{std::size(program), program};
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}

TEST_F(FilmTest, ProgramMayEndWhileFilming) {
  if (const char* to = std::getenv("ZUVI_TEST_FILM")) { // this is that program
    if (std::getenv("ZUVI_TEST_NAMED")) refuseNamelessFiles();
    static auto rig = filming(to); // goes after the cameras were closed
    film(0.5);
    if (const int signal = std::atoi(std::getenv("ZUVI_TEST_SIGNAL"))) ::raise(signal);
    std::exit(0);
  }
  const test::ScopedEnvironment to("ZUVI_TEST_FILM", path);
  const test::TemporaryFolder elsewhere; // what the test leaves there is of no matter
  const test::ScopedEnvironment temporary("TMPDIR", elsewhere.path());
  for (const bool named : {false, true})
    for (const int signal : {0, SIGTERM, SIGKILL}) {
      SCOPED_TRACE(std::to_string(signal) + (named ? " named" : ""));
      const test::ScopedEnvironment how("ZUVI_TEST_NAMED",
                                        named ? std::optional<std::string>("1") : std::nullopt),
          by("ZUVI_TEST_SIGNAL", std::to_string(signal));
      test::ChildProcess program(
          {ProcessInfo::executablePath(), "--gtest_filter=FilmTest.ProgramMayEndWhileFilming"},
          elsewhere.path("log"));
      EXPECT_EQ(program.wait(), signal ? -1 : 0)
          << test::TemporaryFolder::read(elsewhere.path("log"));
      EXPECT_EQ(files(), named && signal ? 1 : 0);
      EXPECT_FALSE(FilmFile(path).open()); // whoever films next
      EXPECT_EQ(files(), 0);
    }
  // What is still written stays.
  const std::string hidden = folder.write(".zuvi-film-other", "x");
  const int other = ::open(hidden.c_str(), O_RDWR);
  EXPECT_EQ(::flock(other, LOCK_EX), 0);
  EXPECT_FALSE(FilmFile(path).open());
  EXPECT_EQ(files(), 1);
  ::close(other);
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
    const auto file = std::make_shared<FilmFile>(path);
    auto written = make<FilmGStreamer>(
        file,
        [end](std::optional<Error> error) {
          end->error = std::move(error);
          end->told = true;
        },
        std::move(encoders));
    auto picture = solidFrame(width, height, 0xffc83c28);
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
    EXPECT_FALSE(file->keep());
    return end->told ? end->error : Error{"test", 0, "The film's end was never told."};
  }
  const Rgb colour{0xc8, 0x3c, 0x28};
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

    FileManager::removeItem(path);
    EXPECT_EQ(encode({fails}, 64, 64).value().code, AVErrorUnknown);
    EXPECT_FALSE(exists(path));
  }
}

} // namespace
} // namespace zuvi
