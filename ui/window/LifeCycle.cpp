// SPDX-License-Identifier: MIT
#include "ui/window/LifeCycle.h"

#include "core/Database.h"
#include "platform/Tray.h"
#include "polling/Notifier.h"
#include "ui/window/MenuBarPanel.h"

using namespace Qt::StringLiterals;

LifeCycle::LifeCycle(Tray& tray, MenuBarPanel& panel, Notifier& notifier, Database& database)
    : m_tray(tray), m_notifier(notifier), m_database(database) {
    connect(&tray, &Tray::activated, this, &LifeCycle::panelRequested);
    connect(&tray, &Tray::openChosen, this, &LifeCycle::showWindow);
    connect(&tray, &Tray::checkChosen, &panel, &MenuBarPanel::checkNow);
    connect(&tray, &Tray::quitChosen, this, &LifeCycle::quitRequested);
    connect(&tray, &Tray::availabilityChanged, this, [this] {
        // A window that was hidden into a tray must not be lost with it.
        if (!hasTray() && !m_isWindowShown)
            showWindow();
        Q_EMIT hasTrayChanged();
    });
    connect(&panel, &MenuBarPanel::openRequested, this, &LifeCycle::showWindow);
    const auto showStatus = [this, &panel] {
        m_tray.setStatus(panel.headline() + u" · "_s + panel.countText());
    };
    connect(&panel, &MenuBarPanel::changed, this, showStatus);
    showStatus();
}

bool LifeCycle::hasTray() const {
    return m_tray.isAvailable();
}

void LifeCycle::showWindow() {
    setAsking(false);
    setWindowShown(true);
    Q_EMIT raiseRequested();
}

void LifeCycle::closeWindow() {
    if (!hasTray()) {
        setAsking(true);
        return;
    }
    setWindowShown(false);
    const QString told = u"told_background"_s;
    if (m_database.isOn(told, false))
        return;
    m_database.set(told, u"1"_s);
    m_notifier.post(u"Tindra jakter videre"_s,
                    u"Vinduet er lukket, men overvåkerne sjekkes som før. Du finner Tindra ved "
                    u"klokken; der kan du også avslutte."_s);
}

void LifeCycle::keepHunting() {
    setAsking(false);
    setWindowShown(false);
}

void LifeCycle::stay() {
    setAsking(false);
}

void LifeCycle::setWindowShown(bool shown) {
    if (std::exchange(m_isWindowShown, shown) != shown)
        Q_EMIT windowShownChanged();
}

void LifeCycle::setAsking(bool asking) {
    if (std::exchange(m_isAsking, asking) != asking)
        Q_EMIT askingChanged();
}
