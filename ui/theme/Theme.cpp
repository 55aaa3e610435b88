// SPDX-License-Identifier: MIT
#include "ui/theme/Theme.h"

#include "ui/theme/Contrast.h"

#include <QFontDatabase>
#include <QQmlEngine>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr auto themeOfEngine = "tindraTheme";
constexpr double badgeTint = 0.14;

QString family() {
    const QString inter = u"Inter"_s;
    return QFontDatabase::families().contains(inter)
               ? inter
               : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
}

} // namespace

Theme::Theme(const Appearance& appearance, QObject* parent)
    : QObject(parent)
    , m_appearance(appearance)
    , m_fontFamily(family())
    , m_wasDark(appearance.isDark())
    , m_wasReduced(appearance.reducesMotion()) {
    connect(&appearance, &Appearance::changed, this, [this] {
        if (std::exchange(m_wasDark, dark()) != dark())
            Q_EMIT coloursChanged();
        if (std::exchange(m_wasReduced, reduceMotion()) != reduceMotion())
            Q_EMIT motionChanged();
    });
}

void Theme::install(QQmlEngine& engine) {
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    engine.setProperty(themeOfEngine, QVariant::fromValue(this));
}

Theme* Theme::create(QQmlEngine* engine, QJSEngine*) {
    auto* theme = engine->property(themeOfEngine).value<Theme*>();
    if (!theme)
        qFatal("the engine has no theme; call Theme::install before loading");
    return theme;
}

QList<QColor> Theme::heroGradient() const {
    return dark() ? QList<QColor>{0x173B60, 0x0E2135} : QList<QColor>{0x1D4E82, 0x14304A};
}

QColor Theme::tint(QColor colour, double opacity) const {
    colour.setAlphaF(static_cast<float>(opacity));
    return colour;
}

QColor Theme::readableOn(const QColor& colour, const QColor& ground) const {
    return ::readable(colour, ground);
}

QColor Theme::badgeText(const QColor& colour, bool filled) const {
    if (filled)
        return contrast(card(), colour) > contrast(text(), colour) ? readableOn(card(), colour)
                                                                   : readableOn(text(), colour);
    // The worst ground is the one nearest to the text: the darkest of the light, or the lightest
    // of the dark ones.
    const QColor wash = tint(colour, badgeTint);
    QColor result = colour;
    for (const QColor& ground : {card(), window(), sidebar(), field()})
        result = readableOn(result, over(wash, ground));
    return result;
}
