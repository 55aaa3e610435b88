// SPDX-License-Identifier: MIT
// The search form in its states.
#include "screens/Screen.h"
#include "tests/support/AppWorld.h"
#include "ui/search/BoardingPassSearchCard.h"

using namespace Qt::StringLiterals;

namespace searchScreens {

constexpr QSize usual(1120, 880);
constexpr QSize least(880, 600);

BoardingPassSearchCard& showForm(Shot& shot) {
    auto& world = shot.make<AppWorld>();
    auto& form = shot.make<BoardingPassSearchCard>(world.state, world.clock);
    shot.show(u"Tindra.SearchFrame"_s, u"SearchFrame"_s, {{u"form"_s, QVariant::fromValue(&form)}});
    return form;
}

void warn(BoardingPassSearchCard& form) {
    form.destination()->setCode(u"JFK, EWR"_s);
    form.homebound()->setWindow({2027, 12, 28}, {2028, 2, 29});
    form.submit();
}

const Screen empty(u"search"_s, [](Shot& shot) { showForm(shot); });
const Screen preset(u"search-preset"_s, [](Shot& shot) { showForm(shot).usePreset(0); });
const Screen suggesting(u"search-suggestions"_s, [](Shot& shot) {
    BoardingPassSearchCard& form = showForm(shot);
    form.origin()->setCode(u"OSL, BGO"_s);
    form.destination()->setCode(u"JFK, EWR, "_s);
    shot.page().click(u"destinationInput"_s);
    shot.page().key(Qt::Key_End);
    shot.page().type(u"to"_s);
    shot.page().key(Qt::Key_Down);
});
const Screen warned(u"search-warning"_s, [](Shot& shot) {
    warn(showForm(shot));
    QTest::qWait(60);
});
const Screen past(u"search-past"_s, usual, [](Shot& shot) {
    BoardingPassSearchCard& form = showForm(shot);
    form.destination()->setCode(u"JFK, EWR"_s);
    form.outbound()->setWindow({2027, 1, 2}, {2027, 1, 5});
    form.submit();
    QTest::qWait(60);
});
const Screen oneWay(u"search-one-way"_s, usual, [](Shot& shot) {
    BoardingPassSearchCard& form = showForm(shot);
    form.setRoundTrip(false);
    form.cabins()->setCabins({});
});
const Screen oneWayNarrow(u"search-one-way"_s, least,
                          [](Shot& shot) { showForm(shot).setRoundTrip(false); });
const Screen picking(u"search-picker"_s, [](Shot& shot) {
    showForm(shot);
    shot.page().click(u"homebound"_s);
});
const Screen refused(u"search-picker-refused"_s, usual, [](Shot& shot) {
    BoardingPassSearchCard& form = showForm(shot);
    form.outbound()->setWindow({2028, 2, 3}, {2028, 2, 29});
    shot.page().click(u"outbound"_s);
    form.outbound()->typeTo(u"1.2.2028"_s);
});
const Screen options(u"search-options"_s, [](Shot& shot) {
    showForm(shot);
    shot.page().click(u"more"_s);
});
const Screen hardText(u"search-hard-text"_s, [](Shot& shot) {
    BoardingPassSearchCard& form = showForm(shot);
    form.origin()->setCode(u"مطار, שדה, <b>x</b>"_s);
    form.destination()->setCode(QStringList(500, u"JFK"_s).join(u", "_s));
    form.setName(u"שלום "_s + QString(5000, u'W'));
    shot.page().click(u"more"_s);
});

} // namespace searchScreens
