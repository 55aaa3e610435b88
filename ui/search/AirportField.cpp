// SPDX-License-Identifier: MIT
#include "ui/search/AirportField.h"

#include "ui/search/CodeList.h"

using namespace Qt::StringLiterals;

AirportField::AirportField(Field field, bool multi, QObject* parent)
    : QObject(parent), m_field(field), m_multi(multi) {}

QString AirportField::label() const {
    return m_field == Field::from ? u"FRA — ÉN ELLER FLERE"_s : u"TIL — FLERE BYER"_s;
}

QString AirportField::placeholder() const {
    return m_field == Field::from ? u"OSL eller bynavn"_s : u"JFK, EWR, ORD — eller bynavn"_s;
}

template<typename Change>
void AirportField::updating(Change change) {
    const bool wasOpen = isOpen();
    change();
    if (isOpen() != wasOpen)
        Q_EMIT openChanged();
}

void AirportField::setCode(const QString& code) {
    if (m_code == code)
        return;
    updating([&] {
        m_code = code;
        m_isDismissed = false;
        m_suggestions.setSuggestions(CodeList::suggestions(activeToken()));
        m_highlighted = m_suggestions.rowCount() > 0 ? 0 : -1;
    });
    Q_EMIT highlightedChanged();
    Q_EMIT codeChanged();
}

QString AirportField::cityNames() const {
    return CodeList::cityNames(m_code);
}

void AirportField::setFocused(bool focused) {
    if (m_isFocused == focused)
        return;
    updating([&] {
        m_isFocused = focused;
        m_isDismissed = false;
    });
    Q_EMIT focusedChanged();
}

bool AirportField::isOpen() const {
    return m_isFocused && !m_isDismissed && m_suggestions.rowCount() > 0;
}

void AirportField::setHighlighted(int row) {
    if (row < 0 || row >= m_suggestions.rowCount() || std::exchange(m_highlighted, row) == row)
        return;
    Q_EMIT highlightedChanged();
}

QString AirportField::activeToken() const {
    return CodeList::activeToken(m_code, m_multi);
}

void AirportField::pick(const QString& code) {
    setCode(CodeList::picked(m_code, code, m_multi));
    if (!m_multi)
        setFocused(false);
}

bool AirportField::moveHighlight(int rows) {
    const int count = m_suggestions.rowCount();
    if (count == 0)
        return false;
    if (isOpen())
        setHighlighted(((m_highlighted + rows) % count + count) % count);
    else
        updating([this] { m_isDismissed = false; });
    return true;
}

bool AirportField::chooseHighlighted() {
    if (!isOpen())
        return false;
    pick(m_suggestions.suggestions()[m_highlighted].code);
    return true;
}

bool AirportField::dismiss() {
    if (!isOpen())
        return false;
    updating([this] { m_isDismissed = true; });
    return true;
}
