// SPDX-License-Identifier: MIT
// The application with its window, as its user has it: until the first picture, while it hunts, and
// closed between two rounds. The airline stands in another process, outside of what is measured.
#include "bench/CloseWindow.h"
#include "bench/ProcessTree.h"
#include "bench/Results.h"
#include "bench/StatusArea.h"

#include "core/Database.h"
#include "platform/linux/LinuxClock.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int windowWatchers = 20;
constexpr int windowOffers = 2000;
constexpr int warmStarts = 5;
constexpr int roundLimitMs = 300'000;
constexpr int settlingMs = 10'000;
constexpr int idleMs = 60'000;
constexpr int idleStepMs = 1000;

/// 20 watchers of one leg each, so that a round is short, and 2,000 offers of theirs.
void fillWindow(Database& database, const Clock& clock) {
    const QStringList places{u"BKK"_s, u"EWR"_s, u"LHR"_s, u"NRT"_s};
    const auto day = [&clock](int days) { return clock.today().addDays(days); };
    database.transaction([&] {
        for (int i = 0; i < windowWatchers; ++i) {
            Search search;
            search.origin = u"CPH"_s;
            search.destination = places[i % places.size()];
            search.dateFrom = day(30 + i);
            search.dateTo = day(30 + i);
            database.watchers().addSearch(search);
        }
        for (int i = 0; i < windowOffers; ++i) {
            Match match;
            match.searchId = 1 + i % windowWatchers;
            const QDate date = day(30 + i % 150);
            match.key = {date, {u"CPH"_s, places[i % places.size()]}, u"SK%1"_s.arg(900 + i % 7)};
            match.depart = {date, {11, 0}};
            match.arrive = {date, {13, 10}};
            match.stops = Stops();
            match.durationMinutes = 490;
            match.cabin = i % 2 ? Cabin::business : Cabin::economy;
            match.seats = 2;
            match.points = 60000;
            match.foundAt = clock.now() - std::chrono::minutes(i);
            database.offers().recordMatch(match);
        }
        database.settings().set(Setting::onboarded, true);
        database.settings().set(Setting::pollIntervalMin, 30);
    });
}

class StandInProcess {
public:
    StandInProcess() {
        m_process.start(QStringLiteral(TINDRA_STANDIN), {u"--everybody-known"_s});
        const QByteArray end = "TINDRA_IDP_DOMAIN=";
        QByteArray said;
        while (!said.contains(end) && m_process.waitForReadyRead(10'000))
            said += m_process.readAllStandardOutput();
        for (const QByteArray& line : said.split('\n')) {
            const QString text = QString::fromUtf8(line);
            if (text.startsWith(u"export "))
                settings.insert(text.section(u' ', 1).section(u'=', 0, 0), text.section(u'=', 1));
        }
    }
    ~StandInProcess() {
        m_process.terminate();
        m_process.waitForFinished(5000);
    }
    Q_DISABLE_COPY_MOVE(StandInProcess)

    QMap<QString, QString> settings;

private:
    QProcess m_process;
};

/// Tindra with its window, on the display and bus of this program.
class Program {
public:
    /// Returns when its first picture is on the screen.
    Program(const QString& home, const StandInProcess& airline) {
        auto environment = QProcessEnvironment::systemEnvironment();
        // This program's own drawing is offscreen.
        environment.remove(u"QT_QPA_PLATFORM"_s);
        environment.remove(u"QT_QUICK_BACKEND"_s);
        environment.insert(u"XDG_DATA_HOME"_s, home);
        environment.insert(u"XDG_CACHE_HOME"_s, home + u"/cache"_s);
        environment.insert(u"QT_LOGGING_RULES"_s, u"tindra.window=true"_s);
        for (auto setting = airline.settings.begin(); setting != airline.settings.end(); ++setting)
            environment.insert(setting.key(), setting.value());
        m_process.setProcessEnvironment(environment);
        QElapsedTimer timer;
        timer.start();
        m_process.start(QStringLiteral(TINDRA_PROGRAM), {});
        QByteArray said;
        // The event loop turns, since the status area has to answer meanwhile.
        const bool hasDrawn = QTest::qWaitFor(
            [&] {
                said += m_process.readAllStandardError();
                return said.contains("first frame");
            },
            30'000);
        if (!hasDrawn)
            qFatal("Tindra drew nothing: %s", said.constData());
        firstFrame = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }
    ~Program() {
        m_process.terminate();
        m_process.waitForFinished(20'000);
    }
    Q_DISABLE_COPY_MOVE(Program)

    ProcessTree tree() const { return ProcessTree(m_process.processId()); }

    /// In milliseconds since its start.
    double firstFrame = 0;

private:
    QProcess m_process;
};

/// The most memory until a round has been stored, in KiB.
qint64 mostUntilRoundEnds(const ProcessTree& tree, Database& database,
                          const std::optional<QString>& lastRound) {
    qint64 most = 0;
    const bool ended = QTest::qWaitFor(
        [&] {
            most = std::max(most, tree.pss().all);
            return database.safekeeping().get(Kept::lastPoll) != lastRound;
        },
        roundLimitMs);
    if (!ended)
        qFatal("the round did not end");
    return most;
}

QList<Result> measureIdle(const ProcessTree& tree) {
    if (!closeWindow("Tindra"))
        qFatal("there is no window to close");
    QTest::qWait(settlingMs);
    QElapsedTimer timer;
    timer.start();
    const double cpuBefore = tree.cpu();
    // Counted in short steps: a thread that ends takes its count with it.
    qint64 wakeUps = 0;
    auto last = tree.wakeUps();
    while (timer.elapsed() < idleMs) {
        QTest::qWait(idleStepMs);
        const auto now = tree.wakeUps();
        for (auto thread = now.begin(); thread != now.end(); ++thread)
            wakeUps += *thread - last.value(thread.key());
        last = now;
    }
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    const double cpu = 100 * (tree.cpu() - cpuBefore) / seconds;
    const double wakeUpsPerSecond = static_cast<double>(wakeUps) / seconds;
    return {{u"idle, the window closed: of one core"_s, u"%1 %"_s.arg(cpu, 0, 'f', 2), u"< 0.5 %"_s,
             cpu < 0.5},
            {u"idle, the window closed: wake-ups of all threads"_s,
             u"%1/s"_s.arg(wakeUpsPerSecond, 0, 'f', 1), u"< 5/s"_s, wakeUpsPerSecond < 5}};
}

} // namespace

QList<Result> measureWindow() {
    const QTemporaryDir home;
    const QString folder = home.path() + u"/Tindra"_s;
    const LinuxClock clock;
    QDir().mkpath(folder);
    {
        Database database(folder, clock);
        fillWindow(database, clock);
    }
    const StandInProcess airline;
    const StatusArea status;
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < warmStarts; ++i)
        best = std::min(best, Program(home.path(), airline).firstFrame);

    Database database(folder, clock, Database::Access::guest);
    if (database.offers().recentMatches(2 * windowOffers).size() < windowOffers)
        qFatal("not all offers are there");
    const auto lastRound = database.safekeeping().get(Kept::lastPoll);
    const Program program(home.path(), airline);
    const double mebibytes =
        static_cast<double>(mostUntilRoundEnds(program.tree(), database, lastRound)) / 1024;
    return QList<Result>{{u"first frame of the window, 2,000 offers, warm"_s,
                          u"%1 ms"_s.arg(best, 0, 'f', 0), u"< 700 ms"_s, best < 700},
                         {u"memory of the tree while hunting, window shown (PSS)"_s,
                          u"%1 MiB"_s.arg(mebibytes, 0, 'f', 0), u"< 420 MB"_s,
                          mebibytes * 1.048576 < 420}} +
           measureIdle(program.tree());
}
