// SPDX-License-Identifier: MIT
#include "core/Database.h"

#include "core/TDLog.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScopeGuard>

using namespace Qt::StringLiterals;

bool Database::transaction(const std::function<void()>& work) {
    m_failed = false;
    // A file that was refused stays so until `recover` has opened it.
    if (m_problem && !m_isOpen)
        return false;
    if (!m_db.execute("BEGIN IMMEDIATE"))
        return false;
    auto rollBack = qScopeGuard([this] { m_db.execute("ROLLBACK"); });
    work();
    if (m_failed || !m_db.execute("COMMIT"))
        return false;
    rollBack.dismiss();
    // What is broken in one place still takes changes in another.
    if (!m_isDamaged)
        setProblem(std::nullopt);
    return true;
}

void Database::setProblem(const std::optional<QString>& problem) {
    if (std::exchange(m_problem, problem) != problem)
        announceSoon(News::condition);
}

void Database::noteFailure(const QString& message) {
    m_failed = true;
    if (m_db.isDamaged()) {
        noteDamage(message);
        return;
    }
    // Once is enough until something works again.
    if (m_problem)
        return;
    setProblem(
        u"Tindra får ikke lagret noe (%1). Det prøves igjen i neste runde."_s.arg(m_db.reason()));
    TDLog::note(u"database: lagring feilet: "_s + message);
}

void Database::noteDamage(const QString& message) {
    if (std::exchange(m_isDamaged, true))
        return;
    setProblem(u"Databasen er skadet, og det som lagres nå, kan gå tapt. I neste runde settes den "
               "til side, og den siste gode kopien tas i bruk."_s);
    TDLog::note(u"database: skadet: "_s + message);
}

void Database::noteChange(std::string_view table) {
    if (table == "searches")
        announceSoon(News::watchers);
    else if (table == "matches")
        announceSoon(News::offers);
}

/// Guests change the file without a word.
void Database::noteOthersChanges() {
    const auto version = m_db.dataVersion();
    if (std::exchange(m_seenVersion, version) != version)
        announceSoon(News::everything);
}

/// Behind everything else of this turn: what is found is told first, and then shown.
void Database::announceSoon(News news) {
    if (m_news.isEmpty())
        QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
    m_news.insert(news);
}

void Database::customEvent(QEvent*) {
    const auto news = std::exchange(m_news, {});
    const auto isNews = [&news](News one) {
        return news.contains(one) || news.contains(News::everything);
    };
    if (isNews(News::condition))
        Q_EMIT conditionChanged();
    if (isNews(News::watchers))
        Q_EMIT m_watchers.changed();
    if (isNews(News::offers))
        Q_EMIT m_offers.changed();
    if (news.contains(News::everything)) {
        for (const QLatin1StringView key : Setting::keys)
            Q_EMIT m_settings.changed(key);
    }
}
