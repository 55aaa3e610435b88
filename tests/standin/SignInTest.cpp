// SPDX-License-Identifier: MIT
#include "standin/StandIn.h"
#include "tests/support/TestProgram.h"

#include "Client.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace standin;

namespace {

const QString idp = StandIn::idpHost();
const QString loginPage = QStringLiteral("/auth/login?ui_locales=nb&returnTo=%2F");
const QString demoUser = SignInOptions().user;
const QString demoPassword = SignInOptions().password;

const QString identifierStep = idp + QStringLiteral("/u/login/identifier");
const QString callbackStep = site + QStringLiteral("/auth/callback");
const QString startStep = site + QStringLiteral("/");

SignInOptions required() {
    SignInOptions options;
    options.isRequired = true;
    return options;
}

// The form's own address, with the mark of this visitor's flow.
QString formTarget(const QString& path, const Client::Reply& form) {
    static const QRegularExpression mark(QStringLiteral("data-state=\"(\\w+)\""));
    return path + QStringLiteral("?state=") + mark.match(QString::fromUtf8(form.body)).captured(1);
}

// A visitor who fills in what the page shows, with the token that it gets.
Client::Reply submit(Client& client, const Client::Reply& form) {
    const bool isPassword = form.body.contains("id=\"password\"");
    const QString target = formTarget(isPassword ? QStringLiteral("/u/login/password")
                                                 : QStringLiteral("/u/login/identifier"),
                                      form);
    const QString mark = target.section(u'=', 1);
    const QByteArray token = client.get(idp, QStringLiteral("/challenge?state=") + mark).body;
    client.visited.clear();
    return client.follow(
        client.post(idp, target,
                    {{QStringLiteral("captcha"), QString::fromUtf8(token).remove(u'"')},
                     {QStringLiteral("username"), demoUser},
                     isPassword ? std::pair{QStringLiteral("password"), demoPassword}
                                : std::pair{QStringLiteral("help"), QString()},
                     {QStringLiteral("action"), QStringLiteral("default")}}),
        idp);
}

Client::Reply signIn(Client& client) {
    return submit(client, submit(client, client.browse(site, loginPage)));
}

bool seesOffers(Client& client) {
    return client.get(site, searchPage).body.contains("search.js") &&
           client.get(site, offers).status == 200;
}

} // namespace

class SignInTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void offersNeedASession();
    void sessionsExpire();
    void signInOnTheSiteItself();
    void sessionsSurviveARestart();
};

void SignInTest::offersNeedASession() {
    StandIn standIn({.signIn = required()});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const QByteArray shown = client.get(site, searchPage).body;
    QVERIFY(shown.contains("/auth/login") && !shown.contains("search.js"));
    QCOMPARE(client.get(site, offers).status, 401);
    QCOMPARE(standIn.looks(QStringLiteral("OSL-BKK-20270301")), 0);
    QCOMPARE(standIn.counters().signInPages, 1);

    const QByteArray visitorSession = client.jar[site].value("session");
    const Client::Reply last = signIn(client);
    QCOMPARE(client.visited,
             (QStringList{idp + QStringLiteral("/authorize/resume"), callbackStep, startStep}));
    QVERIFY(last.status == 200 && last.body.contains(demoUser.toUtf8()));
    QVERIFY(client.jar[site].value("session") != visitorSession);
    QVERIFY(seesOffers(client));
    QCOMPARE(standIn.counters().passwordSignIns, 1);

    Client stranger(standIn.port());
    stranger.jar[site]["session"] = "guess";
    QVERIFY(!seesOffers(stranger));
}

void SignInTest::sessionsExpire() {
    std::atomic<qint64> now = 1'800'000'000;
    SignInOptions options = required();
    options.siteSession = std::chrono::seconds(100);
    options.ssoSession = std::chrono::seconds(1000);
    StandIn standIn({.signIn = options, .now = [&now] { return now.load(); }});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    signIn(client);
    now += 99;
    QVERIFY(seesOffers(client));
    now += 1;
    QVERIFY(!seesOffers(client));

    // Each use begins the life of single sign-on anew.
    now += 800;
    client.browse(site, loginPage);
    QVERIFY(seesOffers(client));
    now += 999;
    client.browse(site, loginPage);
    QVERIFY(seesOffers(client));
    now += 1000;
    client.browse(site, loginPage);
    QCOMPARE(client.visited.last(), identifierStep);
    QVERIFY(!seesOffers(client));
}

void SignInTest::signInOnTheSiteItself() {
    StandIn standIn({.signIn = required()});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const auto fillIn = [&](const QString& password) {
        static const QRegularExpression action(
            QStringLiteral("<form method=\"POST\" action=\"([^\"]+)\">"));
        const QString page = QString::fromUtf8(client.get(site, searchPage).body);
        const QString target =
            action.match(page).captured(1).replace(QStringLiteral("&amp;"), QStringLiteral("&"));
        client.visited.clear();
        client.follow(client.post(site, target,
                                  {{QStringLiteral("username"), demoUser},
                                   {QStringLiteral("password"), password}}),
                      site);
    };
    fillIn(QStringLiteral("wrong"));
    QCOMPARE(client.visited.last(), identifierStep);
    QVERIFY(standIn.counters().rejectedPasswords == 1 && !seesOffers(client));
    fillIn(demoPassword);
    QCOMPARE(client.visited, QStringList{startStep});
    QVERIFY(standIn.counters().passwordSignIns == 1 && seesOffers(client));

    // It has no challenge to solve.
    SignInOptions options = required();
    options.isChallengeRequired = true;
    standIn.setSignIn(options);
    standIn.expireSiteSession();
    fillIn(demoPassword);
    QCOMPARE(client.visited.last(), identifierStep);
    QVERIFY(!seesOffers(client));
}

void SignInTest::sessionsSurviveARestart() {
    QTemporaryDir folder;
    const Options options{.stateFile = folder.filePath(QStringLiteral("state.json")),
                          .signIn = required()};
    QMap<QString, QMap<QByteArray, QByteArray>> jar;
    {
        StandIn standIn(options);
        QVERIFY(!standIn.start());
        Client client(standIn.port());
        signIn(client);
        jar = client.jar;
    }
    StandIn standIn(options);
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    client.jar = jar;
    QVERIFY(seesOffers(client));
    client.browse(site, loginPage);
    QCOMPARE(standIn.counters().silentSignIns, 1);
}

TINDRA_TEST(SignInTest)
#include "SignInTest.moc"
