// SPDX-License-Identifier: MIT
#include "platform/linux/QtTray.h"

#include "platform/Bundle.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QSystemTrayIcon>

#include <cstdlib>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto watchInterval = 30s;
constexpr std::string_view x11TraySelection = "_NET_SYSTEM_TRAY_S0";

bool isOnX11() {
    return QGuiApplication::platformName() == u"xcb";
}

template<typename Reply>
using XcbReply = std::unique_ptr<Reply, decltype(&std::free)>;

/// Whether somebody owns the selection that the first screen's tray has to own.
bool hasX11Tray() {
    // Offscreen drawing has an X11 interface too, but no connection behind it.
    const auto* x11 =
        isOnX11() ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11)
        return false;
    xcb_connection_t* display = x11->connection();
    const XcbReply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(
            display, xcb_intern_atom(display, 0, x11TraySelection.size(), x11TraySelection.data()),
            nullptr),
        &std::free);
    if (!atom)
        return false;
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(display, xcb_get_selection_owner(display, atom->atom),
                                      nullptr),
        &std::free);
    return owner && owner->owner != XCB_NONE;
}

/// Where a panel shall open: the edge of the icon that looks into the screen, else the pointer.
/// Absent on Wayland, which tells nobody where things are.
std::optional<QPoint> place(const QRect& icon) {
    if (!isOnX11())
        return std::nullopt;
    const QScreen* screen = QGuiApplication::screenAt(icon.center());
    if (icon.isEmpty() || !screen)
        return QCursor::pos();
    const bool isInUpperHalf = icon.center().y() < screen->geometry().center().y();
    return QPoint(icon.center().x(), isInUpperHalf ? icon.bottom() : icon.top());
}

QString toolTip(const QString& status) {
    return status.isEmpty() ? u"Tindra"_s : u"Tindra\n"_s + status;
}

} // namespace

struct QtTray::Icon {
    QMenu menu;
    QSystemTrayIcon icon;
};

QtTray::QtTray(const QIcon& mark, const QDBusConnection& bus) : m_mark(mark), m_host(bus) {
    connect(&m_host, &StatusNotifierHost::changed, this, &QtTray::look);
    connect(&m_x11Watch, &QTimer::timeout, this, &QtTray::look);
    look();
}

QtTray::~QtTray() = default;

void QtTray::show() {
    m_isWanted = true;
    if (m_isAvailable && !m_icon)
        makeIcon();
}

void QtTray::setStatus(const QString& text) {
    m_status = text;
    if (m_icon)
        m_icon->icon.setToolTip(toolTip(m_status));
}

void QtTray::look() {
    // An icon that takes X11's tray meanwhile would keep to it.
    if (!m_host.isKnown())
        return;
    const bool hasHost = m_host.isThere() && m_kind != Kind::x11;
    if (hasHost || m_kind == Kind::statusNotifier || !isOnX11())
        m_x11Watch.stop();
    else if (!m_x11Watch.isActive())
        m_x11Watch.start(watchInterval);
    const bool now = hasHost || (m_kind != Kind::statusNotifier && hasX11Tray());
    if (std::exchange(m_isAvailable, now) == now)
        return;
    if (!now)
        m_icon.reset();
    else if (m_isWanted)
        makeIcon();
    Q_EMIT availabilityChanged();
}

void QtTray::makeIcon() {
    if (!m_kind)
        m_kind = m_host.isThere() ? Kind::statusNotifier : Kind::x11;
    m_icon = std::make_unique<Icon>();
    QMenu& menu = m_icon->menu;
    connect(menu.addAction(u"Åpne Tindra"_s), &QAction::triggered, this, &Tray::openChosen);
    connect(menu.addAction(u"Sjekk nå"_s), &QAction::triggered, this, &Tray::checkChosen);
    menu.addSeparator();
    connect(menu.addAction(u"Avslutt Tindra"_s), &QAction::triggered, this, &Tray::quitChosen);

    QSystemTrayIcon& icon = m_icon->icon;
    // Hosts of status notifiers look an icon up by its name, where Tindra is installed, and tint
    // it; the X11 tray shows a picture as it is.
    icon.setIcon(m_kind == Kind::statusNotifier
                     ? QIcon::fromTheme(QStringLiteral(TINDRA_BUNDLE_ID "-symbolic"), m_mark)
                     : m_mark);
    icon.setContextMenu(&menu);
    icon.setToolTip(toolTip(m_status));
    connect(&icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // The second of two quick clicks comes as a double click after a trigger.
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::MiddleClick)
                    Q_EMIT activated(place(m_icon->icon.geometry()));
            });
    icon.show();
}
