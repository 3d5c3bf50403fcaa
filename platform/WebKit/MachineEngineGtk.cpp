#include "platform/WebKit/MachineEngine.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Print.h>
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/ProcessInfo.h"
#include "platform/WebKit/BorrowedEnvironment.h"
#include "platform/WebKit/SandboxTrialGtk.h"
#include "platform/WebKit/WKWebView.h"
#include "platform/WebKit/WebModuleGtk.h"

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

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
    return JSONSerialization::jsonObject(json, JSONSerialization::Fragments::Allow,
                                         {.depth = deepest});
  }
  std::string additionalAuthorities() override {
    return URLSession::additionalAuthorities().string();
  }
  std::string programName() override { return ProcessInfo::processName(); }
};

constexpr const char* noSandbox = "WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS";

/// TLS 1.2 and up, keys that are made anew for each connection, RSA from 2048 bits.
constexpr const char* tlsPriority =
    "SECURE128:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:-KX-ALL:+ECDHE-ECDSA:+ECDHE-RSA:+DHE-RSA:"
    "%PROFILE_MEDIUM";

/// Whether the host, or the package that it runs in, keeps the engine from making a sandbox.
bool isSandboxRefused() {
  const char* word = std::getenv(noSandbox);
  const bool inSnap =
      std::getenv("SNAP") && std::getenv("SNAP_NAME") && std::getenv("SNAP_REVISION");
  return inSnap || (word && std::strcmp(word, "0") != 0);
}

/// What can be done on another thread: all that has no part in the toolkit.
struct Module {
  WebModuleEntry* entry = nullptr;
  std::string problem; ///< without an entry
  bool sandbox = false;
};

Module loadModule(const std::string& path) {
  Module module;
  SandboxTrial trial; // runs beside the loading
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library) module.entry = reinterpret_cast<WebModuleEntry*>(dlsym(library, "zuviWebEngine"));
  if (!module.entry) {
    const char* reason = dlerror();
    module.problem = reason ? reason : path;
  }
  module.sandbox = trial.succeeds() && !isSandboxRefused();
  return module;
}

class MachineEngine final : public WebEngine, public std::enable_shared_from_this<MachineEngine> {
public:
  explicit MachineEngine(std::string module) : path_(std::move(module)) {}

  std::string problem() const override {
    if (path_.empty()) return "there is no browser engine; install the package zuvisdk-chat";
    if (failed_) return "the browser engine does not load";
    if (sandboxed_ == false && WKWebView::requiresSandbox())
      return "web pages have no sandbox here, which this program demands; install bubblewrap, and "
             "allow user namespaces";
    if (!ForeignWidget::canBeShown()) return "pages want a window; open one on a display";
    return {};
  }

  std::optional<bool> isSandboxed() const override { return sandboxed_; }

  // Loading takes a third of a second and more, in which frames go on.
  void whenReady(std::function<void()> ready) override {
    if (engine_ || !problem().empty()) return ready();
    waiting_.push_back(std::move(ready));
    if (waiting_.size() > 1) return;
    DispatchQueue::global().async([self = shared_from_this()] {
      DispatchQueue::main().async(
          [self, module = loadModule(self->path_)] { self->start(module); });
    });
  }

  std::unique_ptr<WebPage> makePage(UIView& view, WebPageClient& client,
                                    const WKWebViewConfiguration& configuration,
                                    WebPage* opener) override {
    return usable() ? engine_->makePage(view, client, configuration, opener) : nullptr;
  }

  void fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> done) override {
    whenReady([self = shared_from_this(), done = std::move(done)] {
      if (self->usable()) return self->engine_->fetchDataRecords(done);
      DispatchQueue::main().async([done] { done({}); });
    });
  }

  void removeData(std::vector<WKWebsiteDataRecord> records, std::function<void()> done) override {
    whenReady([self = shared_from_this(), records = std::move(records), done = std::move(done)] {
      if (self->usable()) return self->engine_->removeData(records, done);
      DispatchQueue::main().async(done);
    });
  }

private:
  bool usable() const { return engine_ && problem().empty(); }

  void start(const Module& module) {
    if (module.entry) {
      sandboxed_ = module.sandbox;
      if (problem().empty()) startEngine(*module.entry);
    } else {
      failed_ = true;
      print("Web pages can't be shown: " + module.problem);
    }
    for (const auto& ready : std::exchange(waiting_, {}))
      ready();
  }

  void startEngine(WebModuleEntry& entry) {
    std::vector<std::string> wishes;
    if (!*sandboxed_) {
      g_message("Web pages run without a sandbox: this machine does not allow one.");
      wishes.push_back(std::string(noSandbox) + "=1");
    }
    // The engine looks for both into the environment, for the second as it starts its network
    // process, and nowhere else.
    const BorrowedEnvironment environment({std::string("G_TLS_GNUTLS_PRIORITY=") + tlsPriority},
                                          wishes);
    static Host host;
    engine_ = entry(host);
  }

  const std::string path_;
  WebEngine* engine_ = nullptr; ///< the module's, for as long as the process lives
  bool failed_ = false;
  std::optional<bool> sandboxed_; ///< absent until it was tried
  std::vector<std::function<void()>> waiting_;
};

} // namespace

std::string webModulePath() {
  const std::filesystem::path name = ZUVI_WEB_MODULE;
  const std::filesystem::path code =
      ProcessInfo::folderOfCode(reinterpret_cast<const void*>(&webModulePath));
  std::error_code failed;
  // Beside the library or program, below the library's folder, and seen from a program's.
  for (const std::filesystem::path& place :
       {code / name, code / "zuvisdk" / name, code / ".." / ZUVI_LIBDIR / "zuvisdk" / name,
        code / "../lib/zuvisdk" / name})
    if (std::filesystem::is_regular_file(place, failed)) return place.string();
  return {};
}

std::shared_ptr<WebEngine> makeMachineEngine(const std::string& module) {
  return std::make_shared<MachineEngine>(module);
}

} // namespace zuvi
