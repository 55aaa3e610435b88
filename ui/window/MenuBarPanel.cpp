// SPDX-License-Identifier: MIT
#include "ui/window/MenuBarPanel.h"

#include "app/AppState.h"
#include "core/Cabin.h"
#include "core/Norwegian.h"
#include "platform/Desktop.h"
#include "polling/Worker.h"
#include "ui/session/SessionModel.h"

#include <algorithm>

using namespace Qt::StringLiterals;

MenuBarPanel::MenuBarPanel(AppState& state, Worker& worker, SessionModel& login, Desktop& desktop,
                           Site site)
    : m_state(state)
    , m_worker(worker)
    , m_login(login)
    , m_desktop(desktop)
    , m_site(std::move(site)) {
    connect(&state, &AppState::searchesChanged, this, &MenuBarPanel::changed);
    connect(&state, &AppState::matchesChanged, this, &MenuBarPanel::changed);
    connect(&worker, &Worker::changed, this, &MenuBarPanel::changed);
    connect(&login, &SessionModel::changed, this, &MenuBarPanel::changed);
}

bool MenuBarPanel::isHunting() const {
    return !enabledOf(m_state.searches()).isEmpty();
}

QString MenuBarPanel::headline() const {
    return isHunting() ? u"Jakten er i gang"_s : u"Ingen aktive overvåkere"_s;
}

QString MenuBarPanel::countText() const {
    const auto active = enabledOf(m_state.searches()).size();
    QString text = Norwegian::number(active) + (active == 1 ? u" overvåker"_s : u" overvåkere"_s);
    if (m_worker.isRunning())
        text += u" · sjekker nå…"_s;
    return text;
}

QString MenuBarPanel::warning() const {
    return m_login.warning();
}

bool MenuBarPanel::canTryNow() const {
    return m_login.isRefused();
}

void MenuBarPanel::tryNow() {
    m_login.tryNow();
}

QString MenuBarPanel::latestRoute() const {
    const Match* match = latest();
    return match ? match->places() : QString();
}

QString MenuBarPanel::latestText() const {
    const Match* match = latest();
    if (!match)
        return {};
    return u"%1 · %2 seter · %3 poeng"_s.arg(label(match->cabin), Norwegian::number(match->seats),
                                             Norwegian::number(match->points));
}

bool MenuBarPanel::canBook() const {
    return address().has_value();
}

void MenuBarPanel::book() {
    if (const auto url = address())
        m_desktop.open(*url);
}

void MenuBarPanel::checkNow() {
    m_worker.pollOnce();
}

const Match* MenuBarPanel::latest() const {
    for (const Hit& hit : m_state.matches()) {
        if (const auto* match = std::get_if<Match>(&hit))
            return match;
    }
    return nullptr;
}

std::optional<QUrl> MenuBarPanel::address() const {
    const Match* match = latest();
    return match ? m_site.bookingAddress(match->bookingURL) : std::nullopt;
}
