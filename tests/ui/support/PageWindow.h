// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TestProgram.h"
#include "tests/ui/support/FakeAppearance.h"
#include "ui/theme/Theme.h"

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>

/// A window that shows one QML type, as the program shows it, without a display. Things do not move
/// in it unless `appearance` says so. Every warning of QML is kept; those that nobody has taken
/// when the window goes fail the test.
///
/// Where a thing is named by text, that is its `objectName`, else its accessible name, else the
/// text that it shows; only what can be seen is found, also what floats over the page.
class PageWindow {
public:
    /// First thing in `main`, before the application is made.
    static void prepare();

    /// Shows `type` of `module` with `properties`, required ones among them, filling a window of
    /// `size`. View-models in them must outlive the window.
    PageWindow(const QString& module, const QString& type, const QVariantMap& properties = {},
               QSize size = {1120, 880});
    /// The same of QML source, for tests of single controls.
    PageWindow(const QByteArray& source, const QVariantMap& properties, QSize size);
    ~PageWindow();
    Q_DISABLE_COPY_MOVE(PageWindow)

    QQuickWindow& window() { return *m_window; }
    /// The object shown; absent when it could not be made, which is among the warnings.
    QQuickItem* root() const { return m_root; }
    Theme& theme() { return m_theme; }

    /// What goes by `name`; absent when nothing to be seen does.
    QQuickItem* find(const QString& name) const;
    QList<QQuickItem*> findAll(const QString& name) const;
    /// All texts to be seen, from the top of the item tree to its end; what floats comes last.
    QStringList texts() const;
    bool isShown(const QString& text) const { return texts().contains(text); }

    /// Presses the middle of what goes by `name` with the mouse; fails the test where it is not.
    void click(const QString& name);
    void click(const QQuickItem* item);
    void hover(const QQuickItem* item);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& text);
    /// The accessible name, else the text, else the object name of what has the focus.
    QString focused() const;

    QImage grab();
    void save(const QString& path) { QVERIFY(grab().save(path)); }

    /// The warnings since the last call.
    QStringList takeWarnings() { return std::exchange(m_warnings, {}); }
    void verifyNoWarnings() { QCOMPARE(takeWarnings(), QStringList()); }

    FakeAppearance appearance;

private:
    void show(const QByteArray& source, const QVariantMap& properties, QSize size);

    Theme m_theme;
    QStringList m_warnings;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    QQuickItem* m_root = nullptr;
};

/// Adds a test class that shows windows.
#define TINDRA_UI_TEST(Test)                                                                       \
    TINDRA_TEST_MAIN(Test) {                                                                       \
        PageWindow::prepare();                                                                     \
        const QGuiApplication application(argc, argv);                                             \
        Test test;                                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
