// SPDX-License-Identifier: MIT
#include "airline/LiveSession.h"

#include "airline/StandBack.h"
#include "core/Database.h"
#include "platform/WebView.h"

LiveSession::LiveSession(WebView& view, HostWindow& window, Clock& clock, Database& database,
                         Keychain& keychain, SessionState& state, StandBack& standBack,
                         Capture& capture, const Site& site)
    : m_navHosts(view)
    , m_vault(view.cookies(), keychain, database.safekeeping(), clock, site)
    , m_window(window, view, clock, state, capture, m_vault, m_navHosts, site)
    , m_singleSignOn(view, clock, state, capture, m_vault, m_navHosts, site)
    , m_autoLogin(view, clock, database.settings(), keychain, state, capture, m_vault, m_window,
                  site, [&standBack] { return standBack.isOn(); }) {}
