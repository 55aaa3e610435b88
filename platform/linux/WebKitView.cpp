// SPDX-License-Identifier: MIT
#include "platform/linux/WebKitView.h"

#include "platform/linux/GLibCall.h"
#include "platform/linux/WebKitCookies.h"

#include <webkit2/webkit2.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int viewWidth = 1280;
constexpr int viewHeight = 900;
constexpr auto scriptTimeout = std::chrono::seconds(10);

/// A view that is never mapped has its timers cut to one a second unless this feature is off.
void runAtFullSpeedWhileHidden(WebKitSettings* settings) {
    WebKitFeatureList* features = webkit_settings_get_all_features();
    for (gsize i = 0; i < webkit_feature_list_get_length(features); ++i) {
        WebKitFeature* feature = webkit_feature_list_get(features, i);
        if (g_strcmp0(webkit_feature_get_identifier(feature), "HiddenPageDOMTimerThrottling") == 0)
            webkit_settings_set_feature_enabled(settings, feature, FALSE);
    }
    webkit_feature_list_unref(features);
}

/// Null-terminated list of C strings that lives as long as the object.
class StringVector {
public:
    explicit StringVector(const QStringList& texts) {
        for (const QString& text : texts)
            m_texts.append(text.toUtf8());
        for (const QByteArray& text : std::as_const(m_texts))
            m_pointers.append(text.constData());
        m_pointers.append(nullptr);
    }
    const char* const* data() const { return m_pointers.constData(); }

private:
    QList<QByteArray> m_texts;
    QList<const char*> m_pointers;
};

QByteArray utf8(JSCValue* text) {
    const GCharPtr chars(jsc_value_to_string(text));
    return QByteArray(chars.get());
}

ScriptMessage readMessage(JSCValue* value, const QString& handler, const QStringList& members) {
    ScriptMessage message;
    message.handler = handler;
    message.isObject = jsc_value_is_object(value);
    if (!message.isObject)
        return message;
    for (const QString& member : members) {
        const GObjectPtr<JSCValue> part(
            jsc_value_object_get_property(value, member.toUtf8().constData()));
        if (jsc_value_is_string(part.get()))
            message.texts.insert(member, utf8(part.get()));
    }
    return message;
}

gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
    webkit_permission_request_deny(request);
    return TRUE;
}

bool isOnScreen(WebKitWebView* web) {
    return gtk_widget_get_mapped(GTK_WIDGET(web));
}

gboolean denyFileChooser(WebKitWebView*, WebKitFileChooserRequest* request, gpointer) {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
}

void closePopup(WebKitWebView*, gpointer window) {
    gtk_widget_destroy(GTK_WIDGET(window));
}

void showPopup(WebKitWebView*, gpointer window) {
    gtk_widget_show_all(GTK_WIDGET(window));
}

void showPopupsHost(WebKitWebView* popup, GParamSpec*, gpointer window) {
    const QUrl url(QString::fromUtf8(webkit_web_view_get_uri(popup)));
    gtk_window_set_title(GTK_WINDOW(window), url.host().toUtf8().constData());
}

gboolean denyPrinting(WebKitWebView*, WebKitPrintOperation*, gpointer) {
    return TRUE;
}

gboolean denyUnknownResponse(WebKitWebView*, WebKitPolicyDecision* decision,
                             WebKitPolicyDecisionType type, gpointer) {
    if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE ||
        webkit_response_policy_decision_is_mime_type_supported(
            WEBKIT_RESPONSE_POLICY_DECISION(decision)))
        return FALSE;
    webkit_policy_decision_ignore(decision);
    return TRUE;
}

/// What is refused on the screen and off it.
void refuseRequests(WebKitWebView* web) {
    g_signal_connect(web, "permission-request", G_CALLBACK(denyPermission), nullptr);
    g_signal_connect(web, "run-file-chooser", G_CALLBACK(denyFileChooser), nullptr);
    g_signal_connect(web, "decide-policy", G_CALLBACK(denyUnknownResponse), nullptr);
    g_signal_connect(web, "print", G_CALLBACK(denyPrinting), nullptr);
}

} // namespace

struct WebKitView::Private {
    struct Handler {
        WebKitView* view;
        QString name;
        QStringList members;
    };

    GObjectPtr<WebKitUserContentManager> content{webkit_user_content_manager_new()};
    GObjectPtr<WebKitWebView> web;
    WebKitUserContentFilterStore* filters = nullptr;
    Clock& clock;
    std::unique_ptr<WebKitCookies> cookies;
    /// Where the document is that scripts run in; empty while another is on its way.
    QUrl document;
    /// `load` was called, and its page has not arrived; `hasStarted` when it is on its way.
    bool isLoadAsked = false;
    bool hasStarted = false;
    /// Of the main frame's last response.
    int status = 0;
    QString retryAfter;
    /// A dialog of the page that is on the screen.
    WebKitScriptDialog* dialog = nullptr;
    QList<GtkWidget*> popups;
    GObjectPtr<GCancellable> alive{g_cancellable_new()};
    std::vector<std::unique_ptr<Handler>> handlers;

    explicit Private(Clock& itsClock) : clock(itsClock) {}

    static void loadChanged(WebKitWebView* web, WebKitLoadEvent event, gpointer self) {
        auto* view = static_cast<WebKitView*>(self);
        const bool hasArrived = view->d->followDocument(event);
        if (event == WEBKIT_LOAD_STARTED || event == WEBKIT_LOAD_REDIRECTED)
            Q_EMIT view->navigating(QUrl(QString::fromUtf8(webkit_web_view_get_uri(web))));
        else if (hasArrived)
            Q_EMIT view->pageArrived(view->d->document, std::exchange(view->d->status, 0),
                                     std::exchange(view->d->retryAfter, {}));
    }

    /// The engine's own page about the failure follows for whoever has the view on the screen. Off
    /// it, that page would take the place of the next one that is asked for.
    static gboolean loadFailed(WebKitWebView* web, WebKitLoadEvent, const char*, GError* error,
                               gpointer self) {
        if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
            error->domain == WEBKIT_POLICY_ERROR)
            return FALSE;
        const bool isUnreachable = error->domain == G_IO_ERROR ||
                                   error->domain == G_RESOLVER_ERROR ||
                                   error->domain == G_TLS_ERROR;
        const bool isSeen = isOnScreen(web);
        Q_EMIT static_cast<WebKitView*>(self)->loadFailed(isUnreachable ? LoadFailure::unreachable
                                                                        : LoadFailure::unusable);
        return !isSeen;
    }

    /// The response comes before its page does.
    static gboolean noteResponse(WebKitWebView*, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, gpointer self) {
        if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
            return FALSE;
        auto* reply = WEBKIT_RESPONSE_POLICY_DECISION(decision);
        if (!webkit_response_policy_decision_is_main_frame_main_resource(reply))
            return FALSE;
        auto& d = *static_cast<WebKitView*>(self)->d;
        WebKitURIResponse* response = webkit_response_policy_decision_get_response(reply);
        d.status = static_cast<int>(webkit_uri_response_get_status_code(response));
        SoupMessageHeaders* headers = webkit_uri_response_get_http_headers(response);
        const char* header =
            headers ? soup_message_headers_get_one(headers, "Retry-After") : nullptr;
        d.retryAfter = QString::fromUtf8(header);
        return FALSE;
    }

    /// Keeps `document` true, and says whether it has come. What is committed before the load that
    /// was asked for has started is an older page's.
    bool followDocument(WebKitLoadEvent event) {
        if (event == WEBKIT_LOAD_STARTED || event == WEBKIT_LOAD_REDIRECTED) {
            hasStarted = true;
            document = QUrl();
        } else if (event == WEBKIT_LOAD_COMMITTED && (!isLoadAsked || hasStarted)) {
            isLoadAsked = false;
            document = QUrl(QString::fromUtf8(webkit_web_view_get_uri(web.get())));
            return true;
        }
        return false;
    }

    void forgetDialog() {
        if (dialog)
            webkit_script_dialog_unref(dialog);
        dialog = nullptr;
    }

    static gboolean answerDialog(WebKitWebView* web, WebKitScriptDialog* dialog, gpointer self) {
        if (isOnScreen(web)) {
            auto& d = static_cast<WebKitView*>(self)->d;
            d->forgetDialog();
            d->dialog = webkit_script_dialog_ref(dialog);
            return FALSE;
        }
        // A page that asks whether it may be left must not stop the next load.
        if (webkit_script_dialog_get_dialog_type(dialog) ==
            WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM)
            webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
        return TRUE;
    }

    static void popupDestroyed(GtkWidget* window, gpointer self) {
        static_cast<WebKitView*>(self)->d->popups.removeOne(window);
    }

    /// A page on the screen may open a window, as some sign-ins do; a hidden one may not.
    static GtkWidget* openPopup(WebKitWebView* opener, WebKitNavigationAction*, gpointer self) {
        if (!isOnScreen(opener))
            return nullptr;
        GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_window_set_default_size(GTK_WINDOW(window), 600, 700);
        GtkWidget* toplevel = gtk_widget_get_toplevel(GTK_WIDGET(opener));
        gtk_window_set_transient_for(GTK_WINDOW(window), GTK_WINDOW(toplevel));
        GtkWidget* popup = webkit_web_view_new_with_related_view(opener);
        gtk_container_add(GTK_CONTAINER(window), popup);
        g_signal_connect(popup, "ready-to-show", G_CALLBACK(showPopup), window);
        g_signal_connect(popup, "close", G_CALLBACK(closePopup), window);
        g_signal_connect(popup, "notify::uri", G_CALLBACK(showPopupsHost), window);
        refuseRequests(WEBKIT_WEB_VIEW(popup));
        g_signal_connect(window, "destroy", G_CALLBACK(popupDestroyed), self);
        static_cast<WebKitView*>(self)->d->popups.append(window);
        return popup;
    }

    static void processTerminated(WebKitWebView*, WebKitWebProcessTerminationReason,
                                  gpointer self) {
        Q_EMIT static_cast<WebKitView*>(self)->webProcessTerminated();
    }

    static void messageReceived(WebKitUserContentManager*, WebKitJavascriptResult* result,
                                gpointer data) {
        const auto* handler = static_cast<Handler*>(data);
        Q_EMIT handler->view->scriptMessage(readMessage(
            webkit_javascript_result_get_js_value(result), handler->name, handler->members));
    }

    /// The view may be gone by now; `content` is a reference of this call's own.
    static void rulesCompiled(GObject* store, GAsyncResult* result, gpointer content) {
        const GObjectPtr<WebKitUserContentManager> manager(WEBKIT_USER_CONTENT_MANAGER(content));
        GErrorSlot error;
        WebKitUserContentFilter* filter = webkit_user_content_filter_store_save_finish(
            WEBKIT_USER_CONTENT_FILTER_STORE(store), result, error.out());
        if (!filter)
            return;
        webkit_user_content_manager_add_filter(manager.get(), filter);
        webkit_user_content_filter_unref(filter);
    }
};

WebKitView::WebKitView(WebKitWebContext* context, WebKitUserContentFilterStore* filters,
                       Clock& clock)
    : d(std::make_unique<Private>(clock)) {
    d->filters = filters;
    d->web.reset(WEBKIT_WEB_VIEW(
        g_object_ref_sink(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context,
                                       "user-content-manager", d->content.get(), nullptr))));
    // What a page sees as its window until the view is put into a real one.
    GtkAllocation allocation{0, 0, viewWidth, viewHeight};
    gtk_widget_size_allocate(GTK_WIDGET(d->web.get()), &allocation);
    d->cookies =
        std::make_unique<WebKitCookies>(webkit_web_context_get_cookie_manager(context), clock);
    runAtFullSpeedWhileHidden(webkit_web_view_get_settings(d->web.get()));
    g_signal_connect(d->web.get(), "load-changed", G_CALLBACK(Private::loadChanged), this);
    g_signal_connect(d->web.get(), "load-failed", G_CALLBACK(Private::loadFailed), this);
    g_signal_connect(d->web.get(), "web-process-terminated", G_CALLBACK(Private::processTerminated),
                     this);
    g_signal_connect(d->web.get(), "script-dialog", G_CALLBACK(Private::answerDialog), this);
    g_signal_connect(d->web.get(), "create", G_CALLBACK(Private::openPopup), this);
    g_signal_connect(d->web.get(), "decide-policy", G_CALLBACK(Private::noteResponse), this);
    refuseRequests(d->web.get());
}

WebKitView::~WebKitView() {
    g_cancellable_cancel(d->alive.get());
    leaveScreen();
    g_signal_handlers_disconnect_by_data(d->web.get(), this);
    for (const auto& handler : d->handlers)
        g_signal_handlers_disconnect_by_data(d->content.get(), handler.get());
    gtk_widget_destroy(GTK_WIDGET(d->web.get()));
}

bool WebKitView::disableTrackingPrevention() {
    webkit_website_data_manager_set_itp_enabled(
        webkit_web_view_get_website_data_manager(d->web.get()), FALSE);
    return true;
}

void WebKitView::addUserScript(const QString& source, const QStringList& hosts) {
    // Patterns with a port match nothing, so hosts alone are given.
    QStringList patterns;
    for (const QString& host : hosts)
        patterns << u"*://%1/*"_s.arg(host) << u"*://*.%1/*"_s.arg(host);
    WebKitUserScript* script = webkit_user_script_new(
        source.toUtf8().constData(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
        WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, StringVector(patterns).data(), nullptr);
    webkit_user_content_manager_add_script(d->content.get(), script);
    webkit_user_script_unref(script);
}

void WebKitView::addMessageHandler(const QString& name, const QStringList& members) {
    d->handlers.push_back(
        std::make_unique<Private::Handler>(Private::Handler{this, name, members}));
    // Connected before it is registered, so that no message is missed.
    g_signal_connect(d->content.get(), ("script-message-received::" + name.toUtf8()).constData(),
                     G_CALLBACK(Private::messageReceived), d->handlers.back().get());
    webkit_user_content_manager_register_script_message_handler(d->content.get(),
                                                                name.toUtf8().constData());
}

void WebKitView::setUserAgent(const QString& userAgent) {
    webkit_settings_set_user_agent(webkit_web_view_get_settings(d->web.get()),
                                   userAgent.toUtf8().constData());
}

void WebKitView::setContentRules(const QByteArray& rules) {
    GBytes* bytes = g_bytes_new(rules.constData(), static_cast<gsize>(rules.size()));
    webkit_user_content_filter_store_save(d->filters, "tindra", bytes, d->alive.get(),
                                          Private::rulesCompiled, g_object_ref(d->content.get()));
    g_bytes_unref(bytes);
}

void WebKitView::load(const QUrl& url) {
    d->isLoadAsked = true;
    d->hasStarted = false;
    d->document = QUrl();
    webkit_web_view_load_uri(d->web.get(), url.toEncoded().constData());
}

void WebKitView::unload() {
    webkit_web_view_load_uri(d->web.get(), "about:blank");
}

QUrl WebKitView::url() const {
    return QUrl(QString::fromUtf8(webkit_web_view_get_uri(d->web.get())));
}

QCoro::Task<std::optional<QString>> WebKitView::evaluate(QString script) {
    if (d->document.isEmpty())
        co_return std::nullopt;
    const QByteArray source = script.toUtf8();
    const GObjectPtr<WebKitWebView> web(WEBKIT_WEB_VIEW(g_object_ref(d->web.get())));
    GLibCall call(d->clock, scriptTimeout);
    webkit_web_view_evaluate_javascript(web.get(), source.constData(), source.size(), "tindra",
                                        nullptr, call.cancellable(), GLibCall::finished,
                                        call.userData());
    GAsyncResult* result = co_await call.end();
    if (!result)
        co_return std::nullopt;
    GErrorSlot error;
    const GObjectPtr<JSCValue> value(
        webkit_web_view_evaluate_javascript_finish(web.get(), result, error.out()));
    if (!value || !jsc_value_is_string(value.get()))
        co_return std::nullopt;
    co_return QString::fromUtf8(utf8(value.get()));
}

CookieStore& WebKitView::cookies() {
    return *d->cookies;
}

void* WebKitView::widget() const {
    return d->web.get();
}

QUrl WebKitView::documentUrl() const {
    return d->document;
}

void WebKitView::leaveScreen() {
    // A dialog that nobody sees any more would hold up every later page.
    if (d->dialog)
        webkit_script_dialog_close(d->dialog);
    d->forgetDialog();
    const auto popups = std::exchange(d->popups, {});
    for (GtkWidget* popup : popups) {
        g_signal_handlers_disconnect_by_data(popup, this);
        gtk_widget_destroy(popup);
    }
}
