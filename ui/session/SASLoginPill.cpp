// SPDX-License-Identifier: MIT
#include "ui/session/SASLoginPill.h"

#include <QDateTime>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

QString shortTime(Instant instant) {
    const QLocale norwegian(QLocale::NorwegianBokmal, QLocale::Norway);
    const auto seconds = static_cast<qint64>(secondsSince1970(instant));
    return norwegian.toString(QDateTime::fromSecsSinceEpoch(seconds).time(), QLocale::ShortFormat);
}

} // namespace

SASLoginPill::SASLoginPill(SessionState& session, std::function<void()> openLogin)
    : m_session(session), m_openLogin(std::move(openLogin)) {
    connect(&session, &SessionState::loginStatusChanged, this, &SASLoginPill::changed);
    connect(&session, &SessionState::siteUnreachableChanged, this, &SASLoginPill::changed);
}

QString SASLoginPill::text() const {
    const SASLoginStatus& status = m_session.loginStatus();
    if (m_session.isSiteUnreachable() && !isChecking() && !isLoggedOut())
        return u"Får ikke kontakt med SAS"_s;
    switch (status.state) {
    case SASLoginStatus::Case::loggedIn:
        return u"Innlogget hos SAS · "_s + shortTime(status.confirmed);
    case SASLoginStatus::Case::unknown:
        return u"Innlogging hos SAS ikke bekreftet ennå"_s;
    case SASLoginStatus::Case::checking:
        return u"Sjekker innlogging hos SAS…"_s;
    case SASLoginStatus::Case::loggedOut:
        break;
    }
    return u"Ikke innlogget hos SAS"_s;
}
