// SPDX-License-Identifier: MIT
#pragma once

#include "platform/CookieStore.h"

#include <QByteArray>
#include <QCoroTask>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

/// What a page script sent to the application.
struct ScriptMessage {
    /// The name of the handler it was sent to.
    QString handler;
    /// False when the script sent something else than an object.
    bool isObject = false;
    /// The object's text members, in UTF-8. Members of other types are left out.
    QHash<QString, QByteArray> texts;
};

/// One embedded browser view with a persistent cookie store. Main thread only.
class WebView : public QObject {
    Q_OBJECT
public:
    enum class LoadFailure {
        /// The host was not found or could not be reached, or the connection broke.
        unreachable,
        /// The host answers, but not with a page: redirects without end, for instance.
        unusable,
    };

    using QObject::QObject;

    /// Switches the engine's tracking prevention off; false when it has no such switch.
    virtual bool disableTrackingPrevention() = 0;
    /// Runs `source` at the start of every later page, before the page's own scripts, in all
    /// frames whose host is one of `hosts` or a sub-domain of one.
    virtual void addUserScript(const QString& source, const QStringList& hosts) = 0;
    /// Lets page scripts send messages to `window.webkit.messageHandlers.<name>`; `members` are
    /// the members of a sent object that are read.
    virtual void addMessageHandler(const QString& name, const QStringList& members) = 0;
    virtual void setUserAgent(const QString& userAgent) = 0;
    /// Blocks what `rules` name in all later loads: a WebKit content-blocker list in JSON. Takes
    /// effect a moment later; rules that do not compile block nothing.
    virtual void setContentRules(const QByteArray& rules) = 0;

    /// Starts loading a page; a load in progress is given up.
    virtual void load(const QUrl& url) = 0;
    /// Stops loading and leaves the page, so that nothing of it goes on running.
    virtual void unload() = 0;
    /// The address of the current page or of the load in progress; empty when there is none.
    virtual QUrl url() const = 0;
    /// The address of the document that scripts run in; empty while a page that was asked for has
    /// not replaced the one before it.
    virtual QUrl documentUrl() const = 0;
    /// Runs an expression of the script language in the page, in a world of its own: the page's
    /// scripts neither see it nor change what it uses. The answer is its value when that is a text;
    /// absent for any other value, when the script throws, while `documentUrl` is empty, and when
    /// the page does not answer within some seconds.
    virtual QCoro::Task<std::optional<QString>> evaluate(QString script) = 0;
    /// The cookies of this view, which outlives the store.
    virtual CookieStore& cookies() = 0;

Q_SIGNALS:
    void scriptMessage(const ScriptMessage& message);
    /// A navigation of the main frame began, or was redirected by a server; `url` is where to.
    void navigating(const QUrl& url);
    /// A page of the main frame has begun to replace the one before it. `status` is HTTP's, 0 for a
    /// page of another kind; `retryAfter` is the header of that name, mostly empty.
    void pageArrived(const QUrl& url, int status, const QString& retryAfter);
    /// A page of the main frame could not be fetched. Not for a load that was given up.
    void loadFailed(WebView::LoadFailure failure);
    /// The process that runs the page has died. The next load starts a new one.
    void webProcessTerminated();
};
