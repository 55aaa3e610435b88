// SPDX-License-Identifier: MIT
#include "airline/LiveSession.h"

#include "platform/WebView.h"

LiveSession::LiveSession(WebView& view, HostWindow& window, Clock& clock, Database& database,
                         Keychain& keychain, SessionState& state, Capture& capture,
                         const Site& site)
    : m_navHosts(view)
    , m_vault(view.cookies(), keychain, database, clock, site)
    , m_window(window, view, clock, state, capture, m_vault, m_navHosts, site)
    , m_singleSignOn(view, clock, state, capture, m_vault, m_navHosts, site)
    , m_autoLogin(view, clock, database, keychain, state, capture, m_vault, m_window, site) {}
