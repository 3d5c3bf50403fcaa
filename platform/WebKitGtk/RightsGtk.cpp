#include "platform/WebKitGtk/RightsGtk.h"

namespace zuvi {

namespace {

gboolean refusePermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
  webkit_permission_request_deny(request);
  return TRUE;
}

gboolean refuseState(WebKitWebView*, WebKitPermissionStateQuery* query, gpointer) {
  webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
  return TRUE;
}

gboolean refuseColors(WebKitWebView*, WebKitColorChooserRequest* request, gpointer) {
  webkit_color_chooser_request_cancel(request);
  return TRUE;
}

gboolean refuseSignIn(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer) {
  webkit_authentication_request_cancel(request);
  return TRUE;
}

/// Nobody is asked anything: a question is answered with no, except whether a page may be left.
gboolean refuseDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer) {
  if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
    webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
  return TRUE;
}

/// Answers for a signal whose request needs no more than that.
gboolean refuse() {
  return TRUE;
}

/// Leaves what edits text; the rest leads out of the page or is of no use in it.
gboolean onContextMenu(WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer) {
  GList* next = nullptr;
  for (GList* i = webkit_context_menu_get_items(menu); i; i = next) {
    next = i->next;
    auto* item = static_cast<WebKitContextMenuItem*>(i->data);
    switch (webkit_context_menu_item_get_stock_action(item)) {
    case WEBKIT_CONTEXT_MENU_ACTION_COPY:
    case WEBKIT_CONTEXT_MENU_ACTION_CUT:
    case WEBKIT_CONTEXT_MENU_ACTION_PASTE:
    case WEBKIT_CONTEXT_MENU_ACTION_PASTE_AS_PLAIN_TEXT:
    case WEBKIT_CONTEXT_MENU_ACTION_DELETE:
    case WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL:
    case WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD:
    case WEBKIT_CONTEXT_MENU_ACTION_SPELLING_GUESS:
    case WEBKIT_CONTEXT_MENU_ACTION_INSERT_EMOJI:
      break;
    default:
      webkit_context_menu_remove(menu, item);
    }
  }
  return webkit_context_menu_get_n_items(menu) == 0;
}

void refuseZoomBy(GtkWidget* page) {
  GListModel* controllers = gtk_widget_observe_controllers(page);
  for (guint i = 0; i < g_list_model_get_n_items(controllers); i++) {
    const ObjectPointer<GtkEventController> controller(
        GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers, i)));
    if (GTK_IS_GESTURE_ZOOM(controller.get()))
      gtk_event_controller_set_propagation_phase(controller.get(), GTK_PHASE_NONE);
  }
  g_object_unref(controllers);
}

} // namespace

ObjectPointer<WebKitSettings> makeSettings() {
  ObjectPointer<WebKitSettings> settings(webkit_settings_new());
  g_object_set(settings.get(), "enable-developer-extras", FALSE, "enable-fullscreen", FALSE,
               "enable-media-stream", FALSE, "enable-webrtc", FALSE, "enable-page-cache", FALSE,
               "allow-file-access-from-file-urls", FALSE, "allow-universal-access-from-file-urls",
               FALSE, "enable-back-forward-navigation-gestures", FALSE,
               "media-playback-requires-user-gesture", TRUE, nullptr);
  // A page that is out of sight still counts its messages.
  WebKitFeatureList* features = webkit_settings_get_all_features();
  for (gsize i = 0; i < webkit_feature_list_get_length(features); i++) {
    WebKitFeature* feature = webkit_feature_list_get(features, i);
    if (g_str_has_prefix(webkit_feature_get_identifier(feature), "HiddenPageDOMTimerThrottling"))
      webkit_settings_set_feature_enabled(settings.get(), feature, FALSE);
  }
  webkit_feature_list_unref(features);
  return settings;
}

void refuseRights(WebKitWebView* page) {
  g_signal_connect(page, "permission-request", G_CALLBACK(refusePermission), nullptr);
  g_signal_connect(page, "query-permission-state", G_CALLBACK(refuseState), nullptr);
  g_signal_connect(page, "run-color-chooser", G_CALLBACK(refuseColors), nullptr);
  g_signal_connect(page, "authenticate", G_CALLBACK(refuseSignIn), nullptr);
  g_signal_connect(page, "script-dialog", G_CALLBACK(refuseDialog), nullptr);
  g_signal_connect(page, "context-menu", G_CALLBACK(onContextMenu), nullptr);
  for (const char* signal : {"print", "show-notification", "enter-fullscreen"})
    g_signal_connect(page, signal, G_CALLBACK(refuse), nullptr);
  refuseZoomBy(GTK_WIDGET(page));
}

} // namespace zuvi
