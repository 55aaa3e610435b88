// SPDX-License-Identifier: MIT
#include "ui/session/SASLoginPill.h"

#include "core/Norwegian.h"

using namespace Qt::StringLiterals;

SASLoginPill::SASLoginPill(SessionState& session, StandBack& standBack, Actions actions)
    : m_session(session), m_standBack(standBack), m_actions(std::move(actions)) {
    connect(&standBack, &StandBack::changed, this, &SASLoginPill::changed);
    connect(&session, &SessionState::loginStatusChanged, this, &SASLoginPill::changed);
    connect(&session, &SessionState::siteUnreachableChanged, this, &SASLoginPill::changed);
}

QString SASLoginPill::text() const {
    const SASLoginStatus& status = m_session.loginStatus();
    if (isRefused())
        return StandBack::text(*m_standBack.until());
    if (m_session.isSiteUnreachable() && !isChecking() && !isLoggedOut())
        return u"Får ikke kontakt med SAS"_s;
    switch (status.state) {
    case SASLoginStatus::Case::loggedIn:
        return u"Innlogget hos SAS · "_s + Norwegian::time(status.confirmed);
    case SASLoginStatus::Case::unknown:
        return u"Innlogging hos SAS ikke bekreftet ennå"_s;
    case SASLoginStatus::Case::checking:
        return u"Sjekker innlogging hos SAS…"_s;
    case SASLoginStatus::Case::loggedOut:
        break;
    }
    return u"Ikke innlogget hos SAS"_s;
}

QString SASLoginPill::warning() const {
    if (isLoggedOut())
        return u"Ikke innlogget hos SAS — søkene får ingen data"_s;
    if (isRefused())
        return text() + u" — jakten hviler så lenge"_s;
    if (m_session.isSiteUnreachable())
        return u"Får ikke kontakt med SAS — prøver igjen snart"_s;
    return {};
}

QString SASLoginPill::bannerTitle() const {
    return isLoggedOut() || isRefused() ? text() : QString();
}

QString SASLoginPill::bannerText() const {
    if (isLoggedOut())
        return u"Søkene kjører, men får ingen data uten EuroBonus-innlogging. Logg inn én gang — "
               u"etterpå går alt av seg selv."_s;
    return isRefused() ? u"Nettstedet tar ikke imot flere oppslag akkurat nå. Jakten hviler så "
                         u"lenge og går videre av seg selv."_s
                       : QString();
}

QString SASLoginPill::cardText() const {
    if (isLoggedOut())
        return u"Søkene får ingen data før du logger inn på EuroBonus."_s;
    return isRefused() ? u"Jakten hviler så lenge og går videre av seg selv."_s : QString();
}
