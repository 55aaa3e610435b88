// SPDX-License-Identifier: MIT
#include "platform/linux/XdgAutostart.h"

#include "platform/Bundle.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

/// A value of a key of type string.
QString escaped(QString text) {
    return text.replace(u'\\', u"\\\\"_s);
}

/// A program as the first word of an Exec key: quoted, its reserved characters escaped, and the
/// percent sign of field codes doubled; then escaped once more as any string.
QString execWord(const QString& program) {
    QString word;
    for (const QChar c : program) {
        if (u"\"`$\\"_s.contains(c))
            word += u'\\';
        word += c;
        if (c == u'%')
            word += c;
    }
    return escaped(u'"' + word + u'"');
}

QString entry(const QString& program) {
    return u"[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Tindra\n"
           "Comment=Watches for award seats\n"
           "Comment[nb]=Ser etter bonusplasser\n"
           "Icon=" TINDRA_BUNDLE_ID "\n"
           "TryExec=%1\n"
           "Exec=%2 --hidden\n"
           "Terminal=false\n"
           "X-GNOME-UsesNotifications=true\n"_s.arg(escaped(program), execWord(program));
}

} // namespace

XdgAutostart::XdgAutostart(QString program)
    : m_program(std::move(program))
    , m_file(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
             u"/autostart/" TINDRA_BUNDLE_ID ".desktop"_s) {}

bool XdgAutostart::isOn() const {
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QList<QByteArray> lines = file.read(64 * 1024).split('\n');
    return !lines.contains("Hidden=true") && !lines.contains("X-GNOME-Autostart-enabled=false");
}

std::optional<QString> XdgAutostart::setOn(bool on) {
    if (qEnvironmentVariableIsSet("FLATPAK_ID"))
        return u"Tindra kan ikke starte av seg selv ved innlogging når den kjører i Flatpak."_s;
    QString problem;
    if (on) {
        QSaveFile file(m_file);
        const QByteArray text = entry(m_program).toUtf8();
        if (QDir().mkpath(QFileInfo(m_file).path()) && file.open(QIODevice::WriteOnly) &&
            file.write(text) == text.size() && file.commit())
            return std::nullopt;
        problem = file.errorString();
    } else {
        QFile file(m_file);
        if (!file.exists() || file.remove())
            return std::nullopt;
        problem = file.errorString();
    }
    return u"Fikk ikke endret %1: %2."_s.arg(m_file, problem);
}
