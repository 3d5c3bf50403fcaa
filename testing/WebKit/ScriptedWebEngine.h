#pragma once

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include "platform/WebKit/WKWebView.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zuvi::test {

class ScriptedWebEngine;

/// A page that notes what it is asked and says what the test tells it to.
class ScriptedPage final : public WebPage {
public:
  ScriptedPage(ScriptedWebEngine& owner, WebPageClient& teller,
               const WKWebViewConfiguration& settings)
      : client(teller), configuration(settings), engine_(owner) {}
  ~ScriptedPage() override;

  void load(const URLRequest& request) override { loads.push_back(request.url.absoluteString()); }
  void reload() override { reloads++; }
  void evaluate(const std::string& script,
                std::function<void(std::optional<Value>, std::optional<Error>)> done) override;
  void setCustomUserAgent(const std::string& agent) override { userAgent = agent; }
  void setOpaque(bool value) override { opaque = value; }
  std::optional<URL> url() const override { return std::nullopt; }
  std::string title() const override { return {}; }
  std::shared_ptr<const UIImage> picture(CGSize size, double) override {
    pictured.push_back(size);
    return image;
  }

  WebPageClient& client;
  const WKWebViewConfiguration configuration;
  std::vector<std::string> loads, scripts;
  std::vector<CGSize> pictured;
  int reloads = 0;
  std::string userAgent;
  bool opaque = true;
  std::shared_ptr<const UIImage> image;

private:
  ScriptedWebEngine& engine_;
};

/// An engine without a browser. The pages that live are listed in the order of their making.
class ScriptedWebEngine final : public WebEngine {
public:
  std::string problem() const override { return available ? "" : "no engine in this test"; }
  std::unique_ptr<WebPage> makePage(UIView&, WebPageClient& client,
                                    const WKWebViewConfiguration& configuration,
                                    WebPage*) override {
    auto page = std::make_unique<ScriptedPage>(*this, client, configuration);
    pages.push_back(page.get());
    return page;
  }
  void fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> done) override {
    DispatchQueue::main().async([this, done = std::move(done)] { done(records); });
  }
  void removeData(std::vector<WKWebsiteDataRecord> some, std::function<void()> done) override {
    for (const auto& record : some)
      removed.push_back(record.displayName);
    DispatchQueue::main().async(std::move(done));
  }

  bool available = true;
  std::vector<ScriptedPage*> pages;
  std::vector<WKWebsiteDataRecord> records;
  std::vector<std::string> removed;
  /// What scripts give; all others give an error.
  std::map<std::string, Value> results{{"navigator.userAgent", "Engine/1"}};
};

inline ScriptedPage::~ScriptedPage() {
  std::erase(engine_.pages, this);
}

inline void
ScriptedPage::evaluate(const std::string& script,
                       std::function<void(std::optional<Value>, std::optional<Error>)> done) {
  scripts.push_back(script);
  std::optional<Value> result;
  std::optional<Error> error;
  if (script == "navigator.userAgent" && !userAgent.empty())
    result = userAgent;
  else if (const auto found = engine_.results.find(script); found != engine_.results.end())
    result = found->second;
  else
    error = Error{"Script", 1, "no such function"};
  DispatchQueue::main().async([result, error, done = std::move(done)] { done(result, error); });
}

} // namespace zuvi::test
