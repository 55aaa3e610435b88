// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// The words after a command: options, "--name value" or "--name=value", and others in between.
/// After "--" nothing is an option.
class Arguments {
public:
    /// `command` is what an error names, such as "tindra hits". Throws Err when an option is not
    /// among `flags` (without a value) and `valued`, comes twice, or lacks its value.
    Arguments(const QString& command, const QStringList& words, const QStringList& flags,
              const QStringList& valued);

    bool has(const QString& flag) const { return m_options.contains(flag); }
    /// Absent when the option was not given.
    std::optional<QString> value(const QString& option) const;
    /// The value of an option that must be there. Throws Err.
    QString required(const QString& option) const;
    /// The only word that is no option; `what` says what it stands for. Throws Err when there is
    /// none, or more than one.
    QString word(const QString& what) const;
    /// Throws Err when there are words that are no options.
    void noWords() const;
    /// A whole number from `least` to `most`, or `otherwise` where the option was not given. Throws
    /// Err.
    int number(const QString& option, int least, int most, int otherwise) const;

private:
    QString m_command;
    QHash<QString, QString> m_options;
    QStringList m_words;
};
