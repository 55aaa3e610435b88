// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"

class Capture;
class Clock;
class CookieVault;
class NavHosts;
class SessionState;
class WebView;

/// What every way of signing in works on. All but `site` must outlive whoever has it.
struct SignInContext {
    WebView& view;
    Clock& clock;
    SessionState& state;
    /// Ended where the web view is needed.
    Capture& capture;
    CookieVault& vault;
    NavHosts& navHosts;
    Site site;
};
