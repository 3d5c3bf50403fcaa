#include "platform/WebKitGtk/PageGtk.h"

#include "platform/WebKitGtk/ErrorsGtk.h"
#include "platform/WebKitGtk/PageWidgetGtk.h"
#include "platform/WebKitGtk/RightsGtk.h"
#include "platform/WebKitGtk/TrustGtk.h"
#include "platform/WebKitGtk/ValuesGtk.h"

#include <filesystem>

#include <libsoup/soup.h>

namespace zuvi {

Page::Page(Engine& engine, UIView& view, WebPageClient& client,
           const WKWebViewConfiguration& configuration, Page* opener)
    : engine_(engine), client_(client), contents_(webkit_user_content_manager_new()),
      scripts_(g_cancellable_new()) {
  fillContents(*configuration.userContentController);
  // A page for another's window shares its session, context and process, but none of its settings.
  const auto settings = makeSettings();
  if (opener) secure_ = opener->secure_;
  if (opener)
    page_ = WEBKIT_WEB_VIEW(g_object_new(pageWidgetType(), "user-content-manager", contents_.get(),
                                         "settings", settings.get(), "related-view", opener->page_,
                                         nullptr));
  else
    page_ = WEBKIT_WEB_VIEW(g_object_new(
        pageWidgetType(), "user-content-manager", contents_.get(), "settings", settings.get(),
        "web-context", engine.context(), "network-session", engine.session(), nullptr));
  setOpaque(true);
  refuseRights(page_);
  g_signal_connect(page_, "decide-policy", G_CALLBACK(onPolicy), this);
  g_signal_connect(page_, "load-changed", G_CALLBACK(onLoad), this);
  g_signal_connect(page_, "load-failed", G_CALLBACK(onFailure), this);
  g_signal_connect(page_, "load-failed-with-tls-errors", G_CALLBACK(onUntrusted), this);
  g_signal_connect(page_, "web-process-terminated", G_CALLBACK(onTermination), this);
  g_signal_connect(page_, "notify::is-web-process-responsive", G_CALLBACK(onResponsiveness), this);
  g_signal_connect(page_, "run-file-chooser", G_CALLBACK(onFiles), this);
  watchPerson();
  g_signal_connect(page_, "create", G_CALLBACK(onCreate), this);
  g_signal_connect(page_, "close", G_CALLBACK(onClose), this);
  place_ = engine.host().place(view, GTK_WIDGET(page_));
  setPlace(page_, place_.get());
}

Page::~Page() {
  g_signal_handlers_disconnect_by_data(page_, this);
  g_signal_handlers_disconnect_by_data(contents_.get(), this);
  g_signal_handlers_disconnect_by_data(input_, this);
  setPlace(page_, nullptr);
  g_cancellable_cancel(scripts_.get());
  webkit_web_view_stop_loading(page_);
}

/// Handlers are known to every frame, those of strangers too. So they bear names that nobody can
/// guess, and only the main frame has them under their own.
static const char* const handlersOfMainFrame = R"js((function (handlers) {
  const all = window.webkit.messageHandlers, own = {};
  for (const [name, secret] of handlers) {
    const handler = all[secret], post = handler.postMessage.bind(handler);
    own[name] = Object.freeze({ postMessage(body) { return post(body); } });
  }
  Object.defineProperty(window.webkit, 'messageHandlers', { value: Object.freeze(own) });
  // Else the collector takes the object, and the engine makes another without what was defined.
  Object.defineProperty(window, Symbol(), { value: window.webkit });
}))js";

static void addScript(WebKitUserContentManager* contents, const std::string& source,
                      WKUserScriptInjectionTime time, bool forMainFrameOnly) {
  WebKitUserScript* added =
      webkit_user_script_new(source.c_str(),
                             forMainFrameOnly ? WEBKIT_USER_CONTENT_INJECT_TOP_FRAME
                                              : WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                             time == WKUserScriptInjectionTime::AtDocumentStart
                                 ? WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START
                                 : WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END,
                             nullptr, nullptr);
  webkit_user_content_manager_add_script(contents, added);
  webkit_user_script_unref(added);
}

void Page::fillContents(const WKUserContentController& controller) {
  std::string pairs;
  for (const auto& [name, handler] : controller.handlers()) {
    const std::string secret = std::string("zuvi-") + TextPointer(g_uuid_string_random()).get();
    handlers_[secret] = name;
    pairs += "['" + name + "','" + secret + "'],";
    // First the listener: a message may come as soon as pages know the name.
    g_signal_connect(contents_.get(), ("script-message-received::" + secret).c_str(),
                     G_CALLBACK(onMessage), this);
    webkit_user_content_manager_register_script_message_handler(contents_.get(), secret.c_str(),
                                                                nullptr);
  }
  if (!pairs.empty())
    addScript(contents_.get(), handlersOfMainFrame + ("([" + pairs + "])"),
              WKUserScriptInjectionTime::AtDocumentStart, true);
  for (const WKUserScript& script : controller.userScripts())
    addScript(contents_.get(), script.source, script.injectionTime, script.forMainFrameOnly);
}

// What is asked of it

static bool leadsTo(WebKitURIRequest* request, const char* scheme) {
  const char* address = webkit_uri_request_get_uri(request);
  return address && g_ascii_strncasecmp(address, scheme, strlen(scheme)) == 0;
}

void Page::load(const URLRequest& request) {
  dead_ = false;
  request_.reset(webkit_uri_request_new(request.url.absoluteString().c_str()));
  secure_ = leadsTo(request_.get(), "https:");
  if (SoupMessageHeaders* headers = webkit_uri_request_get_http_headers(request_.get()))
    for (const auto& [name, value] : request.allHTTPHeaderFields)
      soup_message_headers_replace(headers, name.c_str(), value.c_str());
  webkit_web_view_load_request(page_, request_.get());
}

void Page::reload() {
  dead_ = false;
  // The engine reloads only what it has shown, not what failed before.
  if (request_ && !begun_) return webkit_web_view_load_request(page_, request_.get());
  webkit_web_view_reload(page_);
}

static void answerSoon(std::function<void()> answer) {
  using Answer = std::function<void()>;
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer data) -> gboolean {
        (*static_cast<Answer*>(data))();
        return G_SOURCE_REMOVE;
      },
      new Answer(std::move(answer)), [](gpointer data) { delete static_cast<Answer*>(data); });
}

void Page::evaluate(const std::string& script,
                    std::function<void(std::optional<Value>, std::optional<Error>)> done) {
  // A page that hangs or is gone never answers, and none is the right one to ask for its engine's
  // name. Before the first load this also lets the process start beside that (0.2 s sooner).
  if (script == "navigator.userAgent")
    return answerSoon([done = std::move(done), name = std::string(webkit_settings_get_user_agent(
                                                   webkit_web_view_get_settings(page_)))] {
      done(name, std::nullopt);
    });
  if (dead_)
    return answerSoon([done = std::move(done)] {
      done(std::nullopt, Error{"WKErrorDomain", 2, "The process of the page is gone."});
    });
  struct Call {
    WebModuleHost& host;
    std::function<void(std::optional<Value>, std::optional<Error>)> done;
    std::shared_ptr<gint64> scriptedAt;
  };
  const auto answer = [](GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Call> call(static_cast<Call*>(data));
    *call->scriptedAt = g_get_monotonic_time();
    GError* failure = nullptr;
    const ObjectPointer<JSCValue> value(
        webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, &failure));
    const ErrorPointer error(failure);
    if (error) return call->done(std::nullopt, errorOfScript(*error));
    if (auto converted = valueOf(*value, call->host))
      return call->done(std::move(converted), std::nullopt);
    call->done(std::nullopt, Error{"WKErrorDomain", 5, "The script's result has no form here."});
  };
  *scriptedAt_ = g_get_monotonic_time();
  webkit_web_view_evaluate_javascript(page_, script.data(), gssize(script.size()), nullptr, nullptr,
                                      scripts_.get(), answer,
                                      new Call{engine_.host(), std::move(done), scriptedAt_});
}

void Page::setCustomUserAgent(const std::string& userAgent) {
  webkit_settings_set_user_agent(webkit_web_view_get_settings(page_),
                                 userAgent.empty() ? nullptr : userAgent.c_str());
}

static bool hasGraphicsProcessor() {
  std::error_code failed;
  return std::filesystem::exists("/dev/dri/renderD128", failed);
}

void Page::setOpaque(bool opaque) {
  // Without a graphics processor its library only costs time and memory. But the engine's other
  // way of drawing leaves behind what a page drew before it wherever it is clear.
  webkit_settings_set_hardware_acceleration_policy(
      webkit_web_view_get_settings(page_), opaque && !hasGraphicsProcessor()
                                               ? WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER
                                               : WEBKIT_HARDWARE_ACCELERATION_POLICY_ALWAYS);
  const GdkRGBA color = {1, 1, 1, opaque ? 1.0F : 0.0F};
  webkit_web_view_set_background_color(page_, &color);
}

std::optional<URL> Page::url() const {
  const char* uri = webkit_web_view_get_uri(page_);
  // Without its process the engine no longer knows, though it would reload it.
  const std::string address = uri && *uri ? uri : address_;
  return address.empty() ? std::nullopt : engine_.host().url(address);
}

std::string Page::title() const {
  const char* title = webkit_web_view_get_title(page_);
  return title ? title : "";
}

std::shared_ptr<const UIImage> Page::picture(CGSize size, double scale) {
  return place_->picture(size, scale);
}

// Where it goes

static WKNavigationType typeOf(WebKitNavigationType type) {
  switch (type) {
  case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
    return WKNavigationType::LinkActivated;
  case WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED:
  case WEBKIT_NAVIGATION_TYPE_FORM_RESUBMITTED:
    return WKNavigationType::FormSubmitted;
  case WEBKIT_NAVIGATION_TYPE_BACK_FORWARD:
    return WKNavigationType::BackForward;
  case WEBKIT_NAVIGATION_TYPE_RELOAD:
    return WKNavigationType::Reload;
  default:
    return WKNavigationType::Other;
  }
}

WKNavigationAction Page::actionOf(WebKitNavigationAction* action) const {
  WKNavigationAction made;
  made.navigationType = typeOf(webkit_navigation_action_get_navigation_type(action));
  const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  if (uri) made.url = engine_.host().url(uri);
  made.byPerson = isByPerson(action);
  return made;
}

bool Page::isByPerson(WebKitNavigationAction* action) const {
  // The engine takes what a script of ours sets going, even by a timer of the page's, for a
  // person's doing.
  constexpr gint64 scriptLasts = 2 * gint64(G_USEC_PER_SEC);
  const bool scripted =
      *scriptedAt_ > touchedAt_ && g_get_monotonic_time() - *scriptedAt_ < scriptLasts;
  return webkit_navigation_action_is_user_gesture(action) && !scripted;
}

void Page::watchPerson() {
  GtkEventController* input = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(input, GTK_PHASE_CAPTURE);
  g_signal_connect(input, "event", G_CALLBACK(onInput), this);
  gtk_widget_add_controller(GTK_WIDGET(page_), input);
  input_ = input;
}

gboolean Page::onInput(GtkEventController*, GdkEvent* event, Page* self) {
  switch (gdk_event_get_event_type(event)) {
  case GDK_BUTTON_PRESS:
  case GDK_BUTTON_RELEASE:
  case GDK_TOUCH_BEGIN:
  case GDK_TOUCH_END:
  case GDK_KEY_PRESS:
    self->touchedAt_ = g_get_monotonic_time();
    break;
  default:
    break;
  }
  return FALSE;
}

/// A page has no business among files, nor in the settings that the program itself may open. By the
/// text as it is, which need not be an address.
static bool leadsIntoMachine(WebKitURIRequest* request) {
  return leadsTo(request, "file:") || leadsTo(request, "app-settings:");
}

gboolean Page::onPolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                        WebKitPolicyDecisionType type, Page* self) {
  bool allowed = false;
  if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    // What can't be shown would become a download.
    allowed = webkit_response_policy_decision_is_mime_type_supported(
        WEBKIT_RESPONSE_POLICY_DECISION(decision));
  } else {
    WebKitNavigationAction* asked = webkit_navigation_policy_decision_get_navigation_action(
        WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    WKNavigationAction action = self->actionOf(asked);
    action.hasTargetFrame = type != WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION;
    WebKitURIRequest* request = webkit_navigation_action_get_request(asked);
    const bool leavesSafety = self->secure_ && leadsTo(request, "http:");
    allowed = !leadsIntoMachine(request) &&
              self->client_.decidePolicy(action) == WKNavigationActionPolicy::Allow &&
              !leavesSafety;
  }
  if (allowed)
    webkit_policy_decision_use(decision);
  else
    webkit_policy_decision_ignore(decision);
  return TRUE;
}

void Page::onLoad(WebKitWebView*, WebKitLoadEvent event, Page* self) {
  if (event == WEBKIT_LOAD_STARTED) self->failed_ = self->dead_ = false;
  if (const char* uri = webkit_web_view_get_uri(self->page_)) self->address_ = uri;
  if (event == WEBKIT_LOAD_COMMITTED) {
    self->attempts_ = 0;
    self->begun_ = true;
    GTlsCertificate* certificate = nullptr;
    GTlsCertificateFlags flaws{};
    if (webkit_web_view_get_tls_info(self->page_, &certificate, &flaws) && certificate &&
        !isFitForServer(certificate))
      return webkit_web_view_terminate_web_process(self->page_); // nothing of it may run on
    return self->client_.didCommit();
  }
  // The engine also finishes what has failed.
  if (event == WEBKIT_LOAD_FINISHED && !self->failed_) self->client_.didFinish();
}

void Page::fail(WebKitLoadEvent when, const Error& error) {
  failed_ = true;
  if (when == WEBKIT_LOAD_STARTED || when == WEBKIT_LOAD_REDIRECTED)
    client_.didFailProvisionalNavigation(error);
  else
    client_.didFail(error);
}

void Page::loadAgain(const char* address) {
  failed_ = true; // the attempt before, of which nobody hears
  // With the headers that were asked for, unless a link led elsewhere.
  if (request_ && g_str_equal(webkit_uri_request_get_uri(request_.get()), address))
    webkit_web_view_load_request(page_, request_.get());
  else
    webkit_web_view_load_uri(page_, address);
}

namespace {
constexpr int mostAttempts = 5; // of one load
}

gboolean Page::onFailure(WebKitWebView*, WebKitLoadEvent event, const char* address, GError* error,
                         Page* self) {
  // Now and then the engine gives up a connection with an untrusted certificate without saying why.
  // What others cancel bears another code.
  if (event == WEBKIT_LOAD_STARTED && g_str_has_prefix(address, "https:") &&
      g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED) &&
      self->attempts_++ < mostAttempts) {
    self->loadAgain(address);
    return TRUE;
  }
  self->attempts_ = 0;
  self->fail(event, errorOfLoad(*error));
  return TRUE; // no page of the engine's own about it
}

gboolean Page::onUntrusted(WebKitWebView*, const char* address, GTlsCertificate* certificate,
                           GTlsCertificateFlags, Page* self) {
  GUri* uri = g_uri_parse(address, G_URI_FLAGS_NONE, nullptr);
  const std::string host = uri && g_uri_get_host(uri) ? g_uri_get_host(uri) : "";
  if (uri) g_uri_unref(uri);
  if (!host.empty() && self->attempts_++ < mostAttempts &&
      isTrusted(certificate, host, self->engine_.host().additionalAuthorities())) {
    // The engine writes an address of numbers in brackets.
    const std::string name = host.find(':') == std::string::npos ? host : "[" + host + "]";
    webkit_network_session_allow_tls_certificate_for_host(self->engine_.session(), certificate,
                                                          name.c_str());
    self->loadAgain(address);
    return TRUE;
  }
  self->attempts_ = 0;
  self->fail(WEBKIT_LOAD_STARTED, {NSURLErrorDomain, NSURLErrorServerCertificateUntrusted,
                                   "The certificate of " + host + " is not trusted."});
  return TRUE;
}

// What happens to it

void Page::onTermination(WebKitWebView*, WebKitWebProcessTerminationReason reason, Page* self) {
  self->dead_ = true;
  if (reason == WEBKIT_WEB_PROCESS_TERMINATED_BY_API)
    return self->fail(WEBKIT_LOAD_STARTED, {NSURLErrorDomain, NSURLErrorServerCertificateUntrusted,
                                            "The certificate is none of a server or too weak."});
  self->client_.processDidTerminate();
}

void Page::onResponsiveness(WebKitWebView*, GParamSpec*, Page* self) {
  self->client_.didChangeResponsiveness(webkit_web_view_get_is_web_process_responsive(self->page_));
}

gboolean Page::onFiles(WebKitWebView*, WebKitFileChooserRequest* request, Page* self) {
  webkit_file_chooser_request_cancel(request);
  self->client_.didRefuseFiles();
  return TRUE;
}

GtkWidget* Page::onCreate(WebKitWebView*, WebKitNavigationAction* action, Page* self) {
  WKNavigationAction asked = self->actionOf(action);
  asked.hasTargetFrame = false;
  auto* made = dynamic_cast<Page*>(self->client_.createPage(asked));
  return made ? GTK_WIDGET(g_object_ref(made->page_)) : nullptr;
}

void Page::onClose(WebKitWebView*, Page* self) {
  self->client_.didClose();
}

void Page::onMessage(WebKitUserContentManager* contents, JSCValue* body, Page* self) {
  const GSignalInvocationHint* hint = g_signal_get_invocation_hint(contents);
  auto value = valueOf(*body, self->engine_.host());
  const auto handler = self->handlers_.find(g_quark_to_string(hint->detail));
  if (value && handler != self->handlers_.end())
    self->client_.didReceiveScriptMessage({handler->second, std::move(*value)});
}

} // namespace zuvi
