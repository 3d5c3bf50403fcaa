#include "platform/WebKitGtk/TabGtk.h"

#include "platform/WebKitGtk/PointerGtk.h"

namespace zuvi {

namespace {

struct Question {
  ObjectPointer<WebKitWebView> page;
  GtkDirectionType direction;
};

void onAnswer(GObject*, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Question> question(static_cast<Question*>(data));
  const ObjectPointer<JSCValue> leaves(
      webkit_web_view_evaluate_javascript_finish(question->page.get(), result, nullptr));
  GtkWidget* page = GTK_WIDGET(question->page.get());
  GtkRoot* top = gtk_widget_get_root(page);
  if (leaves && jsc_value_to_boolean(leaves.get()) && top && gtk_widget_is_focus(page))
    gtk_widget_child_focus(GTK_WIDGET(top), question->direction);
}

gboolean ask(gpointer data) {
  auto* question = static_cast<Question*>(data);
  // In a world of its own, where the page's scripts can't reach.
  webkit_web_view_evaluate_javascript(question->page.get(),
                                      "[null, document.body].includes(document.activeElement)", -1,
                                      "zuvi", nullptr, nullptr, onAnswer, question);
  return FALSE;
}

gboolean onKey(GtkEventControllerKey*, guint key, guint, GdkModifierType, gpointer page) {
  const bool backward = key == GDK_KEY_ISO_Left_Tab;
  if (key == GDK_KEY_Tab || backward) // once the page has had the key
    g_idle_add(ask, new Question{ObjectPointer<WebKitWebView>(WEBKIT_WEB_VIEW(g_object_ref(page))),
                                 backward ? GTK_DIR_TAB_BACKWARD : GTK_DIR_TAB_FORWARD});
  return FALSE;
}

} // namespace

void letTabLeave(WebKitWebView* page) {
  GtkEventController* keys = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
  g_signal_connect(keys, "key-pressed", G_CALLBACK(onKey), page);
  gtk_widget_add_controller(GTK_WIDGET(page), keys);
}

} // namespace zuvi
