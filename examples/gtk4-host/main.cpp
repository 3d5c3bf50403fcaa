// A program that has widgets and an event loop of its own: the flow shows in a panel beside them.

#include "../CommandLine.h"

#include <ZuviSDK/ZuviUI.h>

using namespace zuvi;

namespace {

/// A booking's desk: fields on the left, the guest's verification on the right.
class Desk final : public ZVKYCDelegate {
public:
  GtkWidget* makeWindow(GtkApplication* application) {
    GtkWidget* window = gtk_application_window_new(application);
    gtk_window_set_title(GTK_WINDOW(window), "Reception");
    gtk_window_set_default_size(GTK_WINDOW(window), 760, 820);

    GtkWidget* fields = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
    gtk_widget_set_margin_start(fields, 24);
    gtk_widget_set_margin_end(fields, 24);
    gtk_widget_set_margin_top(fields, 24);
    gtk_widget_set_hexpand(fields, TRUE);
    name_ = gtk_entry_new();
    gtk_entry_set_placeholder_text(GTK_ENTRY(name_), "Guest");
    outcome_ = gtk_label_new("Not verified yet");
    gtk_box_append(GTK_BOX(fields), name_);
    gtk_box_append(GTK_BOX(fields), outcome_);

    GtkWidget* panel = screenWidgetNew();
    gtk_widget_set_size_request(panel, 375, 780);
    gtk_widget_set_hexpand(panel, FALSE);
    GtkWidget* columns = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_box_append(GTK_BOX(columns), fields);
    gtk_box_append(GTK_BOX(columns), gtk_separator_new(GTK_ORIENTATION_VERTICAL));
    gtk_box_append(GTK_BOX(columns), panel);
    gtk_window_set_child(GTK_WINDOW(window), columns);

    screen_ = make<UIViewController>();
    screen_->view()->addSubview(make<ZVKYCButton>(CGRect{47, 360, 280, 60}));
    surface_ = make<UIWindow>();
    surface_->setRootViewController(screen_);
    surface_->makeKeyAndVisible();
    return window;
  }

  void zvKYCLoginSuccess(const std::string& identity) override {
    const std::string name = gtk_editable_get_text(GTK_EDITABLE(name_));
    gtk_label_set_text(GTK_LABEL(outcome_), (name + " is verified: " + identity).c_str());
  }
  void zvKYCLoginCancelled() override {
    gtk_label_set_text(GTK_LABEL(outcome_), "The guest left the verification");
  }

private:
  GtkWidget *name_ = nullptr, *outcome_ = nullptr;
  std::shared_ptr<UIViewController> screen_;
  std::shared_ptr<UIWindow> surface_;
};

} // namespace

int main(int argc, char** argv) {
  const auto desk = std::make_shared<Desk>();
  ZVKYC::instance().delegate = desk;
  ZVKYC::registerWithClientId(readCommandLine(argc, argv));
  // The screen's widget attaches the kit to this loop: there is no other.
  GtkApplication* application =
      gtk_application_new("org.example.Reception", G_APPLICATION_NON_UNIQUE);
  g_signal_connect(application, "activate", G_CALLBACK(+[](GtkApplication* self, gpointer data) {
                     GtkWidget* window = static_cast<Desk*>(data)->makeWindow(self);
                     gtk_window_present(GTK_WINDOW(window));
                   }),
                   desk.get());
  const int status = g_application_run(G_APPLICATION(application), 0, nullptr);
  g_object_unref(application);
  return status;
}
