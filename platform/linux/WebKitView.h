// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"
#include "platform/WebView.h"

#include <memory>

typedef struct _WebKitWebContext WebKitWebContext;
typedef struct _WebKitUserContentFilterStore WebKitUserContentFilterStore;

/// A WebKitGTK view. While it is not on the screen it counts as hidden, so nothing is painted, and
/// its timers run at full speed all the same. Then it answers with no whatever a page asks of the
/// user; on the screen, script dialogs and new windows work, since a sign-in may need them.
/// Permissions, printing, downloads and file choosers are refused always.
class WebKitView final : public WebView {
    Q_OBJECT
public:
    /// All three must outlive the view.
    WebKitView(WebKitWebContext* context, WebKitUserContentFilterStore* filters, Clock& clock);
    ~WebKitView() override;

    bool disableTrackingPrevention() override;
    void addUserScript(const QString& source, const QStringList& hosts) override;
    void addMessageHandler(const QString& name, const QStringList& members) override;
    void setUserAgent(const QString& userAgent) override;
    void setContentRules(const QByteArray& rules) override;
    void load(const QUrl& url) override;
    void unload() override;
    QUrl url() const override;
    QCoro::Task<std::optional<QString>> evaluate(QString script) override;
    CookieStore& cookies() override;

    QUrl documentUrl() const override;

    /// Closes the page's dialogs and windows; the window that holds the view calls this when it
    /// hides.
    void leaveScreen();
    /// The view's GtkWidget, for the window that holds it.
    void* widget() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
