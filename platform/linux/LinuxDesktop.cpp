// SPDX-License-Identifier: MIT
#include "platform/linux/LinuxDesktop.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostNumbers = 1000;

} // namespace

bool LinuxDesktop::open(const QUrl& address) {
    return QDesktopServices::openUrl(address);
}

void LinuxDesktop::copy(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

std::optional<QString> LinuxDesktop::download(const QString& name, const QByteArray& content) {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    folder.mkpath(u"."_s);
    const QFileInfo wanted(name);
    QFile file;
    for (int number = 1; !file.isOpen(); ++number) {
        const QString suffix = number > 1 ? u"-%1"_s.arg(number) : QString();
        file.setFileName(
            folder.filePath(u"%1%2.%3"_s.arg(wanted.completeBaseName(), suffix, wanted.suffix())));
        // Nothing that is there is ever written over.
        const bool isNew = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
        if (!isNew && (!file.exists() || number >= mostNumbers))
            return std::nullopt;
    }
    if (file.write(content) != content.size() || !file.flush()) {
        file.remove();
        return std::nullopt;
    }
    return file.fileName();
}
