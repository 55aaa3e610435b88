// SPDX-License-Identifier: MIT
// Lets the demo's whole program live for hours, of which it skips those in which nothing happens,
// and tells whether it grows, gets stuck or loses data. The first argument is the hours.
#include "app/Demo.h"
#include "bench/soak/Reading.h"
#include "bench/soak/SoakClock.h"
#include "core/Err.h"
#include "platform/linux/LinuxFolders.h"
#include "program/Tindra.h"
#include "program/WindowProgram.h"
#include "tests/support/NotificationService.h"
#include "tests/support/TestBus.h"
#include "ui/controls/Controls.h"

#include <QApplication>
#include <QQuickItem>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double usualHours = 12;
constexpr auto betweenReadings = 30min;
/// In the machine's own time: what is under way with the community on this machine ends meanwhile.
constexpr Ticks quiet = 150ms;
constexpr Ticks longestRound = 300s;
/// The offers found meanwhile are part of it: some four hundred between the two quarters.
constexpr double mostGrowth = 1.08;
constexpr qsizetype mostNewFiles = 8;
/// Rounds that may be missing, from each starting later than the one before it ended.
constexpr double fewestRounds = 0.9;

void print(const QString& text) {
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

class Soak : public QObject {
public:
    Soak(Tindra& tindra, WindowProgram& program, SoakClock& clock, NotificationService& desktop,
         double hours)
        : m_tindra(tindra)
        , m_program(program)
        , m_clock(clock)
        , m_desktop(desktop)
        , m_hours(hours)
        , m_start(clock.ticks())
        , m_roundChanged(clock.ticks()) {
        connect(&tindra.worker, &Worker::roundEnded, this, [this](const PollSummary& summary) {
            ++m_rounds;
            m_news += summary.newAlerts + summary.soldOut;
            for (const QString& error : summary.errors)
                m_problems.append(u"round %1: %2"_s.arg(m_rounds).arg(error));
        });
        print(Reading::heading());
        startTimer(20);
    }

protected:
    void timerEvent(QTimerEvent*) override {
        const bool isBusy = m_tindra.worker.isBusy();
        if (std::exchange(m_wasBusy, isBusy) != isBusy)
            m_roundChanged = m_clock.ticks();
        if (isBusy) {
            if (m_clock.ticks() - m_roundChanged > longestRound)
                end(u"a round does not end: "_s + m_tindra.worker.statusText());
            return;
        }
        if (m_clock.quietFor() < quiet)
            return;
        const Ticks lived = m_clock.ticks() - m_start;
        if (lived >= betweenReadings * (m_readings.size() + 1))
            read(lived);
        if (lived >= std::chrono::duration<double, std::ratio<3600>>(m_hours))
            end({});
        else
            m_clock.skip();
    }

private:
    void read(Ticks lived) {
        Reading reading = Reading::of(m_tindra.folders.data());
        reading.hours = lived.count() / 3600;
        reading.rounds = m_rounds;
        m_readings.append(reading);
        print(reading.line());
        m_announced += m_desktop.received.size();
        m_desktop.received.clear();
        // Somebody looks at another page now and then.
        if (auto* root = m_program.window().rootObject()->property("root").value<RootView*>())
            root->select(static_cast<int>(m_readings.size() % 4));
        else
            m_problems.append(u"no pages to look at"_s);
    }

    void require(bool isTrue, const QString& problem) {
        if (!isTrue)
            m_problems.append(problem);
    }

    void end(const QString& problem) {
        require(problem.isEmpty(), problem);
        const int expected = static_cast<int>(m_hours * 60 / m_tindra.appState.pollIntervalMin());
        require(m_rounds >= expected * fewestRounds,
                u"%1 rounds instead of %2"_s.arg(m_rounds).arg(expected));
        m_announced += m_desktop.received.size();
        require(m_news > 0 && m_announced > 0, u"nothing was found or announced"_s);
        require(!m_tindra.worker.isRunning() && m_tindra.worker.statusText().isEmpty(),
                u"the worker is not at rest"_s);
        require(m_tindra.state.loginStatus().state == SASLoginStatus::Case::loggedIn,
                u"nobody is signed in"_s);
        require(!m_tindra.database.problem(), m_tindra.database.problem().value_or(QString()));
        const QString damaged = damage(m_tindra.folders.data());
        require(damaged.isEmpty(), u"the database: "_s + damaged);
        const double ratio = growth(m_readings);
        if (ratio > 0) {
            const Reading& half = m_readings[m_readings.size() / 2];
            const Reading& last = m_readings.last();
            require(ratio <= mostGrowth, u"memory grows"_s);
            require(last.openFiles <= half.openFiles + mostNewFiles, u"open files grow"_s);
            require(last.processes <= half.processes, u"processes stay behind"_s);
        }
        print(u"\nrounds %1, finds and sold-outs %2, notifications %3\n"
              "own memory, last quarter against second  %4  goal ≤ %5\n"
              "integrity_check  %6\n"_s.arg(m_rounds)
                  .arg(m_news)
                  .arg(m_announced)
                  .arg(ratio, 0, 'f', 3)
                  .arg(mostGrowth)
                  .arg(damaged.isEmpty() ? u"ok"_s : damaged));
        for (const QString& one : std::as_const(m_problems))
            print(u"FAILED: "_s + one + u'\n');
        QCoreApplication::exit(m_problems.isEmpty() ? 0 : 1);
    }

    Tindra& m_tindra;
    WindowProgram& m_program;
    SoakClock& m_clock;
    NotificationService& m_desktop;
    double m_hours;
    Ticks m_start;
    Ticks m_roundChanged;
    bool m_wasBusy = false;
    int m_rounds = 0;
    int m_news = 0;
    qsizetype m_announced = 0;
    QList<Reading> m_readings;
    QStringList m_problems;
};

} // namespace

int main(int argc, char* argv[]) {
    const TestBus world;
    qputenv("QT_QUICK_BACKEND", "software");
    prepareInterface();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const double hours =
        application.arguments().size() > 1 ? application.arguments().at(1).toDouble() : usualHours;
    if (!(hours > 0)) {
        std::fputs("soak: how many hours?\n", stderr);
        return 2;
    }
    try {
        CommandLine line;
        line.command = CommandLine::Command::window;
        line.demo = true;
        // In the evening, so that a new day begins on the way.
        SoakClock clock(QTime(18, 0));
        NotificationService desktop(QStringList{u"body"_s, u"actions"_s});
        const LinuxFolders folders(Demo::folderName());
        Tindra tindra(line, folders, clock);
        tindra.appState.finishOnboarding();
        WindowProgram program(tindra);
        const Soak soak(tindra, program, clock, desktop, hours);
        program.start();
        return QCoreApplication::exec();
    } catch (const Err& error) {
        std::fprintf(stderr, "soak: %s\n", qPrintable(error.message));
        return 2;
    }
}
