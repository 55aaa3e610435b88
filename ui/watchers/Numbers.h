// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>

/// Norwegian numbers and times, whatever the system's language is.
inline QLocale norwegian() {
    return {QLocale::NorwegianBokmal, QLocale::Norway};
}

/// "1 284", with a space that does not break.
inline QString norwegian(int number) {
    return norwegian().toString(number);
}
