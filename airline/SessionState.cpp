// SPDX-License-Identifier: MIT
#include "airline/SessionState.h"

#include "core/TDLog.h"

using namespace Qt::StringLiterals;

void SessionState::setLoginStatus(const SASLoginStatus& status) {
    if (m_loginStatus == status)
        return;
    m_loginStatus = status;
    Q_EMIT loginStatusChanged();
}

void SessionState::setSiteUnreachable(bool unreachable) {
    if (m_isSiteUnreachable == unreachable)
        return;
    m_isSiteUnreachable = unreachable;
    TDLog::note(unreachable ? u"nettet: faar ikke kontakt med SAS"_s
                            : u"nettet: kontakt med SAS igjen"_s);
    Q_EMIT siteUnreachableChanged();
}

void SessionState::setLoginWindowOpen(bool open) {
    if (m_isLoginWindowOpen == open)
        return;
    m_isLoginWindowOpen = open;
    Q_EMIT loginWindowOpenChanged();
}

void SessionState::setLoggedOut(bool autoLoginFailed) {
    if (m_loginStatus.isLoggedOut())
        return;
    setLoginStatus(SASLoginStatus::loggedOut());
    const SignOut unaided = autoLoginFailed ? SignOut::autoLoginFailed : SignOut::plain;
    Q_EMIT signedOut(m_isLoginWindowOpen ? SignOut::windowWaits : unaided);
}
