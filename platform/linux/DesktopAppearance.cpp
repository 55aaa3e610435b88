// SPDX-License-Identifier: MIT
#include "platform/linux/DesktopAppearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace {

using Settings = QMap<QString, QVariantMap>;

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;
const QString appearanceGroup = u"org.freedesktop.appearance"_s;
const QString gnomeGroup = u"org.gnome.desktop.interface"_s;
const QString kdeGroup = u"org.kde.kdeglobals.KDE"_s;
/// No longer than a start-up may take without being felt.
constexpr int firstAnswerMs = 250;

bool paletteIsDark() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

} // namespace

DesktopAppearance::DesktopAppearance(QDBusConnection bus, QObject* parent)
    : Appearance(parent), m_bus(std::move(bus)) {
    qDBusRegisterMetaType<Settings>();
    qApp->installEventFilter(this);
    if (m_bus.isConnected()) {
        m_bus.connect(service, path, interface, u"SettingChanged"_s, this,
                      SLOT(set(QString, QString, QDBusVariant)));
        auto* watcher = new QDBusServiceWatcher(service, m_bus,
                                                QDBusServiceWatcher::WatchForRegistration, this);
        connect(watcher, &QDBusServiceWatcher::serviceRegistered, this,
                &DesktopAppearance::askAgain);
        QDBusPendingCall answer = ask();
        answer.waitForFinished();
        take(answer);
    }
    update();
}

bool DesktopAppearance::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange)
        update();
    return Appearance::eventFilter(watched, event);
}

void DesktopAppearance::set(const QString& group, const QString& key, const QDBusVariant& value) {
    m_settings[group][key] = value.variant();
    update();
}

QDBusPendingCall DesktopAppearance::ask() {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, u"ReadAll"_s);
    message << QStringList{appearanceGroup, gnomeGroup, kdeGroup};
    return m_bus.asyncCall(message, firstAnswerMs);
}

void DesktopAppearance::take(const QDBusPendingCall& answer) {
    const QDBusPendingReply<Settings> reply = answer;
    if (!reply.isError())
        m_settings = reply.value();
}

void DesktopAppearance::askAgain() {
    auto* watcher = new QDBusPendingCallWatcher(ask(), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        take(*watcher);
        update();
    });
}

void DesktopAppearance::update() {
    // 0 is no preference, 1 dark, 2 light.
    const uint scheme = m_settings[appearanceGroup][u"color-scheme"_s].toUInt();
    const QVariant animations = m_settings[gnomeGroup].value(u"enable-animations"_s, true);
    const QVariant factor = m_settings[kdeGroup].value(u"AnimationDurationFactor"_s, 1.0);
    const Look look{.dark = scheme == 1 || (scheme != 2 && paletteIsDark()),
                    .still = !animations.toBool() || factor.toDouble() == 0};
    if (std::exchange(m_look, look) != look)
        Q_EMIT changed();
}
