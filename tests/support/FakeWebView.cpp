// SPDX-License-Identifier: MIT
#include "tests/support/FakeWebView.h"

#include "airline/PageScripts.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

void FakeWebView::addUserScript(const QString& source, const QStringList& hosts) {
    scripts.append(source);
    scriptHosts = hosts;
}

void FakeWebView::addMessageHandler(const QString& name, const QStringList&) {
    handlers.append(name);
}

QByteArray FakeWebView::word() const {
    static const QRegularExpression argument(u"\\(\"([0-9a-f]+)\", \\d+\\);$"_s);
    return argument.match(scripts.value(0)).captured(1).toLatin1();
}

void FakeWebView::arrive(int status, const QString& retryAfter, const QUrl& at) {
    const QUrl url = at.isEmpty() ? loaded.last() : at;
    QMetaObject::invokeMethod(
        this, [this, url, status, retryAfter] { Q_EMIT pageArrived(url, status, retryAfter); },
        Qt::QueuedConnection);
}

void FakeWebView::sendFromHook(const QString& url, const QByteArray& body, int status,
                               const QString& retryAfter) {
    send({u"sniff"_s,
          true,
          {{u"url"_s, url.toUtf8()},
           {u"status"_s, QByteArray::number(status)},
           {u"retryAfter"_s, retryAfter.toUtf8()},
           {u"body"_s, body},
           {u"word"_s, word()}}});
}

void FakeWebView::send(const ScriptMessage& message) {
    QMetaObject::invokeMethod(
        this, [this, message] { Q_EMIT scriptMessage(message); }, Qt::QueuedConnection);
}

QCoro::Task<std::optional<QString>> FakeWebView::evaluate(QString script) {
    static const QByteArray pageState = PageScripts::resource(u"page-state.js"_s);
    if (script.contains(QString::fromUtf8(pageState).trimmed())) {
        co_await nextTurn();
        co_return shown;
    }
    evaluated.append(script);
    co_await nextTurn();
    if (!page) {
        QTest::qFail("nobody expected a script", __FILE__, __LINE__);
        co_return std::nullopt;
    }
    co_return page(script);
}
