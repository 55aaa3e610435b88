// SPDX-License-Identifier: MIT
#include "bench/BareView.h"

#include <cstring>

#include <webkit2/webkit2.h>

struct BareView::Private {
    WebKitWebContext* context = webkit_web_context_new_ephemeral();
    WebKitWebView* web = nullptr;
    QByteArray titlePart;
    std::function<void()> onShown;

    static void titleChanged(WebKitWebView* web, GParamSpec*, gpointer self) {
        const char* title = webkit_web_view_get_title(web);
        auto* d = static_cast<Private*>(self);
        if (title && std::strstr(title, d->titlePart.constData()) && d->onShown)
            std::exchange(d->onShown, nullptr)();
    }
};

BareView::BareView() : d(std::make_unique<Private>()) {
    d->web = WEBKIT_WEB_VIEW(
        g_object_ref_sink(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", d->context, nullptr)));
    WebKitFeatureList* features = webkit_settings_get_all_features();
    for (gsize i = 0; i < webkit_feature_list_get_length(features); ++i) {
        WebKitFeature* feature = webkit_feature_list_get(features, i);
        if (std::strcmp(webkit_feature_get_identifier(feature), "HiddenPageDOMTimerThrottling") ==
            0)
            webkit_settings_set_feature_enabled(webkit_web_view_get_settings(d->web), feature,
                                                FALSE);
    }
    webkit_feature_list_unref(features);
    g_signal_connect(d->web, "notify::title", G_CALLBACK(Private::titleChanged), d.get());
}

BareView::~BareView() {
    g_signal_handlers_disconnect_by_data(d->web, d.get());
    gtk_widget_destroy(GTK_WIDGET(d->web));
    g_object_unref(d->web);
    g_object_unref(d->context);
}

void BareView::load(const QUrl& url, const QByteArray& titlePart, std::function<void()> onShown) {
    d->titlePart = titlePart;
    d->onShown = std::move(onShown);
    webkit_web_view_load_uri(d->web, url.toEncoded().constData());
}
