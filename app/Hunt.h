// SPDX-License-Identifier: MIT
#pragma once

#include "app/HuntReport.h"

#include <QCoroTask>
#include <QObject>

#include <functional>

class Clock;
class Database;
class NotificationCenter;
class SessionState;
class Sharing;
class Worker;

/// `tindra hunt`: poll rounds on the command line, without a window.
class Hunt : public QObject {
    Q_OBJECT
public:
    struct Output {
        /// A result, for standard output.
        std::function<void(const QByteArray&)> result;
        /// Something on the way, for standard error.
        std::function<void(const QString&)> progress;
    };

    /// Everything must outlive the hunt. `json` selects how results are written.
    Hunt(Database& database, SessionState& session, Worker& worker, Sharing& sharing,
         NotificationCenter& notifications, Clock& clock, bool json, Output output);

    /// One round; the answer is an ExitCode.
    QCoro::Task<int> once();
    /// Rounds until `stop`.
    void start();
    /// Ends the loop, and lets the desktop take what has been announced.
    QCoro::Task<> stop();

private:
    QCoro::Task<PollSummary> roundAfterSignIn();
    void showStatus();
    void write(const HuntReport& report);
    HuntReport takeReport(const PollSummary& summary);
    void sayWhatIsMissing();
    void sayWhatStorageTells();
    void sayIfSignedOut();
    void sayIfRefused();
    QCoro::Task<> notificationsTaken();

    Database& m_database;
    SessionState& m_session;
    Worker& m_worker;
    Sharing& m_sharing;
    NotificationCenter& m_notifications;
    Clock& m_clock;
    bool m_json;
    Output m_output;
    QString m_shownStatus;
    std::optional<QString> m_saidProblem;
    std::optional<QString> m_saidNotice;
    bool m_saidSignedOut = false;
    QString m_saidRefusal;
    QList<Match> m_found;
    QList<SoldOut> m_soldOut;
    /// The last round that has ended, and how many have.
    PollSummary m_lastRound;
    int m_rounds = 0;
};
