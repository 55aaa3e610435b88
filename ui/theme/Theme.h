// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Appearance.h"
#include "ui/theme/Palette.h"

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// The theme, `TD` in QML: colours of the mode that the desktop asks for, measures, and whether
/// things move. Lengths and type sizes are logical pixels.
class Theme : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(TD)
    QML_SINGLETON

    Q_PROPERTY(QColor window READ window NOTIFY coloursChanged)
    Q_PROPERTY(QColor card READ card NOTIFY coloursChanged)
    Q_PROPERTY(QColor panel READ panel NOTIFY coloursChanged)
    Q_PROPERTY(QColor panelText READ panelText NOTIFY coloursChanged)
    Q_PROPERTY(QColor brand READ brand NOTIFY coloursChanged)
    Q_PROPERTY(QColor onBrand READ onBrand NOTIFY coloursChanged)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY coloursChanged)
    Q_PROPERTY(QColor raised READ raised NOTIFY coloursChanged)
    Q_PROPERTY(QColor accent READ accent NOTIFY coloursChanged)
    Q_PROPERTY(QColor success READ success NOTIFY coloursChanged)
    Q_PROPERTY(QColor successBg READ successBg NOTIFY coloursChanged)
    Q_PROPERTY(QColor danger READ danger NOTIFY coloursChanged)
    Q_PROPERTY(QColor warn READ warn NOTIFY coloursChanged)
    Q_PROPERTY(QColor peach READ peach NOTIFY coloursChanged)
    Q_PROPERTY(QColor ctaInk READ ctaInk CONSTANT)
    Q_PROPERTY(QColor text READ text NOTIFY coloursChanged)
    Q_PROPERTY(QColor textSecondary READ textSecondary NOTIFY coloursChanged)
    Q_PROPERTY(QColor textTertiary READ textTertiary NOTIFY coloursChanged)
    Q_PROPERTY(QColor hairline READ hairline NOTIFY coloursChanged)
    Q_PROPERTY(QColor field READ field NOTIFY coloursChanged)
    Q_PROPERTY(QColor sidebar READ sidebar NOTIFY coloursChanged)
    /// The two colours of headers, from the top left to the bottom right.
    Q_PROPERTY(QList<QColor> heroGradient READ heroGradient NOTIFY coloursChanged)
    Q_PROPERTY(bool dark READ dark NOTIFY coloursChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY motionChanged)
    /// How long things take to move, in milliseconds; 0 where nothing is to move.
    Q_PROPERTY(int quick READ quick NOTIFY motionChanged)
    Q_PROPERTY(int slow READ slow NOTIFY motionChanged)

    Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT)
    Q_PROPERTY(int pageTitle MEMBER m_pageTitle CONSTANT)
    Q_PROPERTY(int figure MEMBER m_figure CONSTANT)
    Q_PROPERTY(int cardTitle MEMBER m_cardTitle CONSTANT)
    Q_PROPERTY(int section MEMBER m_section CONSTANT)
    Q_PROPERTY(int body MEMBER m_body CONSTANT)
    Q_PROPERTY(int caption MEMBER m_caption CONSTANT)
    Q_PROPERTY(int badge MEMBER m_badge CONSTANT)

    Q_PROPERTY(int xs MEMBER m_xs CONSTANT)
    Q_PROPERTY(int s MEMBER m_s CONSTANT)
    Q_PROPERTY(int m MEMBER m_m CONSTANT)
    Q_PROPERTY(int l MEMBER m_l CONSTANT)
    Q_PROPERTY(int xl MEMBER m_xl CONSTANT)
    Q_PROPERTY(int xxl MEMBER m_xxl CONSTANT)

    Q_PROPERTY(int controlRadius MEMBER m_controlRadius CONSTANT)
    Q_PROPERTY(int cardRadius MEMBER m_cardRadius CONSTANT)
    Q_PROPERTY(int passRadius MEMBER m_passRadius CONSTANT)
    /// The least width and height of what is clicked, and the height of most controls.
    Q_PROPERTY(int target MEMBER m_target CONSTANT)
    Q_PROPERTY(int controlHeight MEMBER m_controlHeight CONSTANT)

public:
    /// `appearance` must outlive the theme.
    explicit Theme(const Appearance& appearance, QObject* parent = nullptr);

    /// Makes this the `TD` of `engine`, which it must outlive; once, before anything is loaded.
    void install(QQmlEngine& engine);
    static Theme* create(QQmlEngine* engine, QJSEngine*);

    const Palette& palette() const { return dark() ? Palette::dark() : Palette::light(); }
    QColor window() const { return palette().window; }
    QColor card() const { return palette().card; }
    QColor panel() const { return palette().panel; }
    QColor panelText() const { return palette().panelText; }
    QColor brand() const { return palette().brand; }
    QColor onBrand() const { return palette().onBrand; }
    QColor onAccent() const { return palette().onAccent; }
    QColor raised() const { return palette().raised; }
    QColor accent() const { return palette().accent; }
    QColor success() const { return palette().success; }
    QColor successBg() const { return palette().successBg; }
    QColor danger() const { return palette().danger; }
    QColor warn() const { return palette().warn; }
    QColor peach() const { return palette().peach; }
    QColor ctaInk() const { return QColor::fromRgbF(0.231F, 0.192F, 0.125F); }
    QColor text() const { return palette().text; }
    QColor textSecondary() const { return palette().textSecondary; }
    QColor textTertiary() const { return palette().textTertiary; }
    QColor hairline() const { return palette().hairline; }
    QColor field() const { return palette().field; }
    QColor sidebar() const { return palette().sidebar; }
    QList<QColor> heroGradient() const;
    bool dark() const { return m_appearance.isDark(); }
    bool reduceMotion() const { return m_appearance.reducesMotion(); }
    int quick() const { return motion(150); }
    int slow() const { return motion(250); }
    QString fontFamily() const { return m_fontFamily; }

    /// `milliseconds`, or 0 where nothing is to move.
    Q_INVOKABLE int motion(int milliseconds) const { return reduceMotion() ? 0 : milliseconds; }
    /// `colour` with an opacity of `opacity`, 0 to 1.
    Q_INVOKABLE QColor tint(QColor colour, double opacity) const;
    /// `colour`, or one of its hue that can be read on the opaque `ground`.
    Q_INVOKABLE QColor readableOn(const QColor& colour, const QColor& ground) const;
    /// The text colour of a badge of `colour`: readable on 14 % of `colour` over every page ground,
    /// or, when `filled`, on `colour`.
    Q_INVOKABLE QColor badgeText(const QColor& colour, bool filled) const;

Q_SIGNALS:
    void coloursChanged();
    void motionChanged();

private:
    const Appearance& m_appearance;
    const QString m_fontFamily;
    bool m_wasDark;
    bool m_wasReduced;
    const int m_pageTitle = 26;
    const int m_figure = 20;
    const int m_cardTitle = 17;
    const int m_section = 14;
    const int m_body = 13;
    const int m_caption = 11;
    const int m_badge = 10;
    const int m_xs = 4;
    const int m_s = 8;
    const int m_m = 12;
    const int m_l = 16;
    const int m_xl = 24;
    const int m_xxl = 32;
    const int m_controlRadius = 8;
    const int m_cardRadius = 12;
    const int m_passRadius = 18;
    const int m_target = 28;
    const int m_controlHeight = 34;
};
