// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickImageProvider>

/// Draws `image://symbol/<name>/<colour>`: the symbol `name` of `ui/icons` in a colour written as
/// hexadecimal RGB or ARGB, at the pixel size asked for. An unknown symbol is an error of the
/// image.
class SymbolProvider final : public QQuickImageProvider {
public:
    SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};
