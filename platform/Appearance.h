// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// How the desktop wants programs to look; it can change at any time.
class Appearance : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    /// True where dark grounds are preferred.
    virtual bool isDark() const = 0;
    /// True where nothing is to move.
    virtual bool reducesMotion() const = 0;

Q_SIGNALS:
    void changed();
};
