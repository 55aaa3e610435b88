// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

namespace standin {

/// A JSON object kept in a file that only its owner can read (mode 0600); written whole or not at
/// all. Without a path nothing is read or written.
class StateFile {
public:
    explicit StateFile(QString path);

    /// Reads the object; a file that does not exist yet is an empty one. Returns the error, or
    /// nothing on success; after an error the file is left as it is.
    [[nodiscard]] std::optional<QString> load(QJsonObject& state) const;

    /// Returns the error, or nothing on success.
    std::optional<QString> save(const QJsonObject& state) const;

private:
    QString m_path;
};

} // namespace standin
