// SPDX-License-Identifier: MIT
// The controls as a person uses them: with the keyboard, with the mouse, and by ear.
#include "tests/ui/support/PageWindow.h"
#include "ui/controls/MonthCalendar.h"

#include <QAccessible>
#include <QDir>

using namespace Qt::StringLiterals;

namespace {

/// A page of `content` that counts what is done to it in `log`.
QByteArray page(const QByteArray& content) {
    return "import QtQuick\nimport QtQuick.Layouts\nimport Tindra.Controls\nimport Tindra.Theme\n"
           "FocusScope { id: root\n property string log\n"
           "function note(what) { log += what + ' '; }\n" +
           content + "\n}";
}

QString log(const PageWindow& window) {
    return window.root()->property("log").toString().trimmed();
}

void open(const PageWindow& window) {
    QVERIFY(QMetaObject::invokeMethod(window.root()->findChild<QObject*>(u"popup"_s), "open"));
}

const QByteArray column = "Column { focus: true; spacing: 8; width: 400; ";

} // namespace

class TestControls : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everythingIsReachedNamedLargeEnoughAndShowsItsFocus() {
        MonthCalendar calendar;
        PageWindow window(u"Tindra.Gallery"_s, u"Gallery"_s,
                          {{u"calendar"_s, QVariant::fromValue(&calendar)},
                           {u"symbols"_s, QStringList{u"bell"_s}}},
                          {1120, 1500});
        QSet<QQuickItem*> seen;
        QStringList bad;
        const QImage before = window.grab();
        for (;;) {
            window.key(Qt::Key_Tab);
            QQuickItem* item = window.window().activeFocusItem();
            if (seen.contains(item))
                break;
            seen.insert(item);
            const QString what = u"%1 \"%2\""_s.arg(
                QString::fromLatin1(item->metaObject()->className()), window.focused());
            if (window.focused().isEmpty())
                bad.append(what + u" has no name"_s);
            const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(item);
            if (!accessible || accessible->role() == QAccessible::NoRole ||
                accessible->role() == QAccessible::Client)
                bad.append(what + u" has no role"_s);
            if (item->width() < 28 || item->height() < 28)
                bad.append(u"%1 is %2x%3"_s.arg(what).arg(item->width()).arg(item->height()));
            if (window.grab() == before)
                bad.append(what + u" shows no focus"_s);
        }
        QVERIFY2(bad.isEmpty(), qPrintable(bad.join(u'\n')));
        QVERIFY2(seen.size() > 25, qPrintable(QString::number(seen.size())));
    }

    // Qt tells screen readers the role of the template, not the one that is written in QML.
    void rolesReachScreenReaders() {
        const PageWindow window(page(column +
                                     "TDSegmented { label: 'A'; model: ['a', 'b']; width: 380 }"
                                     "TDRadioPills { label: 'B'; model: ['c', 'd'] }"
                                     "TDChip { text: 'e'; checkable: true } }"),
                                {}, {400, 300});
        const QList<std::pair<QString, QAccessible::Role>> wanted{
            {u"b"_s, QAccessible::RadioButton},
            {u"d"_s, QAccessible::RadioButton},
            {u"e"_s, QAccessible::CheckBox}};
        for (const auto& [name, role] : wanted) {
            QQuickItem* item = window.find(name);
            QVERIFY2(item, qPrintable(name));
            QCOMPARE(QAccessible::queryAccessibleInterface(item)->role(), role);
        }
    }

    void keysDoWhatTheMouseDoes_data() {
        QTest::addColumn<QByteArray>("control");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("done");
        QTest::newRow("button") << QByteArray("TDButton { text: 'A'; onClicked: root.note('A') }")
                                << QList<int>{Qt::Key_Return, Qt::Key_Space} << u"A A"_s;
        QTest::newRow("icon button")
            << QByteArray("TDIconButton { label: 'A'; symbol: 'bell'; onClicked: root.note('A') }")
            << QList<int>{Qt::Key_Enter} << u"A"_s;
        QTest::newRow("switch") << QByteArray(
                                       "TDSwitch { label: 'A'; onToggled: root.note(checked) }")
                                << QList<int>{Qt::Key_Space, Qt::Key_Space} << u"true false"_s;
        QTest::newRow("check box")
            << QByteArray("TDCheckBox { text: 'A'; onToggled: root.note(checked) }")
            << QList<int>{Qt::Key_Space} << u"true"_s;
        QTest::newRow("chip") << QByteArray("TDChip { text: 'A'; checkable: true; onClicked: "
                                            "root.note(checked) }")
                              << QList<int>{Qt::Key_Space, Qt::Key_Return} << u"true"_s;
        const QByteArray choice = "label: 'A'; model: ['a', 'b', 'c']; onPicked: i => root.note(i)";
        const QList<int> arrows{Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left};
        QTest::newRow("segmented")
            << "TDSegmented { " + choice + "; width: 380 }" << arrows << u"1 2 0 2"_s;
        QTest::newRow("pills") << "TDRadioPills { " + choice + " }" << arrows << u"1 2 0 2"_s;
        QTest::newRow("list") << QByteArray("TDComboBox { label: 'A'; model: ['a', 'b']; "
                                            "onActivated: i => root.note(i) }")
                              << QList<int>{Qt::Key_Space, Qt::Key_Down, Qt::Key_Return} << u"1"_s;
        QTest::newRow("stepper")
            << QByteArray("TDStepper { text: 'N: ' + value; from: 1; to: 3; value: 2; "
                          "onPicked: n => root.note(n) }")
            << QList<int>{Qt::Key_Up, Qt::Key_Up, Qt::Key_Left, Qt::Key_Down, Qt::Key_Down}
            << u"3 2 1"_s;
    }
    void keysDoWhatTheMouseDoes() {
        QFETCH(QByteArray, control);
        QFETCH(QList<int>, keys);
        PageWindow window(page(column + control + "}"), {}, {400, 300});
        window.key(Qt::Key_Tab);
        for (const int key : keys)
            window.key(static_cast<Qt::Key>(key));
        QTEST(log(window), "done");
    }

    void theMousePicks() {
        PageWindow window(page(column +
                               "TDSegmented { label: 'A'; model: ['a', 'b']; onPicked: i => "
                               "root.note(i) }"
                               "TDComboBox { label: 'L'; model: ['c', 'd', 'e']; onActivated: i => "
                               "root.note(i) }"
                               "TDStepper { text: 'N: ' + value; from: 0; to: 1; onPicked: n => "
                               "root.note(n) } }"),
                          {}, {400, 300});
        window.click(u"b"_s);
        window.click(u"b"_s);
        window.click(u"L"_s);
        window.click(u"e"_s);
        QVERIFY(window.isShown(u"e"_s) && !window.isShown(u"d"_s));
        window.click(u"Flere"_s);
        QVERIFY(!window.find(u"Flere"_s)->isEnabled());
        QVERIFY(window.isShown(u"N: 1"_s));
        QCOMPARE(log(window), u"1 2 1"_s);
    }

    void bindingsOutliveTheUsersChange() {
        PageWindow window(
            page("property bool on; property int n: 1; property string words: 'a'\n" + column +
                 "TDSwitch { label: 'Bryter'; checked: root.on; onToggled: root.on = checked }"
                 "TDCheckBox { text: 'Boks'; checked: root.on; onToggled: root.on = checked }"
                 "TDChip { text: 'Brikke'; checkable: true; checked: root.on; onToggled: root.on = "
                 "checked }"
                 "TDSegmented { objectName: 'n'; label: 'Valg'; model: ['x', 'y', 'z']; "
                 "currentIndex: root.n; onPicked: i => root.n = i }"
                 "TDComboBox { objectName: 'n'; label: 'Liste'; model: ['l', 'm', 'n']; "
                 "currentIndex: root.n; onActivated: i => root.n = i }"
                 "TDStepper { text: 'N: ' + value; value: root.n; onPicked: n => root.n = n }"
                 "TDTextField { placeholderText: 'Felt'; text: root.words; "
                 "onTextEdited: root.words = text } }"),
            {}, {400, 400});
        const auto areChecked = [&window](bool on) {
            for (const char16_t* name : {u"Bryter", u"Boks", u"Brikke"})
                if (window.find(QString::fromUtf16(name))->property("checked").toBool() != on)
                    return false;
            return true;
        };
        for (const char16_t* name : {u"Bryter", u"Boks", u"Brikke"}) {
            window.click(QString::fromUtf16(name));
            QVERIFY(areChecked(true));
            window.root()->setProperty("on", false);
            QVERIFY(areChecked(false));
        }
        const auto areAt = [&window](int n) {
            for (const QQuickItem* item : window.findAll(u"n"_s))
                if (item->property("currentIndex").toInt() != n)
                    return false;
            return window.isShown(u"N: %1"_s.arg(n));
        };
        window.click(u"z"_s);
        QVERIFY(areAt(2));
        window.click(u"Færre"_s);
        QVERIFY(areAt(1));
        window.click(window.findAll(u"n"_s)[1]);
        window.click(u"l"_s);
        QVERIFY(areAt(0));
        window.root()->setProperty("n", 2);
        QVERIFY(areAt(2));
        window.click(u"Felt"_s);
        window.type(u"b"_s);
        window.root()->setProperty("words", u"ny"_s);
        QVERIFY(window.isShown(u"ny"_s));
    }

    void thingsMoveWhereTheyMay() {
        PageWindow window(page("TDStatusDot { objectName: 'dot'; pulsing: true }\n"
                               "TDDialog { title: 'Slette?'; actionText: 'Slett'\n"
                               "objectName: 'popup' }"),
                          {}, {600, 400});
        const auto dimmed = [&window] { return window.find(u"dot"_s)->opacity() < 1; };
        QTest::qWait(100);
        QVERIFY(!dimmed());
        window.appearance.setReducesMotion(false);
        QTRY_VERIFY(dimmed());
        open(window);
        window.key(Qt::Key_Escape);
        QVERIFY(window.isShown(u"Slette?"_s));
        QTRY_VERIFY(!window.isShown(u"Slette?"_s));
        window.appearance.setReducesMotion(true);
        QVERIFY(!dimmed());
    }

    void aPopoverTakesTheFocusAndGivesItBack() {
        PageWindow window(page(column + "TDButton { text: 'Mer'; onClicked: more.open()\n"
                                        "TDPopover { id: more; label: 'Valg'\n"
                                        "TDTextField { placeholderText: 'Navn' } } }"
                                        "TDButton { text: 'Annet'; x: 300 } }"),
                          {}, {400, 300});
        window.key(Qt::Key_Tab);
        window.key(Qt::Key_Space);
        QVERIFY(window.isShown(u"Navn"_s));
        window.key(Qt::Key_Tab);
        window.type(u"abc"_s);
        QVERIFY(window.isShown(u"abc"_s));
        window.key(Qt::Key_Escape);
        QVERIFY(!window.isShown(u"abc"_s));
        QCOMPARE(window.focused(), u"Mer"_s);
        QVERIFY(window.find(u"Mer"_s)->property("visualFocus").toBool());
        // A press elsewhere closes it as well, and means what it is on.
        window.click(u"Mer"_s);
        QTest::mouseClick(&window.window(), Qt::LeftButton, Qt::NoModifier, {390, 290});
        QVERIFY(!window.find(u"Valg"_s));
    }

    void aDialogIsAnsweredOrLeft() {
        PageWindow window(
            page(column +
                 "TDButton { text: 'Åpne'; onClicked: ask.open() } }"
                 "TDDialog { id: ask; title: 'Gi nytt navn'; message: 'Navnet vises.'\n"
                 "actionText: 'Lagre'; actionEnabled: name.text !== ''; initialFocus: name\n"
                 "onAccepted: root.note(name.text); onRejected: root.note('-')\n"
                 "TDTextField { id: name; placeholderText: 'Navn' } }"),
            {}, {600, 400});
        window.click(u"Åpne"_s);
        // It starts in its field, and the keyboard cannot leave it.
        QCOMPARE(window.focused(), u"Navn"_s);
        window.key(Qt::Key_Return);
        QVERIFY(window.isShown(u"Navnet vises."_s));
        window.type(u"Ferie"_s);
        QSet<QString> reached;
        for (int i = 0; i < 8; ++i) {
            window.key(Qt::Key_Tab);
            reached.insert(window.focused());
        }
        QCOMPARE(reached, (QSet<QString>{u"Navn"_s, u"Avbryt"_s, u"Lagre"_s}));
        // What is behind it cannot be pressed.
        QTest::mouseClick(&window.window(), Qt::LeftButton, Qt::NoModifier, {10, 390});
        QVERIFY(window.isShown(u"Navnet vises."_s));
        window.find(u"Navn"_s)->forceActiveFocus();
        window.key(Qt::Key_Return);
        QCOMPARE(log(window), u"Ferie"_s);
        QCOMPARE(window.focused(), u"Åpne"_s);

        window.click(u"Åpne"_s);
        window.key(Qt::Key_Escape);
        window.click(u"Åpne"_s);
        window.click(u"Avbryt"_s);
        window.click(u"Åpne"_s);
        window.click(u"Lagre"_s);
        QCOMPARE(log(window), u"Ferie - - Ferie"_s);
    }

    void aDangerousQuestionStartsAtTheWayOut() {
        PageWindow window(page("TDDialog { id: ask; title: 'Slette?'; actionText: 'Slett'\n"
                               "destructive: true; objectName: 'popup'\n"
                               "onAccepted: root.note('gone'); onRejected: root.note('kept')\n"
                               "TDButton { text: 'Avslutt'; onClicked: root.note('ended') } }"),
                          {}, {600, 400});
        open(window);
        QCOMPARE(window.focused(), u"Avbryt"_s);
        window.key(Qt::Key_Return);
        QCOMPARE(log(window), u"kept"_s);
    }

    void aSheetScrollsAndIsSubmitted() {
        PageWindow window(
            page("TDSheet { id: sheet; title: 'Rediger'; objectName: 'popup'\n"
                 "onSubmitted: root.note('saved')\n"
                 "Repeater { model: 20; TDTextField { required property int index;\n"
                 "placeholderText: 'Felt ' + index } }\n"
                 "buttons: [TDButton { text: 'Avbryt'; onClicked: sheet.close() }] }"),
            {}, {600, 400});
        open(window);
        window.key(Qt::Key_Tab);
        QCOMPARE(window.focused(), u"Felt 0"_s);
        window.key(Qt::Key_Return);
        QCOMPARE(log(window), u"saved"_s);
        // What the keyboard reaches comes into view.
        window.key(Qt::Key_Backtab);
        window.key(Qt::Key_Backtab);
        QCOMPARE(window.focused(), u"Felt 19"_s);
        QQuickItem* last = window.find(u"Felt 19"_s);
        QVERIFY(last->mapToScene(QPointF(0, last->height())).y() < 340);
        window.click(u"Avbryt"_s);
        QVERIFY(!window.isShown(u"Rediger"_s));
    }

    void aPageScrollsWithKeysAndKeepsItsPlace() {
        PageWindow window(page("property int count: 30\n"
                               "TDScrollPage { id: scroller; objectName: 'page'; focus: true\n"
                               "anchors.fill: parent; title: 'Treff'\n"
                               "Repeater { model: root.count; TDButton { required property int "
                               "index; text: 'Knapp ' + index } } }"),
                          {}, {400, 300});
        const auto at = [&window] { return window.find(u"page"_s)->property("contentY").toInt(); };
        window.key(Qt::Key_PageDown);
        QCOMPARE(at(), 252);
        window.key(Qt::Key_Up);
        QCOMPARE(at(), 204);
        window.root()->setProperty("count", 60);
        window.grab();
        QCOMPARE(at(), 204);
        window.key(Qt::Key_End);
        const int end = at();
        window.key(Qt::Key_Down);
        QCOMPARE(at(), end);
        QVERIFY(end > 2500);
        window.key(Qt::Key_Home);
        QCOMPARE(at(), 0);
        for (int i = 0; i < 12; ++i)
            window.key(Qt::Key_Tab);
        QCOMPARE(window.focused(), u"Knapp 11"_s);
        QVERIFY(at() > 200);
        // Fewer things than before: the page does not hang in the void.
        window.key(Qt::Key_End);
        window.root()->setProperty("count", 10);
        window.grab();
        QTRY_VERIFY(at() < 300);
    }

    void whatWasDoneCanBeUndoneForAWhile() {
        PageWindow window(page("TDUndoBar { objectName: 'bar'; timeout: 60\n"
                               "onUndone: root.note('undone'); onExpired: root.note('expired') }"),
                          {}, {400, 300});
        QObject* bar = window.root()->findChild<QObject*>(u"bar"_s);
        const auto show = [bar] {
            QMetaObject::invokeMethod(bar, "show", Q_ARG(QString, u"Slettet."_s));
        };
        show();
        QVERIFY(window.isShown(u"Slettet."_s));
        QTRY_COMPARE(log(window), u"expired"_s);
        QVERIFY(!window.isShown(u"Slettet."_s));
        bar->setProperty("timeout", 60000);
        show();
        window.click(u"Angre"_s);
        QCOMPARE(log(window), u"expired undone"_s);
        // It does not go while the pointer is on it.
        show();
        window.hover(window.find(u"Slettet."_s));
        bar->setProperty("timeout", 20);
        QTest::qWait(150);
        QVERIFY(window.isShown(u"Slettet."_s));
        QTest::mouseMove(&window.window(), {5, 5});
        QTRY_COMPARE(log(window), u"expired undone expired"_s);
    }

    void aToolTipComesAfterAWhile() {
        PageWindow window(page("TDIconButton { label: 'Slett…'; symbol: 'trash'; y: 100 }"), {},
                          {400, 300});
        window.hover(window.find(u"Slett…"_s));
        QVERIFY(!window.isShown(u"Slett…"_s));
        QTRY_VERIFY(window.isShown(u"Slett…"_s));
    }

    void figuresAreEquallyWideWhateverTheirDigits() {
        PageWindow window(page("TDFigures { objectName: 'a'; text: '11:11' }\n"
                               "TDFigures { objectName: 'b'; text: '20:48' }"),
                          {}, {400, 300});
        QCOMPARE(window.find(u"a"_s)->width(), window.find(u"b"_s)->width());
        QCOMPARE(window.texts(), (QStringList{u"11:11"_s, u"20:48"_s}));
    }

    void everySymbolIsDrawnInItsColour() {
        const QStringList files = QDir(u":/icons"_s).entryList({u"*.svg"_s});
        QVERIFY(files.size() >= 31);
        QByteArray icons = "Flow { width: 400; ";
        for (const QString& file : files)
            icons += "TDIcon { objectName: name; name: '" + file.chopped(4).toUtf8() +
                     "'; color: '#ff0000'; size: 24 } ";
        PageWindow window(page(icons + "}"), {}, {400, 300});
        const QImage image = window.grab();
        for (const QString& file : files) {
            const QQuickItem* icon = window.find(file.chopped(4));
            QVERIFY2(icon, qPrintable(file));
            const QRect place(icon->mapToScene({0, 0}).toPoint(), QSize(24, 24));
            bool red = file == u"tindra.svg"_s;
            for (int i = 0; i < 24 * 24 && !red; ++i)
                red = image.pixelColor(place.topLeft() + QPoint(i % 24, i / 24)).green() < 60;
            QVERIFY2(red, qPrintable(file));
        }
    }

    void theWindowTellsOfEveryWarning() {
        PageWindow window(page("TDIcon { name: 'no.such.symbol' }\n"
                               "TDLabel { text: root.nothing.there }"),
                          {}, {400, 300});
        const QString warnings = window.takeWarnings().join(u'\n');
        QVERIFY2(warnings.contains(u"no.such.symbol"_s), qPrintable(warnings));
        QVERIFY2(warnings.contains(u"'there' of undefined"_s), qPrintable(warnings));
        QVERIFY(!window.find(u"no such thing"_s));
    }
};

TINDRA_UI_TEST(TestControls)
#include "test_controls.moc"
