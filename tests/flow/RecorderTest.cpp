#include "kit/Helper/ZVLocalization.h"
#include "platform/AVFoundation/AVCaptureVideoPreviewLayer.h"
#include "tests/flow/FlowTest.h"

#include <regex>

namespace zuvi {
namespace {

/// A platform queue that runs when the test says so.
class ManualQueue final : public DispatchQueue {
public:
  WorkId async(Work work) override {
    waiting_.push_back(std::move(work));
    return waiting_.size();
  }
  void run() {
    for (auto& work : std::exchange(waiting_, {}))
      work();
  }

private:
  std::vector<Work> waiting_;
};

class RecorderTest : public FlowTest {
protected:
  void open() {
    registerMerchant("{}");
    openRecorder();
  }
  /// The figure, "-" when it is hidden, and the caption.
  std::string shown() {
    const auto screen = step<ZVLiveCameraViewController>();
    const auto figure = screen->startTimerLabel.lock();
    return (figure->alpha() > 0 ? figure->text().value() : "-") + " " +
           screen->recordLabel.lock()->text().value();
  }
  std::string reviewedFilm() {
    return step<ZVLivenessVerifyViewController>()->video.value().string();
  }
};

TEST_F(RecorderTest, CountsSecondBySecond) {
  open();
  const std::string idle = "- " + localized("record");
  EXPECT_EQ(page(), 0) << "the dots stay as they were";
  EXPECT_EQ(shown(), idle);
  const auto screen = step<ZVLiveCameraViewController>();
  EXPECT_TRUE(std::dynamic_pointer_cast<AVCaptureVideoPreviewLayer>(
      screen->view()->layer()->sublayers().front()));
  EXPECT_EQ(screen->recordButton.lock()->accessibilityLabel, localized("record"));
  tap("recordButton");
  const char* expected[] = {"5 00:07", "4 00:07", "3 00:07", "2 00:07", "1 00:07", "- 00:07",
                            "- 00:06", "- 00:05", "- 00:04", "- 00:03", "- 00:02", "- 00:01"};
  for (std::size_t second = 0; second < 12; second++) { // half a second past each
    EXPECT_EQ(shown(), expected[second]);
    EXPECT_EQ(front->films.size(), second < 5 ? 0U : 1U) << second;
    const auto instruction = step<ZVLiveCameraViewController>()->gifImageView.lock();
    EXPECT_EQ(instruction->alpha(), second < 5) << second;
    EXPECT_EQ(front->filmsStopped, 0);
    tap("recordButton"); // is heard once a take
    time.advance(0.5);
  }
  EXPECT_EQ(front->filmsStopped, 1);
  EXPECT_TRUE(time.waitUntil([this] { return backend.events().size() == 2; }));
  ASSERT_EQ(top(), "ZVLivenessVerifyViewController");
  EXPECT_EQ(reviewedFilm(), film);
  EXPECT_EQ(filesLeft(), 0U) << "the bytes are the only copy";
  EXPECT_TRUE(std::regex_search(
      front->films[0],
      std::regex("/documents/\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d[+-]\\d{4}\\.mov$")))
      << front->films[0];
  EXPECT_TRUE(front->isRunning()) << "as long as its screen lives";

  // A retake begins anew.
  tap("retakeButton");
  EXPECT_EQ(shown(), idle);
  front->film = Data(std::string("another"));
  record();
  EXPECT_EQ(reviewedFilm(), "another");
  EXPECT_EQ(front->films.size(), 2U);
}

TEST_F(RecorderTest, LeavesNothingHoweverItIsLeft) {
  const auto goBack = [&] { tap("backButton"); };
  const auto dismiss = [&] { host->dismiss(true); };
  const auto cancel = [&] { tap("closeButtonTap"), tap("cancelButton"); };
  const struct {
    double seconds;
    std::function<void()> leave;
  } rows[] = {{0.5, goBack},
              {4, goBack},
              {5, goBack},
              {11, goBack},
              {8, cancel},
              {7, dismiss},
              {7, [&] { window->setVisible(false), dismiss(); }},
              {7, [&] { window->setRootViewController(nullptr); }},
              {7, [&] { window = nullptr; }},
              {7, [&] { dismiss(), window = nullptr; }},
              {7, [&] { UIScreen::main().setSurface(nullptr); }}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    open();
    tap("recordButton");
    time.advance(row.seconds);
    const auto films = front->films.size();
    const int discarded = front->filmsDiscarded;
    row.leave();
    time.advance(10);
    EXPECT_EQ(front->films.size(), films);
    EXPECT_EQ(front->filmsDiscarded, discarded + (row.seconds >= 5));
    EXPECT_EQ(filesLeft(), 0U);
    EXPECT_FALSE(front->isRunning());
    EXPECT_EQ(top(), "ZVMainViewController");
    leave();
    EXPECT_EQ(host->appearance() == UIViewController::Appearance::Appeared,
              window && window->isVisible() && window->rootViewController());
    window = make<UIWindow>();
    window->setRootViewController(host);
    window->makeKeyAndVisible();
  }
  EXPECT_EQ(delegate->calls, std::vector<std::string>{"cancelled"});
}

TEST_F(RecorderTest, LeavesNothingWhenTheFilmHasJustEnded) {
  for (const int stage : {0, 1, 2, 3}) {
    ManualQueue platform;
    const auto own = make<ScriptedCameraProvider>(platform);
    own->front->film = Data(film);
    AVCaptureDevice::setProvider(own);
    open();
    tap("recordButton");
    time.advance(11.5);
    EXPECT_EQ(own->front->filmsStopped, 1);
    EXPECT_EQ(filesLeft(), 0U) << "the film has no name before somebody is told";
    // With two turns the news is on its way to the main queue.
    for (int i = 0; i < std::min(stage, 2); i++)
      platform.run();
    if (stage < 3)
      tap("backButton");
    else // at once: the news finds nobody
      shell().mainNC()->popViewController(false);
    for (int i = 0; i < 3; i++) {
      platform.run();
      settle();
    }
    EXPECT_EQ(top(), "ZVMainViewController");
    EXPECT_EQ(filesLeft(), 0U) << stage;
    leave();
  }
}

TEST_F(RecorderTest, GoesOnWithoutACamera) {
  front->opens = false;
  open();
  for (int take = 0; take < 2; take++) {
    tap("recordButton");
    EXPECT_EQ(shown(), "5 00:07");
    time.advance(27);
    EXPECT_EQ(shown(), "- 00:00");
  }
  EXPECT_TRUE(front->films.empty());
}

TEST_F(RecorderTest, CountsOnlyWithPermission) {
  using Status = AVAuthorizationStatus;
  open();
  cameras->grants = false;
  for (const Status status : {Status::Denied, Status::Restricted, Status::NotDetermined}) {
    EXPECT_EQ(cameras->requests, 0);
    cameras->status = status;
    tap("recordButton");
    time.advance(20);
    EXPECT_EQ(shown(), "5 00:07");
  }
  EXPECT_EQ(cameras->requests, 1);

  // Two taps while the question is open: one timer.
  cameras->status = Status::NotDetermined;
  cameras->grants = true;
  cameras->answersRequests = false;
  tap("recordButton");
  tap("recordButton");
  time.advance(20);
  EXPECT_EQ(shown(), "5 00:07");
  cameras->answerRequests();
  time.advance(1.5);
  EXPECT_EQ(shown(), "4 00:07");
  time.advance(11);
  ASSERT_EQ(top(), "ZVLivenessVerifyViewController");
}

TEST_F(RecorderTest, StaysWhenThereIsNoFilm) {
  open();
  const std::function<void()> hindrances[] = {
      [&] { front->film = std::nullopt; }, // no picture in it
      [&] {                                // a folder that has become a file
        front->film = Data(film);
        std::filesystem::remove_all(documents);
        folder.write("documents", "in the way");
      },
      [&] { FileManager::setDocumentsDirectory(std::nullopt); }};
  for (const auto& hinder : hindrances) {
    tap("recordButton");
    time.advance(4);
    hinder();
    time.advance(20);
    EXPECT_EQ(surface.spoken, localized("recordingFailed"));
    EXPECT_EQ(top(), "ZVLiveCameraViewController");
    EXPECT_EQ(shown(), "- Record");
  }
  FileManager::setDocumentsDirectory(documents);
  std::filesystem::remove(documents);
}

} // namespace
} // namespace zuvi
