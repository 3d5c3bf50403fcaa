#include "demo/core/Demo.h"

#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/LiveChat.h>
#include <ZuviSDK/LiveChatMessage.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include "demo/core/HostSetup.h"
#include "platform/Foundation/FileManager.h"
#include "platform/UIKit/URLOpener.h"

#include <cstdio>
#include <utility>

namespace zuvi::demo {

namespace {

/// What a person's machine has a program for.
bool anyMachineOpens(const URL& url) {
  const std::string scheme = url.scheme();
  return scheme == "http" || scheme == "https" || scheme == "mailto" || scheme == "tel";
}

} // namespace

std::string Demo::start(std::function<void(int)> finished) {
  finished_ = std::move(finished);
  if (options_.events && !log_.open(*options_.events))
    return *options_.events + " can't be written";
  if (std::string problem = preparePictures(options_); !problem.empty()) return problem;
  Bundle::main().setInfoDictionary(
      {{"CFBundleVersion", "1"}, {"CFBundleShortVersionString", "1.0"}});
  // A script is followed also where there is no desktop, and leaves no browsers open behind it.
  const bool driven = options_.drive.has_value();
  UIApplication::shared().setURLOpener(
      [this, driven](const URL& url) {
        log_.opened(url.absoluteString());
        return driven || openWithDesktop(url);
      },
      [driven](const URL& url) { return driven ? anyMachineOpens(url) : desktopCanOpen(url); });

  host_ = make<HostViewController>();
  host_->onOutcome = [this](const std::string& call, const std::optional<std::string>& id) {
    outcomes_++;
    log_.outcome(call, id);
  };
  ZVKYC::instance().delegate = host_;
  setUpKit(options_);

  window_ = make<UIWindow>();
  window_->setRootViewController(host_);
  window_->makeKeyAndVisible();
  watcher_.emplace([this](const std::string& name) { log_.screen(name); });
  chatWatcher_ = std::make_shared<ChatWatcher>(ChatWatcher::Hooks{
      [this](bool presented) { log_.chat(presented); },
      [this](const LiveChatMessage& message) { log_.chatMessage(message.id, message.text); },
      [this] { configureChat(); }});
  chatWatcher_->start();
  if (options_.showsCardReview && !showCardReview()) return *options_.picture + " is no picture";
  return options_.drive ? startDriver() : "";
}

bool Demo::showCardReview() {
  const auto picture = FileManager::contents(*options_.picture);
  if (!picture || !UIImage::fromData(*picture)) return false;
  cardReview_.emplace(
      *picture, options_.identity.value_or("identity"), [this] { host_->launch(); },
      [this](const std::string& problem) {
        std::fprintf(stderr, "%s\n", problem.c_str());
        finished_(1);
      });
  return true;
}

// The flow has just named its own account; what the command line says comes after it.
void Demo::configureChat() const {
  if (options_.chatGroup) LiveChat::groupId = options_.chatGroup;
  if (options_.chatName) LiveChat::name = options_.chatName;
  if (options_.chatEmail) LiveChat::email = options_.chatEmail;
  if (options_.chatLicense) LiveChat::licenseId = options_.chatLicense;
}

std::string Demo::startDriver() {
  auto parsed = readDrive(options_);
  if (const auto* problem = std::get_if<std::string>(&parsed)) return *problem;
  Driver::Hooks hooks;
  hooks.picture = [this](const std::string& name) { return writePicture(options_, name); };
  hooks.outcomes = [this] { return outcomes_; };
  hooks.done = [this](const std::string& failure) {
    if (!failure.empty()) std::fprintf(stderr, "%s\n", failure.c_str());
    finished_(failure.empty() ? 0 : 1);
  };
  driver_.emplace(*options_.drive, std::get<std::vector<DriveCommand>>(std::move(parsed)),
                  std::move(hooks));
  driver_->start();
  return "";
}

} // namespace zuvi::demo
