#include "platform/WebKit/MachineEngine.h"

#include "platform/Dispatch/DispatchQueue.h"
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/Print.h"
#include "platform/Foundation/ProcessInfo.h"
#include "platform/WebKit/WebModuleGtk.h"

#include <dlfcn.h>

#include <filesystem>

namespace zuvi {

namespace {

class Host final : public WebModuleHost {
public:
  std::unique_ptr<ForeignWidget> place(UIView& view, GtkWidget* widget) override {
    return ForeignWidget::place(view, widget);
  }
  std::optional<URL> url(const std::string& text) override { return URL::fromString(text); }
  std::optional<Value> value(std::string_view json) override {
    constexpr std::size_t deepest = 2048; // pages nest deeper than answers of servers
    return JSONSerialization::jsonObject(json, JSONSerialization::Fragments::Allow, deepest);
  }
  std::string additionalAuthorities() override {
    return URLSession::additionalAuthorities().string();
  }
};

class MachineEngine final : public WebEngine {
public:
  explicit MachineEngine(std::string module) : path_(std::move(module)) {}

  bool isAvailable() const override {
    return !path_.empty() && !failed_ && ForeignWidget::canBeShown();
  }

  std::unique_ptr<WebPage> makePage(UIView& view, WebPageClient& client,
                                    const WKWebViewConfiguration& configuration,
                                    WebPage* opener) override {
    WebEngine* engine = module();
    return engine ? engine->makePage(view, client, configuration, opener) : nullptr;
  }

  void fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> done) override {
    if (WebEngine* engine = module()) return engine->fetchDataRecords(std::move(done));
    DispatchQueue::main().async([done = std::move(done)] { done({}); });
  }

  void removeData(std::vector<WKWebsiteDataRecord> records, std::function<void()> done) override {
    if (WebEngine* engine = module())
      return engine->removeData(std::move(records), std::move(done));
    DispatchQueue::main().async(std::move(done));
  }

private:
  /// Null when there is none now.
  WebEngine* module() {
    if (!isAvailable()) return nullptr;
    if (engine_) return engine_;
    void* library = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
    auto* entry =
        library ? reinterpret_cast<WebModuleEntry*>(dlsym(library, "zuviWebEngine")) : nullptr;
    if (entry) {
      static Host host;
      engine_ = entry(host);
    } else {
      failed_ = true;
      const char* reason = dlerror();
      print(std::string("Web pages can't be shown: ") + (reason ? reason : path_));
    }
    return engine_;
  }

  const std::string path_;
  WebEngine* engine_ = nullptr; ///< the module's, for as long as the process lives
  bool failed_ = false;
};

} // namespace

std::string webModulePath() {
  const std::filesystem::path built = ZUVI_BUILD_WEB_MODULE, name = built.filename();
  const std::filesystem::path code =
      ProcessInfo::folderOfCode(reinterpret_cast<const void*>(&webModulePath));
  std::error_code failed;
  for (const std::filesystem::path& place :
       {code / name, code / "../lib/zuvisdk" / name, code / "zuvisdk" / name, built})
    if (std::filesystem::is_regular_file(place, failed)) return place.string();
  return {};
}

std::shared_ptr<WebEngine> makeMachineEngine(const std::string& module) {
  return std::make_shared<MachineEngine>(module);
}

} // namespace zuvi
