// SPDX-License-Identifier: MIT
#include "platform/linux/QtTray.h"

#include "platform/Bundle.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QGuiApplication>
#include <QScreen>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto watchInterval = 30s;

/// Hosts of status notifiers look an icon up by its name, where Tindra is installed, and tint it;
/// the X11 tray shows a picture as it is.
QIcon trayIcon(const QIcon& mark) {
    const auto* bus = QDBusConnection::sessionBus().interface();
    if (!bus || !bus->isServiceRegistered(u"org.kde.StatusNotifierWatcher"_s))
        return mark;
    return QIcon::fromTheme(QStringLiteral(TINDRA_BUNDLE_ID "-symbolic"), mark);
}

/// Where a panel shall open: the edge of the icon that looks into the screen, else the pointer.
/// Absent on Wayland, which tells nobody where things are.
std::optional<QPoint> place(const QRect& icon) {
    if (QGuiApplication::platformName() != u"xcb")
        return std::nullopt;
    const QScreen* screen = QGuiApplication::screenAt(icon.center());
    if (icon.isEmpty() || !screen)
        return QCursor::pos();
    const bool isInUpperHalf = icon.center().y() < screen->geometry().center().y();
    return QPoint(icon.center().x(), isInUpperHalf ? icon.bottom() : icon.top());
}

} // namespace

QtTray::QtTray(const QIcon& mark)
    : m_icon(trayIcon(mark)), m_wasAvailable(QSystemTrayIcon::isSystemTrayAvailable()) {
    connect(m_menu.addAction(u"Åpne Tindra"_s), &QAction::triggered, this, &Tray::openChosen);
    connect(m_menu.addAction(u"Sjekk nå"_s), &QAction::triggered, this, &Tray::checkChosen);
    m_menu.addSeparator();
    connect(m_menu.addAction(u"Avslutt Tindra"_s), &QAction::triggered, this, &Tray::quitChosen);
    m_icon.setContextMenu(&m_menu);
    m_icon.setToolTip(u"Tindra"_s);
    connect(&m_icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason != QSystemTrayIcon::Context)
                    Q_EMIT activated(place(m_icon.geometry()));
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
