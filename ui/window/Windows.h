// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QQuickView>

#include <optional>

class LifeCycle;
class Theme;

/// The main window. Closing it is the life cycle's business.
class MainWindow final : public QQuickView {
    Q_OBJECT
public:
    static constexpr QSize usualSize{1120, 880};

    /// `life` and `theme` must outlive the window; `properties` are those of the content.
    MainWindow(QQmlEngine& engine, LifeCycle& life, const Theme& theme,
               const QVariantMap& properties);

protected:
    bool event(QEvent* event) override;

private:
    void follow();
    void raise();

    LifeCycle& m_life;
};

/// The panel's window: no frame, above others, gone when the user turns to something else.
class PanelWindow final : public QQuickView {
    Q_OBJECT
public:
    PanelWindow(QQmlEngine& engine, const Theme& theme, const QVariantMap& properties);

    /// At `place` on the screen, or in a corner; hides it where it is shown already.
    void toggle(std::optional<QPoint> place);
    /// The same in a corner of `window`, which it then belongs to.
    void toggleIn(QWindow& window);

protected:
    bool event(QEvent* event) override;

private Q_SLOTS:
    /// The content has led elsewhere.
    void hidePanel() { hide(); }

private:
    void toggleAt(std::optional<QPoint> place, const QRect& area, QWindow* window);
    void putInPlace();

    /// Where it was asked for; its height may change while it is shown.
    std::optional<QPoint> m_place;
    QRect m_area;
};
