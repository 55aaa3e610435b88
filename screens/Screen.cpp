// SPDX-License-Identifier: MIT
#include "screens/Screen.h"

namespace {

QList<Screen>& registry() {
    static QList<Screen> screens;
    return screens;
}

} // namespace

Screen::Screen(const QString& itsName, Build itsBuild)
    : name(itsName), sizes{{880, 600}, {1120, 880}, {1600, 1000}}, build(std::move(itsBuild)) {
    registry().append(*this);
}

Screen::Screen(const QString& itsName, QSize size, Build itsBuild)
    : name(itsName), sizes{size}, build(std::move(itsBuild)) {
    registry().append(*this);
}

const QList<Screen>& Screen::all() {
    return registry();
}
