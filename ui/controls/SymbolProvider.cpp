// SPDX-License-Identifier: MIT
#include "ui/controls/SymbolProvider.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype slash = id.lastIndexOf(u'/');
    QFile file(u":/icons/"_s + id.left(slash) + u".svg"_s);
    const QColor colour(u'#' + id.mid(slash + 1));
    if (slash < 0 || !colour.isValid() || !file.open(QIODevice::ReadOnly))
        return {};
    // The drawings are black; their opacity is the painter's, which knows no colour in a file.
    QSvgRenderer renderer(file.readAll().replace("#000", colour.name(QColor::HexRgb).toLatin1()));
    QImage image(requestedSize.isEmpty() ? renderer.defaultSize() : requestedSize,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(colour.alphaF());
    renderer.render(&painter);
    if (size)
        *size = image.size();
    return image;
}
