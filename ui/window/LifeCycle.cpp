// SPDX-License-Identifier: MIT
#include "ui/window/LifeCycle.h"

#include "core/Safekeeping.h"
#include "platform/Tray.h"
#include "polling/Notifier.h"
#include "ui/window/MenuBarPanel.h"

using namespace Qt::StringLiterals;

LifeCycle::LifeCycle(Tray& tray, MenuBarPanel& panel, Notifier& notifier, Safekeeping& kept,
                     SecondStart secondStart)
    : m_tray(tray), m_notifier(notifier), m_kept(kept), m_secondStart(secondStart) {
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

QString LifeCycle::question() const {
    if (hasTray())
        return u"Tindra kan sjekke overvåkerne som før når vinduet er lukket. Du finner Tindra ved "
               u"klokken; der kan du også avslutte."_s;
    if (canHide())
        return u"Tindra kan sjekke overvåkerne uten vindu og varsle deg som før. Start Tindra på "
               u"nytt for å åpne vinduet igjen."_s;
    return u"Uten vindu kan du ikke komme tilbake til Tindra her, så når vinduet lukkes, er jakten "
           u"over."_s;
}

void LifeCycle::start(bool hidden) {
    if (!hidden || !canHide())
        showWindow();
}

void LifeCycle::showWindow() {
    setAsking(false);
    setWindowShown(true);
    Q_EMIT raiseRequested();
}

void LifeCycle::closeWindow() {
    const bool isTold = m_kept.isNoted(Kept::toldBackground);
    if (!hasTray() || (!isTold && !m_notifier.canPost())) {
        // Nobody sees a question in a window that is minimised.
        Q_EMIT raiseRequested();
        setAsking(true);
        return;
    }
    setWindowShown(false);
    if (isTold)
        return;
    m_kept.note(Kept::toldBackground);
    m_notifier.post(u"Tindra jakter videre"_s,
                    u"Vinduet er lukket, men overvåkerne sjekkes som før. Du finner Tindra ved "
                    u"klokken; der kan du også avslutte."_s);
}

void LifeCycle::keepHunting() {
    setAsking(false);
    if (!canHide())
        return;
    if (hasTray())
        m_kept.note(Kept::toldBackground);
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
