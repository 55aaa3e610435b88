// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WebView.h"
#include "tests/support/FakeCookieStore.h"

#include <QList>

#include <functional>

/// A web view without a web: remembers what it is told to load, and sends what a page would.
class FakeWebView final : public WebView {
    Q_OBJECT
public:
    bool disableTrackingPrevention() override { return hasTrackingPreventionSwitch; }
    void addUserScript(const QString& source, const QStringList& hosts) override;
    void addMessageHandler(const QString& name, const QStringList& members) override;
    void setUserAgent(const QString& agent) override { userAgent = agent; }
    void setContentRules(const QByteArray&) override {}
    void load(const QUrl& url) override { loaded.append(url); }
    void unload() override { ++unloads; }
    QUrl url() const override {
        return current.isEmpty() && !loaded.isEmpty() ? loaded.last() : current;
    }
    QUrl documentUrl() const override { return url(); }
    QCoro::Task<std::optional<QString>> evaluate(QString script) override;
    CookieStore& cookies() override { return store; }

    /// A page arrives, in a later turn of the event loop; by default the one last asked for.
    void arrive(int status = 200, const QString& retryAfter = {}, const QUrl& at = {});
    /// A message as the hook sends it, in a later turn of the event loop.
    void sendFromHook(const QString& url, const QByteArray& body, int status = 200,
                      const QString& retryAfter = {});
    /// A message as any page could send it.
    void send(const ScriptMessage& message);
    /// The word that the hook was given.
    QByteArray word() const;

    /// What a search page that asked for nothing shows.
    QString shown = QStringLiteral("page Bestill");
    /// What a page answers to other scripts; such a script without it fails the test.
    std::function<std::optional<QString>(const QString& script)> page;
    /// Where redirects and forms have led, when that is not the page last loaded.
    QUrl current;
    FakeCookieStore store;
    QStringList evaluated;
    bool hasTrackingPreventionSwitch = true;
    QList<QUrl> loaded;
    int unloads = 0;
    QString userAgent;
    QStringList scripts;
    QStringList scriptHosts;
    QStringList handlers;
};
