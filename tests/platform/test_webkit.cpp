// SPDX-License-Identifier: MIT
// The web view on the real engine, with the stand-in airline over real HTTP.
#include "airline/Capture.h"
#include "airline/SAS.h"
#include "platform/linux/GtkHostWindow.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "platform/linux/WebKitRuntime.h"
#include "platform/linux/WebKitView.h"
#include "standin/StandIn.h"
#include "tests/support/Settled.h"
#include "tests/support/TestBus.h"
#include "tests/support/TestProgram.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Processes of this name among the descendants of this one.
QList<pid_t> descendants(const QByteArray& name) {
    QHash<pid_t, pid_t> parents;
    QHash<pid_t, QByteArray> names;
    for (const QString& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile stat(u"/proc/%1/stat"_s.arg(entry));
        if (entry.toInt() <= 0 || !stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const auto end = line.lastIndexOf(')');
        names.insert(entry.toInt(), line.mid(line.indexOf('(') + 1, end - line.indexOf('(') - 1));
        parents.insert(entry.toInt(), line.mid(end + 4).split(' ').first().toInt());
    }
    QList<pid_t> found;
    for (auto process = names.cbegin(); process != names.cend(); ++process) {
        if (!process->startsWith(name))
            continue;
        for (pid_t id = process.key(); id > 1; id = parents.value(id)) {
            if (id == ::getpid())
                found.append(process.key());
        }
    }
    return found;
}

} // namespace

class TestWebKit : public QObject {
    Q_OBJECT

public:
    explicit TestWebKit(WebKitRuntime& runtime) : m_runtime(runtime) {}

private:
    WebKitRuntime& m_runtime;
    LinuxClock m_clock;

    struct World {
        LinuxClock clock;
        standin::StandIn airline;
        std::unique_ptr<WebKitView> view;
        Site site;
        QList<ScriptMessage> messages;

        explicit World(WebKitRuntime& runtime, standin::Options options = {})
            : airline(withoutDelay(std::move(options))) {
            if (const auto error = airline.start())
                qFatal("%s", qPrintable(*error));
            view = runtime.makeView(clock);
            site = {airline.siteOrigin(), airline.siteDomain(), airline.idpHost(),
                    airline.idpDomain()};
            connect(view.get(), &WebView::scriptMessage, view.get(),
                    [this](const ScriptMessage& message) { messages.append(message); });
        }
        static standin::Options withoutDelay(standin::Options options) {
            options.pageDelay = 0ms;
            return options;
        }
        QUrl page(int day = 1) const {
            return QUrl(SAS::bookingURL(site, {u"OSL"_s, u"CPH"_s}, {2027, 3, day}));
        }
        QStringList texts(const QString& member) const {
            QStringList texts;
            for (const ScriptMessage& message : messages)
                texts.append(QString::fromUtf8(message.texts.value(member)));
            return texts;
        }
    };

    static Leg leg(int day) { return {{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, day)}; }

private Q_SLOTS:
    void aSiteThatCannotBeReachedEndsTheCapture() {
        World world(m_runtime);
        Capture capture(*world.view, m_clock, world.site);
        const QSignalSpy failed(world.view.get(), &WebView::loadFailed);
        const auto look = [&](int day) {
            return awaited(capture.capture(leg(day), 20s))->value_or(Outcome()).kind;
        };
        QCOMPARE(look(1), Outcome::Kind::answer);
        // Loads that make room for others, or are left, have not failed.
        world.view->load(world.page());
        world.view->load(world.page(2));
        world.view->unload();
        QCOMPARE(look(3), Outcome::Kind::answer);
        QVERIFY(failed.isEmpty());

        world.airline.stop();
        const Ticks began = m_clock.ticks();
        QCOMPARE(look(4), Outcome::Kind::unreachable);
        QVERIFY(m_clock.ticks() - began < 10s);
        QCOMPARE(failed.size(), 1);
        QCOMPARE(world.airline.start(), std::nullopt);
        QCOMPARE(look(5), Outcome::Kind::answer);
        QCOMPARE(failed.size(), 1);
    }

    void whatBecomesOfALook_data() {
        QTest::addColumn<QString>("misbehaviour");
        QTest::addColumn<Outcome>("outcome");
        QTest::addColumn<int>("seconds");
        const auto row = [](const char* word, const Outcome& outcome, int seconds) {
            QTest::newRow(word) << QString::fromLatin1(word) << outcome << seconds;
        };
        using Kind = Outcome::Kind;
        row("errors", {Kind::failed, 200}, 4);
        row("message", {Kind::refused, 200}, 4);
        row("wrongshape", {Kind::failed, 200}, 4);
        row("huge", {Kind::failed, 200}, 7);
        row("status:500", {Kind::failed, 500}, 5);
        row("status:429:Fri, 15 Jan 2027 12:20:00 GMT",
            {Kind::refused, 429, u"Fri, 15 Jan 2027 12:20:00 GMT"_s}, 4);
        row("unauthorized", {Kind::signedOut, 401}, 4);
        row("cutoff", {Kind::failed, 200}, 4);
        row("twice", {Kind::answer, 200}, 3);
        row("page:503:120", {Kind::refused, 503, u"120"_s}, 11);
        row("page:500", {Kind::failed, 500}, 11);
        row("denied", {Kind::refused}, 9);
        row("signin", {Kind::signedOut}, 9);
        row("idp", {Kind::signedOut}, 3);
        row("redirects", {Kind::failed}, 3);
        row("hang", {Kind::unreachable}, 10);
        row("never", {Kind::silent}, 10);
    }
    /// Real seconds: the slower ones wait for what may still come.
    void whatBecomesOfALook() {
        QFETCH(const QString, misbehaviour);
        QFETCH(Outcome, outcome);
        QFETCH(const int, seconds);
        World world(m_runtime);
        Capture capture(*world.view, m_clock, world.site);
        const auto word = standin::Misbehaviour::of(misbehaviour);
        QVERIFY(word);
        for (const Flow flow : {Flow::points, Flow::award}) {
            // One flow is enough where it takes long, or happens before there is one.
            if (flow == Flow::award && seconds > 3)
                break;
            const Leg asked{{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, 1), flow};
            world.airline.misbehave(u"OSL-CPH-20270301"_s, *word);
            const auto limit = word->kind == standin::Misbehaviour::Kind::Hang ||
                                       word->kind == standin::Misbehaviour::Kind::Never
                                   ? 2s
                                   : 12s;
            const Ticks began = m_clock.ticks();
            auto found = awaited(capture.capture(asked, limit), 20000)->value_or(Outcome());
            QVERIFY(m_clock.ticks() - began < std::chrono::seconds(seconds));
            QCOMPARE(found.fares.isEmpty(), outcome.kind != Outcome::Kind::answer);
            found.fares.clear();
            QCOMPARE(found, outcome);
        }
    }

    void offersAreSeenHoweverAPageAsksForThem_data() {
        QTest::addColumn<QString>("script");
        const QString address = u"'/api/offers/flights?from=OSL&to=CPH&outDate=2027-03-01'"_s;
        QTest::newRow("an address object") << u"fetch(new URL(%1, location.href));"_s.arg(address);
        QTest::newRow("a request object") << u"fetch(new Request(%1));"_s.arg(address);
        QTest::newRow("XHR, as JSON") << u"const x = new XMLHttpRequest(); x.responseType = 'json';"
                                         u"x.open('GET', %1); x.send();"_s.arg(address);
        QTest::newRow("XHR, as text")
            << u"const x = new XMLHttpRequest(); x.open('GET', new URL(%1, location.href));"
               u"x.send();"_s.arg(address);
    }
    void offersAreSeenHoweverAPageAsksForThem() {
        QFETCH(const QString, script);
        World world(m_runtime);
        Capture capture(*world.view, m_clock, world.site);
        // Its page asks for nothing by itself.
        world.airline.misbehave(u"*"_s, *standin::Misbehaviour::of(u"signin"_s));
        world.view->addUserScript(u"addEventListener('load', () => { %1 });"_s.arg(script),
                                  {world.site.domain});
        const auto outcome = awaited(capture.capture(leg(1), 5s));
        QVERIFY(outcome && *outcome);
        QCOMPARE((*outcome)->kind, Outcome::Kind::answer);
        QVERIFY(!(*outcome)->fares.isEmpty());
    }

    void bothFlowsAreCapturedAndForgeriesAreNot() {
        World world(m_runtime);
        Capture capture(*world.view, m_clock, world.site);
        const QSignalSpy messages(world.view.get(), &WebView::scriptMessage);
        for (const Flow flow : {Flow::points, Flow::award}) {
            const Leg asked{{u"OSL"_s, u"CPH"_s}, QDate(2027, 3, 1), flow};
            const auto outcome = *awaited(capture.capture(asked, 20s));
            QVERIFY(outcome && !outcome->fares.isEmpty());
            QCOMPARE(outcome->fares.first().key.date, asked.date);
        }
        // The third-party frame asked for offers of its own, with an answer that lies.
        world.view->load(world.page(3));
        const QString host = standin::StandIn::adsHost();
        const auto asked = [&world, &host] {
            return !world.airline.requests(host).filter(u"api/offers/flights"_s).isEmpty();
        };
        QTRY_VERIFY(asked());
        QTest::qWait(200);
        for (const ScriptMessage& message : world.messages)
            QVERIFY(!message.texts.value(u"url"_s).contains("ads.localhost"));
        // Decoys for the days around came through the hook, and were passed over.
        QVERIFY(messages.size() > 2);
    }

    void userScriptsRunInTheSitesFramesOnlyAndMessagesAreRead() {
        World world(m_runtime);
        world.view->addMessageHandler(u"probe"_s, {u"host"_s, u"number"_s, u"text"_s, u"absent"_s});
        world.view->addUserScript(
            u"window.webkit.messageHandlers.probe.postMessage("
            u"{host: location.hostname, number: 5, text: 'æ\\u0000🛫'});"
            u"window.webkit.messageHandlers.probe.postMessage('no object');"_s,
            {world.site.domain});
        world.view->load(world.page());
        QTRY_COMPARE_GE(world.messages.size(), 2);
        const QString host = standin::StandIn::adsHost();
        QTRY_VERIFY(!world.airline.requests(host).filter(u"frame"_s).isEmpty());
        QTest::qWait(300);
        QCOMPARE(world.messages.size(), 2);
        QCOMPARE(world.messages[0].handler, u"probe"_s);
        QVERIFY(world.messages[0].isObject);
        QCOMPARE(world.messages[0].texts.value(u"host"_s), "site.localhost");
        QVERIFY(world.messages[0].texts.value(u"text"_s).startsWith("æ"));
        QVERIFY(!world.messages[0].texts.contains(u"number"_s));
        QVERIFY(!world.messages[0].texts.contains(u"absent"_s));
        QVERIFY(!world.messages[1].isObject);
    }

    void aHiddenPageRunsAtFullSpeedAndAsksTheUserNothing() {
        World world(m_runtime);
        world.view->addMessageHandler(u"probe"_s, {u"ticks"_s});
        // Throttled timers fire once a second: forty in a row would take longer than the test
        // waits. The questions before them would never be answered.
        world.view->addUserScript(uR"(
            alert('x'); confirm('x'); prompt('x'); print(); window.open('about:blank');
            Notification.requestPermission && Notification.requestPermission();
            navigator.geolocation && navigator.geolocation.getCurrentPosition(() => {});
            window.onbeforeunload = event => { event.preventDefault(); return 'stay'; };
            let ticks = 0;
            const next = () => ++ticks < 40 ? setTimeout(next, 5)
                : window.webkit.messageHandlers.probe.postMessage({ticks: String(ticks)});
            next();)"_s,
                                  {world.site.domain});
        world.view->load(world.page());
        QTRY_COMPARE_WITH_TIMEOUT(world.texts(u"ticks"_s), QStringList{u"40"_s}, 15000);
        world.view->load(world.page(2));
        QTRY_COMPARE_WITH_TIMEOUT(world.messages.size(), 2, 15000);
    }

    void scriptsAnswerWithTextOnly() {
        World world(m_runtime);
        world.view->load(world.page());
        // The page before is still there, and must not answer for the one that is on its way.
        QCOMPARE(awaited(world.view->evaluate(u"location.hostname"_s)).value(), std::nullopt);
        const auto host = [&world] {
            return awaited(world.view->evaluate(u"location.hostname"_s)).value();
        };
        QTRY_COMPARE(host(), u"site.localhost"_s);
        QCOMPARE(awaited(world.view->evaluate(u"'æ\\n🛫'"_s)).value(), u"æ\n🛫"_s);
        for (const QString& other : {u"5"_s, u"null"_s, u"({})"_s, u"throw new Error('x')"_s,
                                     u"syntax error"_s, u"Promise.resolve('x')"_s})
            QCOMPARE(awaited(world.view->evaluate(other)).value(), std::nullopt);
    }

    void pagesCannotLookIntoOurScripts() {
        World world(m_runtime);
        world.view->addMessageHandler(u"probe"_s, {u"stolen"_s});
        world.view->addUserScript(uR"(
            String.prototype.endsWith = function () {
                webkit.messageHandlers.probe.postMessage({stolen: String(arguments.callee.caller)});
                return true;
            };)"_s,
                                  {world.site.domain});
        world.view->load(world.page());
        const auto ask = [&world] {
            return awaited(
                       world.view->evaluate(
                           u"(function (secret) { return String('a'.endsWith('b')); })('pw')"_s))
                .value();
        };
        QTRY_COMPARE(ask(), u"false"_s);
        QTest::qWait(200);
        QVERIFY(world.texts(u"stolen"_s).isEmpty());
        // While another page is on its way, the one that is there is not asked and has no address.
        world.airline.misbehave(u"OSL-CPH-20270305"_s, {standin::Misbehaviour::Kind::Never, 0ms});
        QCOMPARE(world.view->documentUrl().host(), u"site.localhost"_s);
        world.view->load(world.page(5));
        QVERIFY(world.view->documentUrl().isEmpty());
        QTRY_VERIFY(world.view->documentUrl().toString().contains(u"20270305"_s));
    }

    void aDialogThatIsLeftBehindHoldsNothingUp() {
        World world(m_runtime);
        GtkHostWindow window(*world.view, {u"t"_s, u"i"_s, u"b"_s});
        window.show(HostWindow::Activation::takeFocus);
        world.view->addMessageHandler(u"probe"_s, {u"before"_s});
        world.view->addUserScript(uR"(
            if (location.search.includes('20270301')) {
                webkit.messageHandlers.probe.postMessage({before: '1'});
                alert('are you there?');
            })"_s,
                                  {world.site.domain});
        world.view->load(world.page());
        QTRY_VERIFY(!world.texts(u"before"_s).isEmpty());
        QTest::qWait(300);
        window.hide();
        world.view->load(world.page(2));
        const auto search = [&world] {
            return awaited(world.view->evaluate(u"location.search"_s)).value().value_or(QString());
        };
        QTRY_VERIFY_WITH_TIMEOUT(search().contains(u"20270302"_s), 15000);
    }

    void cookiesComeAndGo() {
        World world(m_runtime);
        CookieStore& store = world.view->cookies();
        const auto before = awaited(store.all())->value();
        for (const WebCookie& cookie : before)
            awaited(store.remove(cookie));
        QCOMPARE(awaited(store.all())->value(), QList<WebCookie>());
        const Instant nextYear =
            instantFromSeconds(std::floor(secondsSince1970(m_clock.now())) + 365 * 86400);
        const WebCookie kept{u"own"_s, u"v=1;\"x\""_s, u".site.localhost"_s,
                             u"/"_s,   nextYear,       true};
        const WebCookie session{u"økt"_s, u""_s, u"id.localhost"_s, u"/u"_s, std::nullopt, false};
        const QList<WebCookie> good{kept, session};
        for (const WebCookie& cookie : good)
            QCOMPARE(awaited(store.set(cookie)).value(), true);
        auto found = awaited(store.all())->value();
        std::sort(found.begin(), found.end(),
                  [](const WebCookie& a, const WebCookie& b) { return a.name < b.name; });
        QCOMPARE(found.size(), 2);
        QCOMPARE(found[0], kept);
        QCOMPARE(found[1].name, session.name);
        QVERIFY(!found[1].expires);
        for (WebCookie bad : {kept, kept, kept}) {
            static int which = 0;
            (which == 0 ? bad.name : which == 1 ? bad.domain : bad.path).clear();
            ++which;
            QCOMPARE(awaited(store.set(bad)).value(), false);
        }
        awaited(store.remove(kept));
        QCOMPARE(awaited(store.all())->value().size(), 1);
    }

    void aDeadNetworkProcessEndsNothingForEver() {
        World world(m_runtime);
        Capture capture(*world.view, m_clock, world.site);
        QVERIFY(*awaited(capture.capture(leg(1), 20s)));
        for (const pid_t process : descendants("WebKitNetworkPr"))
            ::kill(process, SIGKILL);
        // Whatever comes of it, it comes, and a later load works again.
        awaited(world.view->cookies().all(), 30000);
        awaited(world.view->evaluate(u"'x'"_s), 30000);
        Outcome outcome;
        for (int day = 2; outcome.kind != Outcome::Kind::answer && day < 8; ++day)
            outcome = awaited(capture.capture(leg(day), 5s), 30000)->value_or(Outcome());
        QCOMPARE(outcome.kind, Outcome::Kind::answer);
    }

    void nothingIsDownloaded() {
        World world(m_runtime);
        world.view->addMessageHandler(u"probe"_s, {u"done"_s});
        world.view->addUserScript(uR"(
            addEventListener('load', () => {
                for (const href of ['data:text/plain,stolen', '/logo.svg']) {
                    const link = document.createElement('a');
                    link.href = href;
                    link.download = 'tindra-download-test';
                    document.body.append(link);
                    link.click();
                }
                setTimeout(() => webkit.messageHandlers.probe.postMessage({done: '1'}), 500);
            });)"_s,
                                  {world.site.domain});
        world.view->load(world.page());
        QTRY_VERIFY_WITH_TIMEOUT(world.texts(u"done"_s).contains(u"1"_s), 15000);
        QDirIterator files(QDir::homePath(), {u"tindra-download-test*"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        QVERIFY(!files.hasNext());
        const QString downloads =
            QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
        QVERIFY(QDir(downloads).entryList({u"tindra-download-test*"_s}).isEmpty());
    }

    void navigationsAreTold() {
        World world(m_runtime);
        QStringList hosts;
        connect(world.view.get(), &WebView::navigating, world.view.get(),
                [&hosts](const QUrl& url) { hosts.append(url.host()); });
        world.view->load(world.page());
        QTRY_VERIFY(hosts.contains(u"site.localhost"_s));
        QTRY_COMPARE(world.view->url().path(), u"/book/flights/"_s);
        world.view->unload();
        QTRY_COMPARE(world.view->url(), QUrl(u"about:blank"_s));
    }

    void imagesAndFontsAreNotLoadedOnSearchPages() {
        World world(m_runtime);
        Capture capture(*world.view, m_clock, world.site);
        const auto decorations = [&world] {
            static const QRegularExpression kinds(u"\\.(png|svg|jpg|woff2?|ttf)"_s);
            return world.airline.requests(u"site.localhost"_s).filter(kinds).size();
        };
        // The rules take a moment to compile; from then on no page fetches a picture.
        const auto pageFetchesNone = [&](int day) {
            const auto before = decorations();
            awaited(capture.capture(leg(day), 20s));
            QTest::qWait(150);
            return decorations() == before;
        };
        int day = 1;
        while (day < 20 && !pageFetchesNone(day))
            ++day;
        QVERIFY2(day < 20, "every page loaded its pictures");
        for (int more = 0; more < 3; ++more)
            QVERIFY(pageFetchesNone(++day));
        // Which they have.
        QVERIFY(awaited(world.view->evaluate(u"String(document.images.length > 0)"_s)).value() ==
                u"true"_s);
    }

    void aDeadWebProcessEndsTheCaptureAndTheNextOneWorks() {
        World world(m_runtime);
        world.airline.misbehave(u"OSL-CPH-20270301"_s, {standin::Misbehaviour::Kind::Never, {}});
        Capture capture(*world.view, m_clock, world.site);
        std::optional<Outcome> outcome;
        capture.capture(leg(1), 60s).then([&outcome](std::optional<Outcome> result) {
            outcome = result;
        });
        QTRY_VERIFY(!world.airline.requests(u"site.localhost"_s)
                         .filter(u"/api/offers/flights?from=OSL&to=CPH&outDate=2027-03-01"_s)
                         .isEmpty());
        const auto processes = descendants("WebKitWebProces");
        QVERIFY(!processes.isEmpty());
        for (const pid_t process : processes)
            ::kill(process, SIGKILL);
        QTRY_VERIFY(outcome);
        QCOMPARE(outcome->kind, Outcome::Kind::failed);
        const auto next = *awaited(capture.capture(leg(2), 30s));
        QCOMPARE(next.value_or(Outcome()).kind, Outcome::Kind::answer);
    }

    void whatIsStoredIsPrivate() {
        World world(m_runtime);
        world.view->load(world.page());
        const LinuxFolders folders(u"Tindra"_s);
        const QFileInfo cookies(folders.data() + u"/web/cookies.sqlite"_s);
        QTRY_VERIFY(QFileInfo::exists(cookies.filePath()));
        constexpr auto others = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                QFile::ExeOther | QFile::WriteOther;
        QVERIFY(!(QFileInfo(cookies.path()).permissions() & others));
        QVERIFY(!(QFileInfo(folders.cache() + u"/web"_s).permissions() & others));
        QVERIFY2(m_runtime.isSandboxed(), "bubblewrap and xdg-dbus-proxy belong to the test world");
    }
};

TINDRA_TEST_MAIN(TestWebKit) {
    const TestBus bus;
    const QCoreApplication application(argc, argv);
    QString problem;
    const auto runtime = WebKitRuntime::start(LinuxFolders(u"Tindra"_s), problem);
    if (!runtime)
        qFatal("%s", qPrintable(problem));
    TestWebKit test(*runtime);
    return QTest::qExec(&test, argc, argv);
}
#include "test_webkit.moc"
