// SPDX-License-Identifier: MIT
#include "polling/LookTally.h"

#include "airline/StandBack.h"
#include "airline/Standing.h"

using namespace Qt::StringLiterals;

namespace {

using Kind = Outcome::Kind;

/// The higher, the more it explains of the others.
int weight(Kind kind) {
    switch (kind) {
    case Kind::answer:
        return 0;
    case Kind::silent:
        return 1;
    case Kind::failed:
        return 2;
    case Kind::signedOut:
        return 3;
    case Kind::unreachable:
        return 4;
    case Kind::refused:
        return 5;
    }
    return 0;
}

QString failedText(int status) {
    const bool isSuccess = status >= 200 && status < 300;
    if (status == 0 || isSuccess)
        return u"SAS svarer med noe Tindra ikke forstår. Prøver igjen i neste runde."_s;
    return u"SAS svarer med feil (%1). Prøver igjen i neste runde."_s.arg(status);
}

} // namespace

QString LookTally::signedOutText() {
    return u"Ikke innlogget hos SAS — søkene får ingen data. Logg inn via Innstillinger."_s;
}

void LookTally::note(const Outcome& outcome) {
    if (outcome.kind == Kind::answer) {
        ++m_answers;
        return;
    }
    if (!m_worst || weight(outcome.kind) > weight(*m_worst)) {
        m_worst = outcome.kind;
        m_status = outcome.status;
    }
}

std::optional<QString> LookTally::trouble(std::optional<Instant> refusedUntil,
                                          bool isSignedOut) const {
    if (!m_worst)
        return std::nullopt;
    // Whoever signs in meanwhile, that is not what has kept answers away.
    const auto login =
        isSignedOut ? SASLoginStatus::Case::loggedOut : SASLoginStatus::Case::unknown;
    switch (standing(login, *m_worst == Kind::refused, *m_worst == Kind::unreachable)) {
    case Standing::signedOut:
        return signedOutText();
    case Standing::refused:
        return (refusedUntil ? StandBack::text(*refusedUntil) : u"SAS ber oss vente"_s) + u'.';
    case Standing::unreachable:
        return u"Får ikke kontakt med SAS. Sjekk nettet – Tindra prøver igjen av seg selv."_s;
    default:
        break;
    }
    if (*m_worst == Kind::failed)
        return failedText(m_status);
    if (m_answers > 0)
        return u"SAS svarte ikke i tide. Prøver igjen i neste runde."_s;
    return u"SAS ga ingen data — sjekk EuroBonus-innloggingen (Innstillinger)."_s;
}

std::optional<QString> LookTally::gaps(int planned, const QString& reason) const {
    const int missing = planned - m_answers;
    if (missing <= 0)
        return std::nullopt;
    return u"%1 av %2 oppslag fikk ikke svar. %3"_s.arg(QString::number(missing),
                                                        QString::number(planned), reason);
}
