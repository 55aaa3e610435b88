// SPDX-License-Identifier: MIT
#include "airline/LiveSession.h"

#include "core/Database.h"
#include "platform/WebView.h"

LiveSession::LiveSession(WebView& view, HostWindow& window, Clock& clock, Database& database,
                         Keychain& keychain, SessionState& state, StandBack& standBack,
                         Capture& capture, const Site& site)
    : m_navHosts(view)
    , m_vault(view.cookies(), keychain, database.safekeeping(), clock, site)
    , m_context{view, clock, state, capture, m_vault, m_navHosts, site}
    , m_window(window, m_context)
    , m_singleSignOn(m_context)
    , m_autoLogin(m_context, m_window, standBack, database.settings(), keychain) {}
