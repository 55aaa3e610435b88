// SPDX-License-Identifier: MIT
#include "airports/Folding.h"

#include <QList>

namespace Airports {
namespace {

/// The canonical decomposition without its marks, character by character. Neither of the later
/// steps shortens a text, so one that is too long here stays too long.
QString withoutMarks(QStringView text, qsizetype enough) {
    QString result;
    result.reserve(qMin(text.size(), enough) + 4);
    for (qsizetype i = 0; i < text.size() && result.size() <= enough; ++i) {
        const QChar unit = text[i];
        if (unit.unicode() < 0x80) {
            result += unit;
            continue;
        }
        char32_t character = unit.unicode();
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            character = QChar::surrogateToUcs4(unit, text[++i]);
        if (QChar::isMark(character))
            continue;
        if (QChar::decompositionTag(character) != QChar::Canonical) {
            result += QChar::fromUcs4(character);
            continue;
        }
        const QString parts =
            QString::fromUcs4(&character, 1).normalized(QString::NormalizationForm_D);
        for (const char32_t part : parts.toUcs4()) {
            if (!QChar::isMark(part))
                result += QChar::fromUcs4(part);
        }
    }
    return result;
}

} // namespace

QString folded(QStringView text) {
    return foldedUpTo(text, std::numeric_limits<qsizetype>::max() / 4);
}

QString foldedUpTo(QStringView text, qsizetype enough) {
    const QString plain = withoutMarks(text, enough).toCaseFolded();
    QString result;
    result.reserve(plain.size());
    for (const QChar unit : plain) {
        switch (unit.unicode()) {
        case u'ø':
            result += u'o';
            break;
        case u'æ':
            result += QLatin1String("ae");
            break;
        case u'ß':
            result += QLatin1String("ss");
            break;
        case u'ł':
            result += u'l';
            break;
        case u'đ':
            result += u'd';
            break;
        case u'ı':
            result += u'i';
            break;
        default:
            result += unit;
        }
    }
    return result;
}

} // namespace Airports
