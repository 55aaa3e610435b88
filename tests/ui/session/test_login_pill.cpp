// SPDX-License-Identifier: MIT
#include "core/Database.h"
#include "tests/support/ManualClock.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/session/SessionModel.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestLoginPill : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "Europe/Oslo"); }

    void whatIsKnownIsSaid() {
        const QTemporaryDir dir;
        // Noon of 15 January 2027, UTC.
        ManualClock clock;
        Database database(dir.path(), clock);
        SessionState session;
        StandBack standBack(database.safekeeping(), clock);
        int opened = 0;
        int tries = 0;
        SessionModel pill(session, standBack, {[&opened] { ++opened; }, [&tries] { ++tries; }});
        PageWindow page("import QtQuick\nimport Tindra.Session\nColumn { id: all\n"
                        "required property SessionModel model\n"
                        "SASLoginPill { model: all.model; width: 300 }\n"
                        "LoginBanner { model: all.model; width: 600 }\n"
                        "LoginWarningCard { model: all.model; width: 190 } }",
                        {{u"model"_s, QVariant::fromValue(&pill)}}, {640, 300});
        const auto shown = [&page] { return page.texts(); };
        const auto alone = [](const QString& text) { return QStringList{text}; };

        QCOMPARE(shown(), alone(u"Innlogging hos SAS ikke bekreftet ennå"_s));
        session.setLoginStatus(SASLoginStatus::checking());
        QCOMPARE(shown(), alone(u"Sjekker innlogging hos SAS…"_s));
        // 2027-01-15 13:05 UTC, in winter.
        session.setLoginStatus(SASLoginStatus::loggedIn(instantFromSeconds(1800018300)));
        QCOMPARE(shown(), alone(u"Innlogget hos SAS · 14:05"_s));
        // Confirmed again: the time follows.
        session.setLoginStatus(SASLoginStatus::loggedIn(instantFromSeconds(1800018360)));
        QCOMPARE(shown(), alone(u"Innlogget hos SAS · 14:06"_s));

        session.setSiteUnreachable(true);
        QCOMPARE(shown(), alone(u"Får ikke kontakt med SAS"_s));
        QCOMPARE(pill.warning(), u"Får ikke kontakt med SAS — prøver igjen snart"_s);
        // Perhaps it can be reached again.
        session.setLoginStatus(SASLoginStatus::checking());
        QCOMPARE(shown(), alone(u"Sjekker innlogging hos SAS…"_s));
        QCOMPARE(pill.warning(), QString());
        session.setLoginStatus(SASLoginStatus::loggedIn(instantFromSeconds(1800018360)));
        session.setSiteUnreachable(false);
        QCOMPARE(shown(), alone(u"Innlogget hos SAS · 14:06"_s));

        standBack.refuse(u"1800"_s, 429);
        QCOMPARE(shown().count(u"SAS ber oss vente til 13:30"_s), 3);
        QCOMPARE(pill.warning(), u"SAS ber oss vente til 13:30 — jakten hviler så lenge"_s);
        page.click(u"Prøv nå"_s);
        QCOMPARE(tries, 1);
        clock.advance(30min);
        QCOMPARE(shown(), alone(u"Innlogget hos SAS · 14:06"_s));

        // Signed out comes first: there the user can do something.
        standBack.refuse({}, 429);
        session.setLoginStatus(SASLoginStatus::loggedOut());
        QCOMPARE(shown().count(u"Ikke innlogget hos SAS"_s), 3);
        page.click(u"Logg inn på SAS"_s);
        page.click(u"Logg inn nå"_s);
        QCOMPARE(opened, 2);
    }
};

TINDRA_UI_TEST(TestLoginPill)
#include "test_login_pill.moc"
