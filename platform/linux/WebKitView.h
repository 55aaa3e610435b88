// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WebView.h"

#include <memory>

typedef struct _WebKitWebContext WebKitWebContext;
typedef struct _WebKitUserContentFilterStore WebKitUserContentFilterStore;

/// A WebKitGTK view that is never put on the screen. It counts as hidden, so nothing is painted,
/// and its timers run at full speed all the same. Whatever a page asks of the user (permissions,
/// dialogs, printing, new windows, files) is answered with no.
class WebKitView final : public WebView {
    Q_OBJECT
public:
    /// `context` and `filters` must outlive the view.
    WebKitView(WebKitWebContext* context, WebKitUserContentFilterStore* filters);
    ~WebKitView() override;

    bool disableTrackingPrevention() override;
    void addUserScript(const QString& source, const QStringList& hosts) override;
    void addMessageHandler(const QString& name, const QStringList& members) override;
    void setUserAgent(const QString& userAgent) override;
    void setContentRules(const QByteArray& rules) override;
    void load(const QUrl& url) override;
    void unload() override;
    QUrl url() const override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};
