// SPDX-License-Identifier: MIT
#pragma once

#include "airline/FetchedLegs.h"
#include "airline/Site.h"
#include "platform/Clock.h"
#include "platform/OneShot.h"

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

class WebView;
struct ScriptMessage;

/// Loads one search page at a time and waits for the offer response that the page's own scripts
/// fetch for it.
///
/// A hook in every page of the airline copies offer responses to this object. Pages of others can
/// send messages too, so a message counts only with this run's secret word, in the right shape,
/// and for the leg that is waited for.
class Capture : public QObject {
    Q_OBJECT
public:
    /// The body of the response in UTF-8; absent when none came. One above `largestBody` comes
    /// empty, which is no answer to any parser.
    using Body = std::optional<QByteArray>;

    /// Installs the hook in `view`, which must outlive this object, as `clock` must.
    Capture(WebView& view, Clock& clock, Site site);
    ~Capture() override;

    /// One page load. `outDate` is "yyyyMMdd"; `award` selects the award flow. A capture that is
    /// still waiting ends at once with nothing.
    QCoro::Task<Body> capture(QString origin, QString dest, QString outDate, bool award,
                              std::chrono::milliseconds timeout);
    /// Ends the capture that waits, if any, with nothing.
    void end();

private:
    struct Leg {
        QString origin;
        QString dest;
        QString outDate;
        bool award;
    };

    void receive(const ScriptMessage& message);
    QUrl pageOf(const Leg& leg) const;

    WebView& m_view;
    Clock& m_clock;
    Site m_site;
    QByteArray m_word;
    OneShot<Body> m_pending;
    std::optional<Leg> m_leg;
    std::unique_ptr<Clock::Timer> m_timeout;
};
