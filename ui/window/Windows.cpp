// SPDX-License-Identifier: MIT
#include "ui/window/Windows.h"

#include "ui/theme/Theme.h"
#include "ui/window/LifeCycle.h"
#include "ui/window/PanelPlacement.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QQuickItem>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

/// Shown with QT_LOGGING_RULES=tindra.window=true.
Q_LOGGING_CATEGORY(windowLog, "tindra.window", QtWarningMsg)

constexpr QSize leastSize{880, 600};

/// The ground shows before the content does, and round it while the window grows.
void paintGround(QQuickView& view, const Theme& theme) {
    const auto paint = [&view, &theme] { view.setColor(theme.window()); };
    QObject::connect(&theme, &Theme::coloursChanged, &view, paint);
    paint();
}

} // namespace

MainWindow::MainWindow(QQmlEngine& engine, LifeCycle& life, const Theme& theme,
                       const QVariantMap& properties)
    : QQuickView(&engine, nullptr), m_life(life) {
    setTitle(u"Tindra"_s);
    setResizeMode(SizeRootObjectToView);
    setMinimumSize(leastSize);
    // No larger than what is free, on a laptop's screen.
    resize(usualSize.boundedTo(screen()->availableSize()).expandedTo(leastSize));
    paintGround(*this, theme);
    setInitialProperties(properties);
    setSource(QUrl(u"qrc:/qt/qml/Tindra/Window/MainContent.qml"_s));
    connect(&life, &LifeCycle::windowShownChanged, this, &MainWindow::follow);
    connect(&life, &LifeCycle::raiseRequested, this, &MainWindow::raise);
    // On the thread that draws, so that a busy main thread does not delay it.
    connect(
        this, &QQuickWindow::frameSwapped, this, [] { qCDebug(windowLog) << "first frame"; },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
    follow();
}

bool MainWindow::event(QEvent* event) {
    if (event->type() != QEvent::Close)
        return QQuickView::event(event);
    event->ignore();
    m_life.closeWindow();
    return true;
}

void MainWindow::follow() {
    setVisible(m_life.isWindowShown());
}

void MainWindow::raise() {
    if (windowStates() & Qt::WindowMinimized)
        showNormal();
    QQuickView::raise();
    requestActivate();
}

PanelWindow::PanelWindow(QQmlEngine& engine, const Theme& theme, const QVariantMap& properties)
    : QQuickView(&engine, nullptr) {
    setTitle(u"Tindra"_s);
    setResizeMode(SizeViewToRootObject);
    paintGround(*this, theme);
    setInitialProperties(properties);
    setSource(QUrl(u"qrc:/qt/qml/Tindra/Window/MenuBarPanel.qml"_s));
    if (rootObject())
        connect(rootObject(), SIGNAL(done()), this, SLOT(hidePanel()));
    // What has changed while it was hidden is laid out when it is shown.
    connect(this, &QWindow::heightChanged, this, [this] {
        if (isVisible())
            putInPlace();
    });
}

void PanelWindow::toggle(std::optional<QPoint> place) {
    const QScreen* on = place ? screen()->virtualSiblingAt(*place) : nullptr;
    toggleAt(place, (on ? on : screen())->availableGeometry(), nullptr);
}

void PanelWindow::toggleIn(QWindow& window) {
    toggleAt({}, window.geometry(), &window);
}

void PanelWindow::toggleAt(std::optional<QPoint> place, const QRect& area, QWindow* window) {
    if (isVisible()) {
        hide();
        return;
    }
    // On Wayland a popup of another window is all that goes where it is put; on X11 one gets no
    // key presses.
    const bool isPopup = window && QGuiApplication::platformName().startsWith(u"wayland");
    setFlags((isPopup ? Qt::Popup : Qt::Tool) | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setTransientParent(window);
    m_place = place;
    m_area = area;
    putInPlace();
    show();
    raise();
    requestActivate();
}

void PanelWindow::putInPlace() {
    setPosition(panelPlacement(m_place, m_area, size()));
}

bool PanelWindow::event(QEvent* event) {
    const bool isEscape = event->type() == QEvent::KeyPress &&
                          static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (event->type() == QEvent::FocusOut || isEscape)
        hide();
    return QQuickView::event(event);
}
