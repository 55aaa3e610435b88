// SPDX-License-Identifier: MIT
// Starts `tindra hunt --once` again and again, kills it at a random moment of its round, lets one
// run end by itself, and tells whether a find was lost, left unsaid, or stored or told twice. The
// first argument is how many are to be killed.
#include "bench/NotificationLog.h"
#include "bench/ProcessTree.h"
#include "bench/Results.h"
#include "bench/kills/Ledger.h"
#include "core/DateFmt.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxFolders.h"
#include "standin/StandIn.h"
#include "tests/support/TestBus.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int usualKills = 200;
/// From a program's start to its first page, and from there to the end of its round.
constexpr int usualStartMs = 3000;
constexpr int usualRoundMs = 3000;
constexpr int startLimitMs = 30'000;
constexpr int endLimitMs = 180'000;
/// One in so many is killed wherever it is, also before its round.
constexpr int anywhere = 5;

/// A few dates that the other watcher has too, and one with legs for several rounds.
void addWatchers(const QString& folder, const Clock& clock) {
    QDir().mkpath(folder);
    Database database(folder, clock);
    const auto add = [&](const QString& destinations, int days) {
        Search search;
        search.origin = u"OSL"_s;
        search.destination = destinations;
        search.cabins = {Cabin::economy, Cabin::premeco, Cabin::business};
        search.dateFrom = clock.today().addDays(10);
        search.dateTo = clock.today().addDays(10 + days - 1);
        database.watchers().addSearch(search);
    };
    add(u"LHR"_s, 8);
    add(u"CPH,LHR,ARN,CDG"_s, 60);
}

/// The files as a run has left them, without opening them: the next run is to find them so.
void copyDatabase(const QString& from, const QString& to) {
    for (const QString& name : {u"tindra.sqlite"_s, u"tindra.sqlite-wal"_s}) {
        QFile::remove(to + u'/' + name);
        QFile::copy(from + u'/' + name, to + u'/' + name);
    }
    QFile::remove(to + u"/tindra.sqlite-shm"_s);
}

bool isSound(const QString& folder) {
    SqliteConnection connection;
    connection.open(folder + u"/tindra.sqlite"_s);
    QString answer;
    connection.query("PRAGMA integrity_check",
                     [&answer](const SqliteRow& row) { answer = row.text(0); });
    return answer == u"ok";
}

class Program {
public:
    Program() {
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.start(QStringLiteral(TINDRA_PROGRAM), {u"hunt"_s, u"--once"_s});
        if (!m_process.waitForStarted(startLimitMs))
            qFatal("%s does not start", TINDRA_PROGRAM);
    }

    bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }
    /// Waits for it while the desktop answers.
    bool end() {
        return QTest::qWaitFor([this] { return hasEnded(); }, endLimitMs) &&
               m_process.exitCode() == 0 && m_process.exitStatus() == QProcess::NormalExit;
    }
    QByteArray said() { return m_process.readAllStandardError(); }

    /// Ends it as the kernel does, and waits until the web view's processes have noticed.
    void kill() {
        const auto all = ProcessTree(m_process.processId()).processes();
        m_process.kill();
        const auto isGone = [&all] {
            return std::none_of(all.begin(), all.end(),
                                [](qint64 one) { return QDir(u"/proc/%1"_s.arg(one)).exists(); });
        };
        if (!QTest::qWaitFor([&] { return hasEnded() && isGone(); }, 5000)) {
            for (const qint64 one : all)
                ::kill(static_cast<pid_t>(one), SIGKILL);
            m_process.waitForFinished(1000);
            ++leftBehind;
        }
    }

    /// Runs whose helpers had to be ended by hand.
    static inline int leftBehind = 0;

private:
    QProcess m_process;
};

/// Returns at the moment at which the program is to die, or when it has ended.
void waitForMoment(const Program& program, const standin::StandIn& airline, int run) {
    auto* random = QRandomGenerator::global();
    int wait = random->bounded(usualStartMs + usualRoundMs);
    if (run % anywhere != 0) {
        // The first page is a look that proves the session.
        const int before = airline.counters().searchPages;
        const bool hasBegun = QTest::qWaitFor(
            [&] { return program.hasEnded() || airline.counters().searchPages >= before + 2; },
            startLimitMs);
        if (!hasBegun)
            qFatal("a round does not begin");
        wait = random->bounded(usualRoundMs);
    }
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < wait && !program.hasEnded())
        QTest::qWait(1);
}

Result row(const QString& subject, qsizetype found, qsizetype most) {
    return {subject, QString::number(found), most == 0 ? u"0"_s : u"≤ %1"_s.arg(most),
            found <= most};
}

int report(const Ledger::Account& account, int kills, int endedBefore, int unsound,
           double seconds) {
    const QList<Result> rows{
        {u"runs killed (%1 more had ended before; %2 s each)"_s.arg(endedBefore)
             .arg(seconds / std::max(1, kills + endedBefore), 0, 'f', 1),
         QString::number(kills), u"-"_s, true},
        {u"of these between storing a find and noting that it was told"_s,
         QString::number(account.cutShort), u"-"_s, true},
        {u"finds stored (and %1 sold-outs)"_s.arg(account.soldOuts), QString::number(account.finds),
         u"≥ %1"_s.arg(kills), account.finds >= kills},
        row(u"lost"_s, account.lost, 0),
        row(u"unsaid"_s, account.unsaid, 0),
        row(u"stored twice"_s, account.storedTwice, 0),
        row(u"told twice"_s, account.toldTwice, 2),
        row(u"times that the database was not sound"_s, unsound, 0),
    };
    std::fputs(table(rows).toUtf8().constData(), stdout);
    for (const QString& complaint : account.complaints)
        std::printf("  %s\n", qPrintable(complaint));
    if (Program::leftBehind > 0)
        std::printf("  processes of the web view outlived %d runs\n", Program::leftBehind);
    return std::all_of(rows.begin(), rows.end(), [](const Result& one) { return one.reached; }) ? 0
                                                                                                : 1;
}

} // namespace

int main(int argc, char* argv[]) {
    TestBus world;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    bool isNumber = true;
    const int wanted = arguments.size() > 1 ? arguments[1].toInt(&isNumber) : usualKills;
    if (!isNumber || wanted < 1 || arguments.size() > 2) {
        std::fputs("kills: how many?\n", stderr);
        return 2;
    }
    standin::Options options;
    options.signIn.isEverybodyKnown = true;
    standin::StandIn airline(options);
    if (const auto error = airline.start())
        qFatal("%s", qPrintable(*error));
    qputenv("TINDRA_SITE_ORIGIN", airline.siteOrigin().toUtf8());
    qputenv("TINDRA_SITE_DOMAIN", standin::StandIn::siteDomain().toUtf8());
    qputenv("TINDRA_IDP_HOST", standin::StandIn::idpHost().toUtf8());
    qputenv("TINDRA_IDP_DOMAIN", standin::StandIn::idpDomain().toUtf8());
    qputenv("TINDRA_COMMUNITY_URL", "https://community.invalid");
    if (!world.startSecretService())
        qFatal("no Secret Service");

    Ledger ledger;
    // It outlives all runs, and answers at once whatever is done here.
    NotificationLog desktop;
    const LinuxClock clock;
    const LinuxFolders folders(u"Tindra"_s);
    addWatchers(folders.data(), clock);
    const QTemporaryDir copy;
    int unsound = 0;
    int run = 0;
    const auto note = [&] {
        for (const NotificationLog::Arrival& arrival : desktop.take(0)) {
            if (arrival.summary.startsWith(u"✈️"))
                ledger.noteTold(run, Ledger::text(arrival.summary, arrival.body));
        }
        copyDatabase(folders.data(), copy.path());
        unsound += isSound(copy.path()) ? 0 : 1;
        Database database(copy.path(), clock, Database::Access::guest);
        unsound += database.problem() || database.notice() ? 1 : 0;
        ledger.noteStored(run, database);
    };
    int kills = 0;
    int endedBefore = 0;
    QElapsedTimer timer;
    timer.start();
    while (kills < wanted && endedBefore <= wanted) {
        ++run;
        Program program;
        waitForMoment(program, airline, run);
        const bool hasEnded = program.hasEnded();
        ++(hasEnded ? endedBefore : kills);
        if (!hasEnded)
            program.kill();
        else if (!program.end())
            qFatal("run %d failed: %s", run, program.said().constData());
        // What it had sent may still be on its way.
        QTest::qWait(50);
        note();
        if (kills % 20 == 0)
            std::fprintf(stderr, "kills: %d of %d\n", kills, wanted);
    }
    const double seconds = static_cast<double>(timer.elapsed()) / 1000;
    ++run;
    Program last;
    if (!last.end())
        qFatal("the last run failed: %s", last.said().constData());
    note();
    world.stopSecretService();
    return report(ledger.account(), kills, endedBefore, unsound, seconds);
}
