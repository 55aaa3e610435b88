// SPDX-License-Identifier: MIT
#include "ui/search/CodeList.h"

#include "core/Text.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int fewestTyped = 2;
constexpr int mostSuggestions = 6;

QStringList trimmedPieces(const QString& text, Qt::SplitBehavior behavior) {
    QStringList pieces = text.split(u',', behavior);
    for (QString& piece : pieces)
        piece = trimmedBlanks(piece);
    return pieces;
}

} // namespace

namespace CodeList {

QString activeToken(const QString& text, bool multi) {
    return trimmedBlanks(multi ? text.section(u',', -1) : text);
}

QList<Airports::Airport> suggestions(const QString& token) {
    if (token.size() < fewestTyped || Airports::byCode().contains(token.toUpper()))
        return {};
    return Airports::search(token, mostSuggestions);
}

QString picked(const QString& text, const QString& code, bool multi) {
    if (!multi)
        return code;
    QStringList pieces = trimmedPieces(text, Qt::KeepEmptyParts);
    pieces.last() = code;
    return pieces.join(u", "_s);
}

QString cityNames(const QString& text) {
    QStringList cities;
    for (const QString& piece : trimmedPieces(text, Qt::SkipEmptyParts)) {
        const auto airport = Airports::byCode().constFind(piece.toUpper());
        if (airport != Airports::byCode().cend())
            cities.append(airport->city);
    }
    return cities.join(u" · "_s);
}

Ends swapped(const Ends& ends) {
    QStringList pieces = trimmedPieces(ends.destination, Qt::SkipEmptyParts);
    const QString origin = pieces.isEmpty() ? QString() : pieces.takeFirst();
    pieces.prepend(ends.origin);
    return {origin, pieces.join(u", "_s)};
}

} // namespace CodeList
