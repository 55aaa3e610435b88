// SPDX-License-Identifier: MIT
#include "ui/controls/Controls.h"

#include "ui/controls/SymbolProvider.h"
#include "ui/theme/Theme.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickStyle>

using namespace Qt::StringLiterals;

void prepareInterface() {
    QQuickStyle::setStyle(u"Basic"_s);
}

void setUpEngine(QQmlEngine& engine, Theme& theme) {
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.addImageProvider(u"symbol"_s, new SymbolProvider);
    theme.install(engine);
    QFont font(theme.fontFamily());
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
}
