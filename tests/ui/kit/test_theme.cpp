// SPDX-License-Identifier: MIT
#include "tests/ui/support/PageWindow.h"
#include "ui/theme/Contrast.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestTheme : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Against figures of the standard's own formula.
    void contrastIsTheStandards() {
        QCOMPARE(qRound(contrast(Qt::black, Qt::white) * 100), 2100);
        QCOMPARE(qRound(contrast(QColor(0x767676), Qt::white) * 100), 454);
        QCOMPARE(qRound(contrast(Qt::white, QColor(0x2C6BB3)) * 100), 544);
    }

    void everyTextCanBeRead_data() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void everyTextCanBeRead() {
        QFETCH(bool, dark);
        FakeAppearance appearance;
        appearance.setDark(dark);
        const Theme td(appearance);

        using Pair = std::pair<QColor, QColor>;
        QMap<QString, Pair> pairs{
            {u"panelText on panel"_s, {td.panelText(), td.panel()}},
            {u"peach on panel"_s, {td.peach(), td.panel()}},
            {u"ctaInk on peach"_s, {td.ctaInk(), td.peach()}},
            {u"onBrand on brand"_s, {td.onBrand(), td.brand()}},
            {u"success on successBg"_s, {td.success(), td.successBg()}},
            {u"card on text (tool tip)"_s, {td.card(), td.text()}},
            {u"undo bar"_s, {td.panelText(), td.raised()}},
            {u"undo bar's button"_s, {td.peach(), td.raised()}},
            {u"selected text"_s, {td.onAccent(), td.accent()}},
        };
        for (const QColor& end : td.heroGradient())
            pairs.insert(u"panelText on hero "_s + end.name(), {td.panelText(), end});
        const QMap<QString, QColor> grounds{{u"window"_s, td.window()},
                                            {u"card"_s, td.card()},
                                            {u"field"_s, td.field()},
                                            {u"sidebar"_s, td.sidebar()}};
        const QMap<QString, QColor> texts{
            {u"text"_s, td.text()},     {u"secondary"_s, td.textSecondary()},
            {u"brand"_s, td.brand()},   {u"tertiary"_s, td.textTertiary()},
            {u"accent"_s, td.accent()}, {u"success"_s, td.success()},
            {u"danger"_s, td.danger()}, {u"warn"_s, td.warn()},
        };
        for (auto ground = grounds.begin(); ground != grounds.end(); ++ground) {
            for (auto text = texts.begin(); text != texts.end(); ++text) {
                pairs.insert(text.key() + u" on "_s + ground.key(), {*text, *ground});
                pairs.insert(text.key() + u" badge on "_s + ground.key(),
                             {td.badgeText(*text, false), over(td.tint(*text, 0.14), *ground)});
                pairs.insert(text.key() + u" filled badge"_s, {td.badgeText(*text, true), *text});
            }
        }
        QStringList tooFaint;
        for (auto pair = pairs.begin(); pair != pairs.end(); ++pair)
            if (const double ratio = contrast(pair->first, pair->second); ratio < 4.5)
                tooFaint.append(u"%1: %2"_s.arg(pair.key()).arg(ratio));
        QVERIFY2(tooFaint.isEmpty(), qPrintable(tooFaint.join(u", "_s)));
    }

    void aColourStaysWhatItIsWhereItCanBeRead() {
        const QColor green(0x177343);
        QCOMPARE(readable(green, Qt::white), green);
        const QColor lighter = readable(green, QColor(0x14304A));
        QVERIFY(contrast(lighter, QColor(0x14304A)) >= 4.5);
        QVERIFY(qAbs(lighter.hslHue() - green.hslHue()) < 12);
        // There is no way out on a middle grey, but an end.
        QVERIFY(contrast(readable(QColor(0x777777), QColor(0x777777)), QColor(0x777777)) >= 4.5);
    }

    void theModeChangesWhileItRuns() {
        PageWindow page("import QtQuick\nimport Tindra.Theme\n"
                        "Rectangle { color: TD.card; border.width: TD.quick }",
                        {}, {200, 200});
        const auto colour = [&page] { return page.root()->property("color").value<QColor>(); };
        const auto duration = [&page] {
            return page.root()->property("border").value<QObject*>()->property("width").toInt();
        };
        QCOMPARE(colour(), QColor(0xFFFFFF));
        QCOMPARE(duration(), 0);
        page.appearance.setDark(true);
        QCOMPARE(colour(), QColor(0x1F242B));
        QCOMPARE(page.window().color(), page.theme().window());
        const QSignalSpy colours(&page.theme(), &Theme::coloursChanged);
        page.appearance.setReducesMotion(false);
        QCOMPARE(duration(), 150);
        QCOMPARE(page.theme().motion(200), 200);
        QCOMPARE(colours.size(), 0);
    }
};

TINDRA_UI_TEST(TestTheme)
#include "test_theme.moc"
