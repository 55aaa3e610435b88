// SPDX-License-Identifier: MIT
#include "platform/linux/QtTray.h"

#include <QCursor>
#include <QGuiApplication>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto watchInterval = 30s;

} // namespace

QtTray::QtTray(const QIcon& icon)
    : m_icon(icon), m_wasAvailable(QSystemTrayIcon::isSystemTrayAvailable()) {
    connect(m_menu.addAction(u"Åpne Tindra"_s), &QAction::triggered, this, &Tray::openChosen);
    connect(m_menu.addAction(u"Sjekk nå"_s), &QAction::triggered, this, &Tray::checkChosen);
    m_menu.addSeparator();
    connect(m_menu.addAction(u"Avslutt Tindra"_s), &QAction::triggered, this, &Tray::quitChosen);
    m_icon.setContextMenu(&m_menu);
    m_icon.setToolTip(u"Tindra"_s);
    connect(&m_icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Context)
                    return;
                // Wayland tells nobody where things are on the screen.
                const bool knowsPlaces = QGuiApplication::platformName() == u"xcb";
                Q_EMIT activated(knowsPlaces ? std::optional(QCursor::pos()) : std::nullopt);
            });
    connect(&m_watch, &QTimer::timeout, this, &QtTray::lookAgain);
    m_watch.start(watchInterval);
}

bool QtTray::isAvailable() const {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void QtTray::setStatus(const QString& text) {
    m_icon.setToolTip(u"Tindra\n"_s + text);
}

void QtTray::lookAgain() {
    const bool now = isAvailable();
    if (std::exchange(m_wasAvailable, now) == now)
        return;
    if (now) {
        // An icon that found no place when it was shown does not look for one again by itself.
        m_icon.hide();
        m_icon.show();
    }
    Q_EMIT availabilityChanged();
}
