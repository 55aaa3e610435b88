// SPDX-License-Identifier: MIT
#include "platform/linux/GtkHostWindow.h"

#include "platform/linux/WebKitView.h"

#include <gtk/gtk.h>

namespace {

constexpr int contentWidth = 1280;
constexpr int contentHeight = 940;
constexpr int barHeight = 52;
constexpr int margin = 16;
constexpr int buttonWidth = 224;
constexpr int buttonHeight = 30;

GtkWidget* label(const QString& text, double points, const char* name) {
    GtkWidget* widget = gtk_label_new(text.toUtf8().constData());
    gtk_label_set_xalign(GTK_LABEL(widget), 0);
    gtk_label_set_ellipsize(GTK_LABEL(widget), PANGO_ELLIPSIZE_END);
    PangoAttrList* attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_size_new(static_cast<int>(points * PANGO_SCALE)));
    gtk_label_set_attributes(GTK_LABEL(widget), attributes);
    pango_attr_list_unref(attributes);
    gtk_widget_set_name(widget, name);
    return widget;
}

} // namespace

struct GtkHostWindow::Private {
    explicit Private(WebKitView& itsView) : view(itsView) {}

    WebKitView& view;
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    GtkWidget* reason = nullptr;
    GtkWidget* host = nullptr;
    GtkWidget* button = nullptr;
    QMetaObject::Connection hostShown;

    static gboolean closing(GtkWidget* window, GdkEvent*, gpointer self) {
        auto* host = static_cast<GtkHostWindow*>(self);
        host->d->view.leaveScreen();
        gtk_widget_hide(window);
        Q_EMIT host->closed();
        // Kept for the next time.
        return TRUE;
    }
    static void pressed(GtkButton*, gpointer self) {
        Q_EMIT static_cast<GtkHostWindow*>(self)->finished();
    }

    GtkWidget* makeBar(GtkHostWindow* self, const Texts& texts) {
        GtkWidget* bar = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, margin);
        gtk_widget_set_size_request(bar, -1, barHeight);
        gtk_widget_set_margin_start(bar, margin);
        gtk_widget_set_margin_end(bar, margin);

        GtkWidget* instruction = label(texts.instruction, 12.5, "instruction");
        gtk_style_context_add_class(gtk_widget_get_style_context(instruction), "dim-label");
        gtk_box_pack_start(GTK_BOX(bar), instruction, TRUE, TRUE, 0);
        host = label({}, 11, "host");
        gtk_box_pack_start(GTK_BOX(bar), host, FALSE, FALSE, 0);

        button = gtk_button_new_with_label(texts.button.toUtf8().constData());
        gtk_widget_set_size_request(button, buttonWidth, buttonHeight);
        gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
        gtk_widget_set_can_default(button, TRUE);
        gtk_box_pack_end(GTK_BOX(bar), button, FALSE, FALSE, 0);
        g_signal_connect(button, "clicked", G_CALLBACK(pressed), self);
        return bar;
    }

    void showHost() {
        const QString name = view.url().host();
        gtk_label_set_text(GTK_LABEL(host), name.toUtf8().constData());
    }
};

GtkHostWindow::GtkHostWindow(WebKitView& view, const Texts& texts)
    : d(std::make_unique<Private>(view)) {
    gtk_window_set_title(GTK_WINDOW(d->window), texts.title.toUtf8().constData());
    gtk_window_set_default_size(GTK_WINDOW(d->window), contentWidth, contentHeight);
    gtk_window_set_position(GTK_WINDOW(d->window), GTK_WIN_POS_CENTER);
    gtk_window_set_icon_name(GTK_WINDOW(d->window), "app.tindra.Tindra");

    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(column), d->makeBar(this, texts), FALSE, FALSE, 0);
    d->reason = label({}, 12.5, "reason");
    gtk_widget_set_margin_start(d->reason, margin);
    gtk_widget_set_margin_bottom(d->reason, margin / 2);
    gtk_widget_set_no_show_all(d->reason, TRUE);
    gtk_box_pack_start(GTK_BOX(column), d->reason, FALSE, FALSE, 0);
    auto* page = static_cast<GtkWidget*>(view.widget());
    gtk_box_pack_start(GTK_BOX(column), page, TRUE, TRUE, 0);
    gtk_container_add(GTK_CONTAINER(d->window), column);
    gtk_widget_show_all(column);

    gtk_window_set_default(GTK_WINDOW(d->window), d->button);
    g_signal_connect(d->window, "delete-event", G_CALLBACK(Private::closing), this);
    d->hostShown = connect(&view, &WebView::navigating, this, [this] { d->showHost(); });
}

GtkHostWindow::~GtkHostWindow() {
    disconnect(d->hostShown);
    // The view's widget belongs to the view.
    auto* page = static_cast<GtkWidget*>(d->view.widget());
    gtk_container_remove(GTK_CONTAINER(gtk_widget_get_parent(page)), page);
    gtk_widget_destroy(d->window);
}

void GtkHostWindow::show(Activation activation) {
    d->showHost();
    gtk_window_set_position(GTK_WINDOW(d->window), GTK_WIN_POS_CENTER_ALWAYS);
    gtk_window_set_focus_on_map(GTK_WINDOW(d->window), activation == Activation::takeFocus);
    gtk_widget_show(d->window);
    // From now on it stays where the user puts it.
    gtk_window_set_position(GTK_WINDOW(d->window), GTK_WIN_POS_NONE);
    if (activation == Activation::takeFocus) {
        gtk_window_present(GTK_WINDOW(d->window));
        gtk_widget_grab_focus(static_cast<GtkWidget*>(d->view.widget()));
    } else {
        gdk_window_raise(gtk_widget_get_window(d->window));
    }
}

void GtkHostWindow::hide() {
    d->view.leaveScreen();
    gtk_widget_hide(d->window);
}

bool GtkHostWindow::isVisible() const {
    return gtk_widget_get_visible(d->window);
}

void GtkHostWindow::setReason(const QString& reason) {
    gtk_label_set_text(GTK_LABEL(d->reason), reason.toUtf8().constData());
    gtk_widget_set_visible(d->reason, !reason.isEmpty());
}
