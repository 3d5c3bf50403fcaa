#include <ZuviSDK/UIKit/ScreenWidget.h>

#include <ZuviSDK/Dispatch/MainLoop.h>
#include <ZuviSDK/UIKit/UIApplication.h>
#include "platform/QuartzCore/LayerRendererGsk.h"
#include "platform/UIKit/AccessibilityTreeGtk.h"
#include "platform/UIKit/ForeignWidgetGtk.h"
#include "platform/UIKit/TextSizeGtk.h"
#include "platform/UIKit/UIScreen.h"

#include <utility>

using namespace zuvi;

namespace {

struct ZuviScreenWidget {
  GtkWidget parent;
  UIEdgeInsets safeArea;
  ScreenSurface* surface;
  AccessibilityTree* tree;
  guint tick;
  gboolean leaving; ///< Tab has come to the last of our views
  guint held;       ///< code of the key that is down; 0: none
  guint32 pressed;  ///< when the latest key went down, of this widget or one within
  guint32 moved;    ///< `pressed` of the Tab that has moved the focus
};

struct ZuviScreenWidgetClass {
  GtkWidgetClass parent;
};

G_DEFINE_TYPE(ZuviScreenWidget, zuvi_screen_widget, GTK_TYPE_WIDGET) // NOLINT: the macro's own code

/// The one that shows the screen; another may take it over before the first is gone.
GtkWidget* current = nullptr;

/// What the screen asks for while it is laid out or drawn is part of that.
enum class Phase { Idle, Layout, Drawing };
Phase phase = Phase::Idle;

ZuviScreenWidget* self(gpointer widget) {
  return reinterpret_cast<ZuviScreenWidget*>(widget);
}

void requestFrame(GtkWidget* widget) {
  // Widgets of others move only in the toolkit's layout phase, which comes before drawing.
  if (phase == Phase::Idle && ForeignWidget::exist()) gtk_widget_queue_allocate(widget);
  if (phase != Phase::Drawing) gtk_widget_queue_draw(widget);
  if (widget == current) self(widget)->tree->setNeedsUpdate();
}

class WidgetSurface final : public ScreenSurface {
public:
  explicit WidgetSurface(GtkWidget* widget) : widget_(widget) {}
  void requestFrame() override { ::requestFrame(widget_); }
  void announce(const std::string& text) override { self(widget_)->tree->announce(text); }

private:
  GtkWidget* widget_;
};

/// Pixels a point.
double scaleOf(GtkWidget* widget) {
#if GTK_CHECK_VERSION(4, 12, 0)
  GtkNative* native = gtk_widget_get_native(widget);
  GdkSurface* surface = native ? gtk_native_get_surface(native) : nullptr;
  if (surface) return gdk_surface_get_scale(surface);
#endif
  return gtk_widget_get_scale_factor(widget); // of a scale between two, the larger
}

void configure(GtkWidget* widget) {
  UIScreen::main().configure(
      {double(gtk_widget_get_width(widget)), double(gtk_widget_get_height(widget))},
      scaleOf(widget), self(widget)->safeArea);
}

/// The window has come to a display of another scale; its size may stay.
void onScale(GdkSurface*, GParamSpec*, gpointer widget) {
  if (widget != current) return;
  configure(GTK_WIDGET(widget));
  requestFrame(GTK_WIDGET(widget));
}

// Drawing

gboolean onTick(GtkWidget* widget, GdkFrameClock*, gpointer) {
  requestFrame(widget);
  return G_SOURCE_CONTINUE;
}

void snapshot(GtkWidget* widget, GtkSnapshot* snapshot) {
  UIScreen& screen = UIScreen::main();
  phase = Phase::Drawing;
  screen.layoutIfNeeded();
  ForeignWidget::drawAll();
  const LayerRenderer::Frame frame = LayerRenderer::render(
      screen.rootLayer(), scaleOf(widget),
      GSK_IS_CAIRO_RENDERER(gtk_native_get_renderer(gtk_widget_get_native(widget))));
  screen.takeDamage(); // the toolkit finds out by itself what differs
  if (frame.node) gtk_snapshot_append_node(snapshot, frame.node);
  // The frame clock runs just as long as something moves by itself.
  ZuviScreenWidget* me = self(widget);
  if (frame.animating && !me->tick)
    me->tick = gtk_widget_add_tick_callback(widget, onTick, nullptr, nullptr);
  if (!frame.animating && me->tick) {
    gtk_widget_remove_tick_callback(widget, me->tick);
    me->tick = 0;
  }
  phase = Phase::Idle;
}

void sizeAllocate(GtkWidget* widget, int, int, int) {
  phase = Phase::Layout;
  configure(widget);
  if (ForeignWidget::exist()) {
    UIScreen::main().layoutIfNeeded();
    ForeignWidget::placeAll();
  }
  self(widget)->tree->placeAll();
  phase = Phase::Idle;
}

// Touches and keys

/// A scrolled window around ours sees each touch first and would take it as soon as it moves, also
/// one that ours has claimed.
void denyToAncestors(GtkWidget* widget, GdkEventSequence* sequence) {
  while ((widget = gtk_widget_get_parent(widget))) {
    GListModel* controllers = gtk_widget_observe_controllers(widget);
    for (guint i = 0; i < g_list_model_get_n_items(controllers); i++) {
      gpointer controller = g_list_model_get_item(controllers, i);
      if (GTK_IS_GESTURE(controller) &&
          gtk_gesture_handles_sequence(GTK_GESTURE(controller), sequence))
        gtk_gesture_set_state(GTK_GESTURE(controller), GTK_EVENT_SEQUENCE_DENIED);
      g_object_unref(controller);
    }
    g_object_unref(controllers);
  }
}

void onPressed(GtkGestureClick* gesture, int, double x, double y, gpointer widget) {
  if (gtk_widget_pick(GTK_WIDGET(widget), x, y, GTK_PICK_DEFAULT) != widget) {
    gtk_gesture_set_state(GTK_GESTURE(gesture), GTK_EVENT_SEQUENCE_DENIED); // another widget's
    return;
  }
  if (!self(widget)->tree->hasFocus()) gtk_widget_grab_focus(GTK_WIDGET(widget));
  // Until it is lifted, a finger that can move nothing of ours may become the host's drag.
  UIApplication& application = UIApplication::shared();
  GdkEventSequence* finger = gtk_gesture_single_get_current_sequence(GTK_GESTURE_SINGLE(gesture));
  const bool scrolls = application.canScrollAt({x, y});
  if (!finger || scrolls) gtk_gesture_set_state(GTK_GESTURE(gesture), GTK_EVENT_SEQUENCE_CLAIMED);
  if (finger && scrolls) denyToAncestors(GTK_WIDGET(widget), finger);
  application.touchBegan({x, y});
}

void onUpdate(GtkGesture* gesture, GdkEventSequence* sequence, gpointer) {
  double x = 0, y = 0;
  if (gtk_gesture_get_point(gesture, sequence, &x, &y)) UIApplication::shared().touchMoved({x, y});
}

void onReleased(GtkGestureClick* gesture, int, double x, double y, gpointer) {
  gtk_gesture_set_state(GTK_GESTURE(gesture), GTK_EVENT_SEQUENCE_CLAIMED);
  UIApplication::shared().touchEnded({x, y});
}

void onCancel(GtkGesture*, GdkEventSequence*, gpointer) {
  UIApplication::shared().touchCancelled();
}

/// Where the pointer is; scroll events do not say. False when it is in a window above ours.
bool pointerPosition(GtkEventController* controller, GtkWidget* widget, CGPoint& point) {
  GdkEvent* event = gtk_event_controller_get_current_event(controller);
  GtkNative* native = gtk_widget_get_native(widget);
  GdkSurface* surface = native ? gtk_native_get_surface(native) : nullptr;
  if (!event || !surface || gdk_event_get_surface(event) != surface) return false;
  // The wheel may be a device of its own, which has no place.
  GdkSeat* seat = gdk_event_get_seat(event);
  GdkDevice* pointer = seat ? gdk_seat_get_pointer(seat) : nullptr;
  double x = 0, y = 0, left = 0, top = 0;
  if (!pointer || !gdk_surface_get_device_position(surface, pointer, &x, &y, nullptr)) return false;
  gtk_native_get_surface_transform(native, &left, &top); // the room of shadows
  const graphene_point_t within = {float(x - left), float(y - top)};
  graphene_point_t found;
  if (!gtk_widget_compute_point(GTK_WIDGET(native), widget, &within, &found)) return false;
  point = {found.x, found.y};
  return true;
}

/// What scrolls nothing of ours is the host's.
gboolean onScroll(GtkEventControllerScroll* scroll, double dx, double dy, gpointer widget) {
  constexpr double notch = 40; // points
  GtkEventController* controller = GTK_EVENT_CONTROLLER(scroll);
  const GdkModifierType state = gtk_event_controller_get_current_event_state(controller);
  CGPoint point;
  if (state & GDK_CONTROL_MASK || !pointerPosition(controller, GTK_WIDGET(widget), point))
    return FALSE;
  const bool wheel = gtk_event_controller_scroll_get_unit(scroll) == GDK_SCROLL_UNIT_WHEEL;
  const double step = wheel ? notch : 1; // a touchpad tells points
  if (wheel && state & GDK_SHIFT_MASK) std::swap(dx, dy);
  return UIApplication::shared().scrollWheel(point, {dx * step, dy * step});
}

/// Before any widget has it.
gboolean onKeyComing(GtkEventControllerKey* controller, guint, guint, GdkModifierType,
                     gpointer widget) {
  self(widget)->pressed =
      gtk_event_controller_get_current_event_time(GTK_EVENT_CONTROLLER(controller));
  return FALSE;
}

gboolean handKey(ZuviScreenWidget* me, const KeyPress& key) {
  UIApplication& application = UIApplication::shared();
  if (key.isTab()) me->moved = me->pressed;
  me->leaving = key.isTab() && application.isFocusAtEnd(key.isBackTab());
  if (!me->leaving) return application.keyPressed(key);
  // The window moves on to a widget of the host's, or comes back to `focus` where there is none.
  application.setFirstResponder(nullptr);
  return FALSE;
}

gboolean onKey(GtkEventControllerKey*, guint value, guint code, GdkModifierType state,
               gpointer widget) {
  ZuviScreenWidget* me = self(widget);
  KeyPress key;
  key.repeats = code != 0 && std::exchange(me->held, code) == code; // the toolkit does not say
  if (const char* name = gdk_keyval_name(value)) key.name = name;
  key.shift = state & GDK_SHIFT_MASK;
  const gunichar character = gdk_keyval_to_unicode(value);
  if (character >= 0x20 && character != 0x7f && !(state & (GDK_CONTROL_MASK | GDK_ALT_MASK))) {
    char text[7] = {};
    text[g_unichar_to_utf8(character, text)] = '\0';
    key.text = text;
  }
  if (key.isTab() && me->pressed != 0 && me->moved == me->pressed) return TRUE; // see `focus`
  return handKey(me, key);
}

void onKeyUp(GtkEventControllerKey*, guint, guint code, GdkModifierType, gpointer widget) {
  if (self(widget)->held == code) self(widget)->held = 0;
}

/// Where the key goes up is told to others.
void onFocusGone(GtkEventControllerFocus*, gpointer widget) {
  self(widget)->held = 0;
}

/// Among our layers the focus goes its own way: a widget that has no more use for Tab says so here.
/// WebKit 2.50 then sends the key on to `onKey` as well, 2.54 does not; each key moves once.
gboolean focus(GtkWidget* widget, GtkDirectionType direction) {
  ZuviScreenWidget* me = self(widget);
  const bool within = gtk_widget_is_focus(widget) || gtk_widget_get_focus_child(widget);
  if (within && me->leaving) return FALSE;
  if (within && (gtk_widget_is_focus(widget) || me->moved == me->pressed))
    return !gtk_widget_is_focus(widget);
  if (within) {
    KeyPress key;
    key.name = direction == GTK_DIR_TAB_BACKWARD ? "ISO_Left_Tab" : "Tab";
    return handKey(me, key);
  }
  me->leaving = FALSE;
  if (!gtk_widget_grab_focus(widget)) return FALSE;
  // A window that opens asks for the focus too, but nobody has pressed Tab.
  if (gtk_widget_get_mapped(widget)) {
    UIApplication::shared().setKeyboardInUse(true);
    UIApplication::shared().setFirstResponder(nullptr);
    UIApplication::shared().moveFocus(direction == GTK_DIR_TAB_BACKWARD);
  }
  return TRUE;
}

void onActive(GtkWindow* window, GParamSpec*, gpointer widget) {
  self(widget)->held = 0;
  if (widget == current) UIApplication::shared().setActive(gtk_window_is_active(window));
}

void root(GtkWidget* widget) {
  GTK_WIDGET_CLASS(zuvi_screen_widget_parent_class)->root(widget);
  followTextSize(widget);
  GtkRoot* top = gtk_widget_get_root(widget);
  if (!GTK_IS_WINDOW(top)) return;
  g_signal_connect_object(top, "notify::is-active", G_CALLBACK(onActive), widget, GConnectFlags(0));
  onActive(GTK_WINDOW(top), nullptr, widget); // it may be in front already
}

void unroot(GtkWidget* widget) {
  g_signal_handlers_disconnect_by_func(gtk_widget_get_root(widget), gpointer(onActive), widget);
  if (widget == current) UIApplication::shared().setActive(false);
  GTK_WIDGET_CLASS(zuvi_screen_widget_parent_class)->unroot(widget);
}

void realize(GtkWidget* widget) {
  GTK_WIDGET_CLASS(zuvi_screen_widget_parent_class)->realize(widget);
  const char* changes = GTK_CHECK_VERSION(4, 12, 0) ? "notify::scale" : "notify::scale-factor";
  GdkSurface* surface = gtk_native_get_surface(gtk_widget_get_native(widget));
  g_signal_handlers_disconnect_by_func(surface, gpointer(onScale), widget);
  g_signal_connect_object(surface, changes, G_CALLBACK(onScale), widget, GConnectFlags(0));
  if (widget == current) configure(widget); // another window may be on another display
}

void dispose(GObject* object) {
  ZuviScreenWidget* me = self(object);
  if (me->surface) {
    if (current == GTK_WIDGET(object)) {
      ForeignWidget::setScreen(nullptr);
      UIScreen::main().setSurface(nullptr);
      current = nullptr;
    }
    delete me->surface;
    me->surface = nullptr;
    delete me->tree;
    me->tree = nullptr;
  }
  G_OBJECT_CLASS(zuvi_screen_widget_parent_class)->dispose(object);
}

void zuvi_screen_widget_class_init(ZuviScreenWidgetClass* type) { // NOLINT: named by the macro
  GtkWidgetClass* widget = GTK_WIDGET_CLASS(type);
  widget->snapshot = snapshot;
  widget->size_allocate = sizeAllocate;
  widget->root = root;
  widget->unroot = unroot;
  widget->realize = realize;
  widget->focus = focus;
  G_OBJECT_CLASS(type)->dispose = dispose;
}

void zuvi_screen_widget_init(ZuviScreenWidget* me) { // NOLINT: named by the macro
  GtkWidget* widget = GTK_WIDGET(me);
  gtk_widget_set_focusable(widget, TRUE);
  gtk_widget_set_hexpand(widget, TRUE);
  gtk_widget_set_vexpand(widget, TRUE);
  gtk_widget_set_overflow(widget, GTK_OVERFLOW_HIDDEN);

  GtkGesture* click = gtk_gesture_click_new();
  g_signal_connect(click, "pressed", G_CALLBACK(onPressed), widget);
  g_signal_connect(click, "update", G_CALLBACK(onUpdate), widget);
  g_signal_connect(click, "released", G_CALLBACK(onReleased), widget);
  g_signal_connect(click, "cancel", G_CALLBACK(onCancel), widget);
  gtk_widget_add_controller(widget, GTK_EVENT_CONTROLLER(click));

  GtkEventController* scroll =
      gtk_event_controller_scroll_new(GTK_EVENT_CONTROLLER_SCROLL_BOTH_AXES);
  g_signal_connect(scroll, "scroll", G_CALLBACK(onScroll), widget);
  gtk_widget_add_controller(widget, scroll);

  GtkEventController* key = gtk_event_controller_key_new();
  g_signal_connect(key, "key-pressed", G_CALLBACK(onKey), widget);
  g_signal_connect(key, "key-released", G_CALLBACK(onKeyUp), widget);
  gtk_widget_add_controller(widget, key);

  GtkEventController* coming = gtk_event_controller_key_new();
  gtk_event_controller_set_propagation_phase(coming, GTK_PHASE_CAPTURE);
  g_signal_connect(coming, "key-pressed", G_CALLBACK(onKeyComing), widget);
  gtk_widget_add_controller(widget, coming);

  GtkEventController* within = gtk_event_controller_focus_new();
  g_signal_connect(within, "leave", G_CALLBACK(onFocusGone), widget);
  gtk_widget_add_controller(widget, within);

  me->tree = new AccessibilityTree(widget);
  me->surface = new WidgetSurface(widget);
}

} // namespace

GtkWidget* zuvi::screenWidgetNew(UIEdgeInsets safeArea) {
  MainLoop::attach();
  auto* widget = GTK_WIDGET(g_object_new(zuvi_screen_widget_get_type(), nullptr));
  self(widget)->safeArea = safeArea;
  if (current) self(current)->tree->clear();
  current = widget;
  UIScreen::main().setSurface(self(widget)->surface);
  ForeignWidget::setScreen(widget);
  return widget;
}
