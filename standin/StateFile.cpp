// SPDX-License-Identifier: MIT
#include "standin/StateFile.h"

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

namespace standin {

StateFile::StateFile(QString path) : m_path(std::move(path)) {}

std::optional<QString> StateFile::load(QJsonObject& state) const {
    state = {};
    QFile file(m_path);
    if (m_path.isEmpty() || !file.exists())
        return std::nullopt;
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot read %1: %2").arg(m_path, file.errorString());
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        return QStringLiteral("%1 is not a state file of the stand-in site (%2)")
            .arg(m_path, error.error ? error.errorString() : QStringLiteral("not an object"));
    state = document.object();
    return std::nullopt;
}

std::optional<QString> StateFile::save(const QJsonObject& state) const {
    if (m_path.isEmpty())
        return std::nullopt;
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        file.write(QJsonDocument(state).toJson()) < 0 || !file.commit())
        return QStringLiteral("cannot write %1: %2").arg(m_path, file.errorString());
    return std::nullopt;
}

} // namespace standin
