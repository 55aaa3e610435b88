// SPDX-License-Identifier: MIT
#include "tests/ui/support/PageWindow.h"

#include "ui/controls/Controls.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickItem>

using namespace Qt::StringLiterals;

namespace {

/// A text drawn digit by digit.
bool isFigures(const QQuickItem* item) {
    return QByteArrayView(item->metaObject()->className()).startsWith("TDFigures");
}

/// The text that `item` itself draws; absent for what draws none.
std::optional<QString> drawnText(const QQuickItem* item) {
    if (isFigures(item))
        return item->property("text").toString();
    if (item->parentItem() && isFigures(item->parentItem()))
        return {};
    // What is typed shows as bullets in a password field.
    if (item->inherits("QQuickTextInput"))
        return item->property("displayText").toString();
    if (item->inherits("QQuickText") || item->inherits("QQuickTextEdit"))
        return item->property("text").toString();
    return {};
}

QString accessibleName(QQuickItem* item) {
    const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(item);
    return interface ? interface->text(QAccessible::Name) : QString();
}

/// Calls `visit` with `item` and what is in it, in the order in which it is drawn.
void walk(QQuickItem* item, const std::function<void(QQuickItem*)>& visit) {
    if (!item->isVisible() || item->opacity() == 0)
        return;
    visit(item);
    for (QQuickItem* child : item->childItems())
        walk(child, visit);
}

} // namespace

void PageWindow::prepare() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    prepareInterface();
}

PageWindow::PageWindow(const QString& module, const QString& type, const QVariantMap& properties,
                       QSize size)
    : m_theme(appearance) {
    show("import " + module.toUtf8() + "\n" + type.toUtf8() + " {}", properties, size);
}

PageWindow::PageWindow(const QByteArray& source, const QVariantMap& properties, QSize size)
    : m_theme(appearance) {
    show(source, properties, size);
}

PageWindow::~PageWindow() {
    delete m_root;
    for (const QString& warning : std::as_const(m_warnings))
        QTest::qFail(qPrintable(warning), __FILE__, __LINE__);
}

void PageWindow::show(const QByteArray& source, const QVariantMap& properties, QSize size) {
    m_engine.setOutputWarningsToStandardError(false);
    QObject::connect(&m_engine, &QQmlEngine::warnings, &m_engine,
                     [this](const QList<QQmlError>& errors) {
                         for (const QQmlError& error : errors)
                             m_warnings.append(error.toString());
                     });
    setUpEngine(m_engine, m_theme);
    QQmlComponent component(&m_engine);
    component.setData(source, QUrl(u"qrc:/test.qml"_s));
    QObject* object =
        component.isReady() ? component.createWithInitialProperties(properties) : nullptr;
    for (const QQmlError& error : component.errors())
        m_warnings.append(error.toString());
    if (!object)
        qFatal("%s", qPrintable(m_warnings.join(u'\n')));
    m_root = qobject_cast<QQuickItem*>(object);
    m_window.reset(qobject_cast<QQuickWindow*>(object));
    if (!m_window)
        m_window = std::make_unique<QQuickWindow>();
    m_window->setColor(m_theme.window());
    QObject::connect(&m_theme, &Theme::coloursChanged, m_window.get(),
                     [this] { m_window->setColor(m_theme.window()); });
    m_window->resize(size);
    if (m_root) {
        m_root->setParentItem(m_window->contentItem());
        m_root->setSize(size);
        m_root->setFocus(true);
    }
    m_window->show();
    m_window->requestActivate();
    if (!QTest::qWaitForWindowActive(m_window.get(), 5000))
        m_warnings.append(u"the window did not become active"_s);
}

QList<QQuickItem*> PageWindow::findAll(const QString& name) const {
    QList<QQuickItem*> byObject;
    QList<QQuickItem*> byAccessible;
    QList<QQuickItem*> byText;
    walk(m_window->contentItem(), [&](QQuickItem* item) {
        if (item->objectName() == name)
            byObject.append(item);
        else if (accessibleName(item) == name)
            byAccessible.append(item);
        else if (drawnText(item) == name)
            byText.append(item);
    });
    return !byObject.isEmpty() ? byObject : !byAccessible.isEmpty() ? byAccessible : byText;
}

QQuickItem* PageWindow::find(const QString& name) const {
    return findAll(name).value(0);
}

QStringList PageWindow::texts() const {
    QStringList found;
    walk(m_window->contentItem(), [&found](const QQuickItem* item) {
        if (const auto text = drawnText(item); text && !text->isEmpty() && item->width() > 0)
            found.append(*text);
    });
    return found;
}

void PageWindow::click(const QString& name) {
    const QQuickItem* item = find(name);
    QVERIFY2(item, qPrintable(u"nothing is called "_s + name + u"; there is: "_s +
                              texts().join(u" | "_s)));
    click(item);
}

void PageWindow::click(const QQuickItem* item) {
    // What the last event has shown gets its place first.
    grab();
    const QPointF middle(item->width() / 2, item->height() / 2);
    const QPoint at = item->mapToScene(middle).toPoint();
    QVERIFY2(QRect(QPoint(), m_window->size()).contains(at), "it is outside of the window");
    QTest::mouseClick(m_window.get(), Qt::LeftButton, Qt::NoModifier, at);
}

void PageWindow::hover(const QQuickItem* item) {
    grab();
    const QPointF middle(item->width() / 2, item->height() / 2);
    QTest::mouseMove(m_window.get(), item->mapToScene(middle).toPoint());
}

void PageWindow::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(m_window.get(), key, modifiers);
}

void PageWindow::type(const QString& text) {
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, m_window.get(), Qt::Key_unknown, letter, Qt::NoModifier);
}

QString PageWindow::focused() const {
    QQuickItem* item = m_window->activeFocusItem();
    if (!item)
        return {};
    const QString name = accessibleName(item);
    return !name.isEmpty() ? name : item->objectName();
}

QImage PageWindow::grab() {
    // What the last event changed is laid out before the picture is taken.
    QCoreApplication::processEvents();
    return m_window->grabWindow();
}
