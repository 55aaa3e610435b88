// SPDX-License-Identifier: MIT
#include "ui/session/SessionModel.h"

#include "core/Norwegian.h"

using namespace Qt::StringLiterals;

SessionModel::SessionModel(SessionState& session, StandBack& standBack, Actions actions)
    : m_session(session), m_standBack(standBack), m_actions(std::move(actions)) {
    connect(&standBack, &StandBack::changed, this, &SessionModel::changed);
    connect(&session, &SessionState::loginStatusChanged, this, &SessionModel::changed);
    connect(&session, &SessionState::siteUnreachableChanged, this, &SessionModel::changed);
}

QString SessionModel::text() const {
    switch (now()) {
    case Standing::signedOut:
        return u"Ikke innlogget hos SAS"_s;
    case Standing::refused:
        return StandBack::text(*m_standBack.until());
    case Standing::checking:
        return u"Sjekker innlogging hos SAS…"_s;
    case Standing::unreachable:
        return u"Får ikke kontakt med SAS"_s;
    case Standing::signedIn:
        return u"Innlogget hos SAS · "_s + Norwegian::time(m_session.loginStatus().confirmed);
    case Standing::unknown:
        break;
    }
    return u"Innlogging hos SAS ikke bekreftet ennå"_s;
}

QString SessionModel::warning() const {
    switch (now()) {
    case Standing::signedOut:
        return text() + u" — søkene får ingen data"_s;
    case Standing::refused:
        return text() + u" — jakten hviler så lenge"_s;
    case Standing::unreachable:
        return text() + u" — prøver igjen snart"_s;
    default:
        return {};
    }
}

QString SessionModel::bannerTitle() const {
    return isLoggedOut() || isRefused() ? text() : QString();
}

QString SessionModel::bannerText() const {
    if (isLoggedOut())
        return u"Søkene kjører, men får ingen data uten EuroBonus-innlogging. Logg inn én gang — "
               u"etterpå går alt av seg selv."_s;
    return isRefused() ? u"Nettstedet tar ikke imot flere oppslag akkurat nå. Jakten hviler så "
                         u"lenge og går videre av seg selv."_s
                       : QString();
}

QString SessionModel::cardText() const {
    if (isLoggedOut())
        return u"Søkene får ingen data før du logger inn på EuroBonus."_s;
    return isRefused() ? u"Jakten hviler så lenge og går videre av seg selv."_s : QString();
}
