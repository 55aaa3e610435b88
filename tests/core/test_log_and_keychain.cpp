// SPDX-License-Identifier: MIT
#include "core/Keychain.h"
#include "core/TDLog.h"
#include "platform/MemorySecretStore.h"
#include "tests/support/ManualClock.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestLogAndKeychain : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLogOnlyGrows() {
        const QTemporaryDir dir;
        ManualClock clock(QDate(2026, 3, 14));
        QFile file(dir.path() + u"/ui.log"_s);
        TDLog::start(file.fileName(), &clock);
        TDLog::note(u"første – æøå"_s);
        clock.advance(std::chrono::milliseconds(61900));
        TDLog::note(u"to\nlinjer"_s);
        TDLog::start(dir.path() + u"/missing/ui.log"_s, &clock);
        TDLog::note(u"ingen steder"_s);
        TDLog::start({}, nullptr);
        TDLog::note(u"etterpå"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll()), u"2026-03-14T12:00:00Z første – æøå\n"
                                                    u"2026-03-14T12:01:01Z to\nlinjer\n"_s);
        QVERIFY(!QFile::exists(dir.path() + u"/missing"_s));
        QVERIFY(!(file.permissions() & (QFile::ReadGroup | QFile::ReadOther)));
    }

    void onlyWholeDetailsAreReturned() {
        MemorySecretStore secrets;
        Keychain keychain(secrets);
        QVERIFY(!*awaited(keychain.load()));
        const Credentials details{u"medlem@example.no"_s, u"på«ss\"\\ord 🛫"_s};
        awaited(keychain.save(details.user, details.password));
        QCOMPARE(*awaited(keychain.load()), details);
        QCOMPARE(secrets.items.keys(), QStringList{u"app.tindra.Tindra.eurobonus"_s});

        for (const QByteArray broken : {"\xff\xfe", "abc\xc3"}) {
            secrets.items.first().data = broken;
            QVERIFY(!*awaited(keychain.load()));
        }
        secrets.items.first().data = "\xef\xbb\xbfpw";
        QCOMPARE(awaited(keychain.load())->value().password, u"\ufeffpw"_s);
        awaited(keychain.saveCookieData("[]"));
        awaited(keychain.clear());
        QCOMPARE(secrets.items.keys(), QStringList{u"app.tindra.Tindra.sascookies"_s});
        QCOMPARE(secrets.items.first().account, u"cookies"_s);
        QCOMPARE(*awaited(keychain.loadCookieData()), QByteArray("[]"));
    }
};

TINDRA_TEST(TestLogAndKeychain)
#include "test_log_and_keychain.moc"
