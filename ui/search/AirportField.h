// SPDX-License-Identifier: MIT
#pragma once

#include "ui/search/SuggestionList.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

/// A field for airport codes that suggests airports while the user types a code or a city. Unknown
/// codes are kept as typed.
class AirportField : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(AirportFieldModel)
    QML_UNCREATABLE("made by the screen's view-model")

    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QString placeholder READ placeholder CONSTANT)
    /// The text as it stands in the field.
    Q_PROPERTY(QString code READ code WRITE setCode NOTIFY codeChanged)
    /// The cities of the codes, "Oslo · Bergen"; empty while no code is known.
    Q_PROPERTY(QString cityNames READ cityNames NOTIFY codeChanged)
    /// Whether the field has the keyboard focus; it gives it up by itself once a single code is
    /// picked.
    Q_PROPERTY(bool isFocused READ isFocused WRITE setFocused NOTIFY focusedChanged)
    /// Whether the suggestions are shown.
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)
    Q_PROPERTY(QAbstractItemModel* suggestions READ suggestions CONSTANT)
    /// The suggestion that Return chooses; -1 without suggestions.
    Q_PROPERTY(int highlighted READ highlighted WRITE setHighlighted NOTIFY highlightedChanged)

public:
    /// Which end of the journey, with the texts that belong to it.
    enum class Field { from, to };

    /// With `multi` the field takes a list of codes, separated by ",".
    explicit AirportField(Field field, bool multi = true, QObject* parent = nullptr);

    QString label() const;
    QString placeholder() const;
    const QString& code() const { return m_code; }
    void setCode(const QString& code);
    QString cityNames() const;
    bool isFocused() const { return m_isFocused; }
    void setFocused(bool focused);
    bool isOpen() const;
    SuggestionList* suggestions() { return &m_suggestions; }
    int highlighted() const { return m_highlighted; }
    void setHighlighted(int row);

    QString activeToken() const;
    Q_INVOKABLE void pick(const QString& code);
    /// Moves the highlight by `rows`, round the ends; opens a list that was dismissed. False where
    /// nothing is suggested.
    Q_INVOKABLE bool moveHighlight(int rows);
    /// Picks the highlighted suggestion. False, and nothing happens, while no list is shown.
    Q_INVOKABLE bool chooseHighlighted();
    /// Hides the suggestions until the text changes. False while none are shown.
    Q_INVOKABLE bool dismiss();

Q_SIGNALS:
    void codeChanged();
    void focusedChanged();
    void openChanged();
    void highlightedChanged();

private:
    /// Runs `change` and says what it did to what is shown.
    template<typename Change>
    void updating(Change change);

    const Field m_field;
    const bool m_multi;
    QString m_code;
    bool m_isFocused = false;
    bool m_isDismissed = false;
    SuggestionList m_suggestions;
    int m_highlighted = -1;
};
