// SPDX-License-Identifier: MIT
// Every control of the kit, in its states.
#include "screens/Screen.h"
#include "ui/controls/MonthCalendar.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace galleryScreens {

void showGallery(Shot& shot) {
    auto& calendar = shot.make<MonthCalendar>();
    calendar.setToday({2026, 11, 22});
    calendar.setMinimum({2026, 11, 10});
    calendar.setWindow({2026, 11, 23}, {2026, 12, 2});
    QStringList symbols;
    for (const QString& file : QDir(u":/icons"_s).entryList({u"*.svg"_s}))
        symbols.append(file.chopped(4));
    shot.show(u"Tindra.Gallery"_s, u"Gallery"_s,
              {{u"calendar"_s, QVariant::fromValue(&calendar)}, {u"symbols"_s, symbols}});
}

const Screen controls(u"gallery"_s, showGallery);
const Screen wholeGallery(u"gallery-all"_s, QSize(1120, 1500), showGallery);
const Screen popover(u"gallery-popover"_s, QSize(1120, 880), [](Shot& shot) {
    showGallery(shot);
    shot.page().click(u"Flere valg"_s);
});
const Screen list(u"gallery-list"_s, QSize(1120, 880), [](Shot& shot) {
    showGallery(shot);
    shot.page().click(u"Overvåker"_s);
});
const Screen dialog(u"gallery-dialog"_s, QSize(880, 600), [](Shot& shot) {
    showGallery(shot);
    shot.page().click(u"Gi nytt navn…"_s);
});
const Screen confirmation(u"gallery-confirmation"_s, QSize(880, 600), [](Shot& shot) {
    showGallery(shot);
    shot.page().click(u"Slett…"_s);
});
const Screen sheet(u"gallery-sheet"_s, QSize(880, 600), [](Shot& shot) {
    showGallery(shot);
    shot.page().click(u"Rediger…"_s);
});

} // namespace galleryScreens
