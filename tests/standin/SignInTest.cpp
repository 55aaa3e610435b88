// SPDX-License-Identifier: MIT
#include "standin/StandIn.h"
#include "tests/support/TestProgram.h"

#include "Client.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace standin;
using Challenge = SignInOptions::Challenge;
using Trouble = SignInOptions::Trouble;

namespace {

const QString idp = StandIn::idpHost();
const QString loginPage = QStringLiteral("/auth/login?ui_locales=nb&returnTo=%2F");
const QString demoUser = SignInOptions().user;
const QString demoPassword = SignInOptions().password;

const QString identifierStep = idp + QStringLiteral("/u/login/identifier");
const QString passwordStep = idp + QStringLiteral("/u/login/password");
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

// A visitor who fills in what the page shows, with the token if there is one to get.
Client::Reply submit(Client& client, const Client::Reply& form, const QString& user,
                     const QString& password, bool withToken = true) {
    const bool isPassword = form.body.contains("id=\"password\"");
    const QString target = formTarget(isPassword ? QStringLiteral("/u/login/password")
                                                 : QStringLiteral("/u/login/identifier"),
                                      form);
    QString token;
    if (withToken) {
        const QString mark = target.section(u'=', 1);
        const QByteArray answer = client.get(idp, QStringLiteral("/challenge?state=") + mark).body;
        token = QString::fromUtf8(answer).remove(u'"');
    }
    client.visited.clear();
    return client.follow(client.post(idp, target,
                                     {{QStringLiteral("captcha"), token},
                                      {QStringLiteral("username"), user},
                                      isPassword ? std::pair{QStringLiteral("password"), password}
                                                 : std::pair{QStringLiteral("help"), QString()},
                                      {QStringLiteral("action"), QStringLiteral("default")}}),
                         idp);
}

Client::Reply signIn(Client& client, const QString& user = demoUser,
                     const QString& password = demoPassword) {
    Client::Reply form = client.browse(site, loginPage);
    form = submit(client, form, user, password);
    return submit(client, form, user, password);
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
    void formsAreAsPageScriptsExpect();
    void anyPasswordArrivesUnchanged();
    void wrongPasswordShowsAMessage();
    void ssoSkipsTheForms();
    void sessionsExpire();
    void ssoWithoutOffers();
    void challengeMustBeSolved();
    void signInOnTheSiteItself();
    void searchPageThatAsksEverybody();
    void troublesOfTheProvider();
    void forgedReturnsAreRefused();
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

void SignInTest::formsAreAsPageScriptsExpect() {
    StandIn standIn({});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const Client::Reply identifier = client.browse(site, loginPage);
    QCOMPARE(client.visited, (QStringList{idp + QStringLiteral("/authorize"), identifierStep}));
    QVERIFY(identifier.body.contains("<input id=\"username\" name=\"username\" type=\"text\""));
    QVERIFY(identifier.body.contains("name=\"action\" value=\"default\""));
    QVERIFY(identifier.body.contains("ulp-input-error-message\">#{error"));
    QVERIFY(!identifier.body.contains("id=\"password\""));
    const Client::Reply password = submit(client, identifier, demoUser, {});
    QCOMPARE(client.visited, QStringList{passwordStep});
    QVERIFY(password.body.contains("<input id=\"password\" name=\"password\" type=\"password\""));
    QVERIFY(password.body.contains("<input type=\"hidden\" id=\"username\""));
    for (const char* file : {"/idp.css", "/idp.js"})
        QCOMPARE(client.get(idp, QLatin1String(file)).status, 200);
    for (const char* cookie : {"flow", "did", "_ga"})
        QVERIFY2(client.jar[idp].contains(cookie), cookie);
}

void SignInTest::anyPasswordArrivesUnchanged() {
    const QString user = QStringLiteral("Åse+\"O'Hara\"@example.no");
    const QString password = QString::fromUtf8(R"( a&b=c+d%41 "quoted" \back\ <ø> 鍵🔑; )");
    SignInOptions options = required();
    options.user = user;
    options.password = password;
    StandIn standIn({.signIn = options});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    signIn(client, user, password);
    QCOMPARE(standIn.lastUser(), user);
    QCOMPARE(standIn.lastPassword(), password);
    QVERIFY(seesOffers(client));
}

void SignInTest::wrongPasswordShowsAMessage() {
    StandIn standIn({.signIn = required()});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const Client::Reply again = signIn(client, demoUser, QStringLiteral("<wrong>"));
    static const QRegularExpression message(QStringLiteral(
        "<span id=\"error-element-password\" class=\"ulp-input-error-message\">[^<#]+</span>"));
    QVERIFY(message.match(QString::fromUtf8(again.body)).hasMatch());
    QCOMPARE(standIn.counters().rejectedPasswords, 1);
    QCOMPARE(standIn.lastPassword(), QStringLiteral("<wrong>"));
    QVERIFY(!seesOffers(client));
    submit(client, again, demoUser, demoPassword);
    QVERIFY(seesOffers(client));
    // The right password does not help another user.
    Client other(standIn.port());
    signIn(other, QStringLiteral("other"));
    QVERIFY(!seesOffers(other));
}

void SignInTest::ssoSkipsTheForms() {
    StandIn standIn({.signIn = required()});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    signIn(client);
    standIn.expireSiteSession();
    QVERIFY(!seesOffers(client));
    const int forms = standIn.counters().forms;
    client.browse(site, loginPage);
    QCOMPARE(client.visited,
             (QStringList{idp + QStringLiteral("/authorize"), callbackStep, startStep}));
    QVERIFY(seesOffers(client));
    QCOMPARE(standIn.counters().silentSignIns, 1);
    QCOMPARE(standIn.counters().forms, forms);

    standIn.expireSso();
    client.browse(site, loginPage);
    QCOMPARE(client.visited.last(), identifierStep);
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

void SignInTest::ssoWithoutOffers() {
    SignInOptions options = required();
    options.isSsoWithoutOffers = true;
    StandIn standIn({.signIn = options});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    signIn(client);
    QVERIFY(seesOffers(client));
    QVERIFY(client.browse(site, loginPage).body.contains(demoUser.toUtf8()));
    QVERIFY(!seesOffers(client));
    standIn.expireSso();
    signIn(client);
    QVERIFY(seesOffers(client));
}

void SignInTest::challengeMustBeSolved() {
    SignInOptions options = required();
    options.challenge = Challenge::Never;
    options.isChallengeRequired = true;
    StandIn standIn({.signIn = options});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    const Client::Reply identifier = client.browse(site, loginPage);
    QVERIFY(identifier.body.contains("data-challenge=\"never\""));
    const Client::Reply same = submit(client, identifier, demoUser, {}, false);
    QCOMPARE(client.visited, QStringList{identifierStep});
    const Client::Reply password = submit(client, same, demoUser, {});
    QCOMPARE(client.visited, QStringList{passwordStep});
    submit(client, password, demoUser, demoPassword, false);
    QCOMPARE(client.visited, QStringList{passwordStep});
    QVERIFY(!seesOffers(client));

    // The same without the rule: a form without the token is good enough.
    options.isChallengeRequired = false;
    standIn.setSignIn(options);
    const Client::Reply accepted =
        submit(client, client.browse(site, loginPage), demoUser, {}, false);
    submit(client, accepted, demoUser, demoPassword, false);
    QVERIFY(seesOffers(client));
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

void SignInTest::searchPageThatAsksEverybody() {
    StandIn standIn({.signIn = required()});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    signIn(client);
    standIn.misbehave(QStringLiteral("*"), {.kind = Misbehaviour::Kind::Idp});
    for (const bool isEverybodyKnown : {false, true}) {
        SignInOptions options = required();
        options.isEverybodyKnown = isEverybodyKnown;
        standIn.setSignIn(options);
        const Client::Reply form = client.browse(site, searchPage);
        QCOMPARE(client.visited, (QStringList{idp + QStringLiteral("/authorize"), identifierStep}));
        QVERIFY(form.status == 200 && form.body.contains("id=\"username\""));
    }
    QCOMPARE(standIn.counters().signInPages, 2);
    // Single sign-on is alive all the while.
    client.browse(site, loginPage);
    QCOMPARE(client.visited.last(), startStep);
}

void SignInTest::troublesOfTheProvider() {
    SignInOptions options = required();
    options.trouble = Trouble::EndlessRedirects;
    StandIn standIn({.signIn = options});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    QCOMPARE(client.browse(site, loginPage).status, 302);
    QCOMPARE(client.visited.size(), 20);
    QCOMPARE(client.visited.last(), idp + QStringLiteral("/authorize"));

    options.trouble = Trouble::BlankPage;
    standIn.setSignIn(options);
    const Client::Reply blank = client.browse(site, loginPage);
    QVERIFY(blank.status == 200 && !blank.body.contains("<form"));

    options.trouble = Trouble::FormLoops;
    standIn.setSignIn(options);
    Client::Reply form = client.browse(site, loginPage);
    for (int i = 0; i < 3; ++i) {
        form = submit(client, form, demoUser, {});
        QCOMPARE(client.visited, QStringList{identifierStep});
    }
}

void SignInTest::forgedReturnsAreRefused() {
    StandIn standIn({.signIn = required()});
    QVERIFY(!standIn.start());
    Client client(standIn.port());
    signIn(client);
    standIn.expireSiteSession();

    // A code that belongs to another browser, and one that has been used.
    client.get(site, loginPage);
    const QString state = QString::fromLatin1(client.jar[site].value("auth_state"));
    const Client::Reply granted =
        client.get(idp, QStringLiteral("/authorize?state=%1&redirect_uri=%2/auth/callback")
                            .arg(state, standIn.siteOrigin()));
    const QString back = QUrl(QString::fromUtf8(granted.head.value("location")))
                             .toString(QUrl::RemoveScheme | QUrl::RemoveAuthority);
    Client stranger(standIn.port());
    QCOMPARE(stranger.get(site, back).status, 400);
    QCOMPARE(client.get(site, back).status, 302);
    client.jar[site]["auth_state"] = state.toLatin1();
    QCOMPARE(client.get(site, back).status, 400);

    // The provider sends nobody to another site, nor does the site.
    QCOMPARE(client.get(idp, QStringLiteral("/authorize?state=x&redirect_uri=http://evil.example/"))
                 .status,
             400);
    for (const char* elsewhere :
         {"%2F%2Fevil.example", "http%3A%2F%2Fevil.example", "%2F%5Cevil"}) {
        client.browse(site, QStringLiteral("/auth/login?returnTo=") + QLatin1String(elsewhere));
        QCOMPARE(client.visited.last(), startStep);
    }
    client.browse(site, QStringLiteral("/auth/login?returnTo=%2Fbook%2Fflights%2F"));
    QCOMPARE(client.visited.last(), site + QStringLiteral("/book/flights/"));

    // The password page is not reached without a user name.
    standIn.expireSso();
    const Client::Reply form = client.browse(site, loginPage);
    client.browse(idp, formTarget(QStringLiteral("/u/login/password"), form));
    QCOMPARE(client.visited, QStringList{identifierStep});
    QCOMPARE(client.get(idp, QStringLiteral("/u/login/password?state=unknown")).status, 400);
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
