// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

class Desktop;

/// What the program says of itself.
class AboutTindra : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(AboutTindraModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString engineVersion READ engineVersion CONSTANT)
    Q_PROPERTY(QString dataFolder READ dataFolder CONSTANT)
    /// Why the web engine is not safe enough, and what to do; empty when it is.
    Q_PROPERTY(QString engineWarning READ engineWarning NOTIFY changed)
    /// The diagnosis has been copied since the page was opened.
    Q_PROPERTY(bool isCopied READ isCopied NOTIFY changed)
public:
    /// Where it all comes from; the functions are asked each time.
    struct Sources {
        QString engineVersion;
        QString dataFolder;
        std::function<std::optional<QString>()> engineWarning;
        /// Versions, state and the last log lines without anything private.
        std::function<QString()> diagnosis;
    };

    /// `desktop` must outlive this.
    AboutTindra(Desktop& desktop, Sources sources);

    QString version() const;
    const QString& engineVersion() const { return m_sources.engineVersion; }
    const QString& dataFolder() const { return m_sources.dataFolder; }
    QString engineWarning() const { return m_sources.engineWarning().value_or(QString()); }
    bool isCopied() const { return m_copied; }

    /// Asks all sources again.
    void open();
    Q_INVOKABLE void copyDiagnosis();

Q_SIGNALS:
    void changed();

private:
    Desktop& m_desktop;
    const Sources m_sources;
    bool m_copied = false;
};
