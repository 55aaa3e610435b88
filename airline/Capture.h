// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Leg.h"
#include "airline/OfferParser.h"
#include "airline/Outcome.h"
#include "airline/Site.h"
#include "platform/Clock.h"
#include "platform/OneShot.h"
#include "platform/WebView.h"

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

/// Loads one search page at a time and finds out what becomes of it: mostly the offer response that
/// the page's own scripts fetch for it.
///
/// A hook in every page of the airline copies offer responses to this object. Pages of others can
/// send messages too, so a message counts only with this run's secret word, in the right shape,
/// and for the leg that is waited for.
///
/// An answer ends a capture at once, and so does a page of the identity provider. What else comes
/// is held for some seconds first, since pages ask again and challenges let browsers through.
class Capture : public QObject {
    Q_OBJECT
public:
    /// Installs the hook in `view`, which must outlive this object, as `clock` must.
    Capture(WebView& view, Clock& clock, Site site);
    ~Capture() override;

    /// One page load. Absent when somebody else needed the web view; a capture that still waits is
    /// ended so.
    QCoro::Task<std::optional<Outcome>> capture(Leg leg, std::chrono::milliseconds timeout);
    /// Ends the capture that waits, if any, with nothing.
    void end();

private:
    void conclude(std::optional<Outcome> outcome);
    void conclude(Outcome::Kind kind);
    void hold(Outcome outcome, std::chrono::milliseconds time);
    void giveUp();
    void receive(const ScriptMessage& message);
    void takePage(const QUrl& url, int status, const QString& retryAfter);
    void lookLater();
    QCoro::Task<> lookAtPage();

    WebView& m_view;
    Clock& m_clock;
    Site m_site;
    OfferParser m_parser;
    QByteArray m_word;
    OneShot<std::optional<Outcome>> m_pending;
    /// What is captured now, and which capture of this run that is.
    std::optional<Leg> m_leg;
    int m_number = 0;
    bool m_hasPage = false;
    /// What it will be when nothing better comes.
    std::optional<Outcome> m_held;
    std::unique_ptr<Clock::Timer> m_timeout;
    std::unique_ptr<Clock::Timer> m_holding;
    std::unique_ptr<Clock::Timer> m_nextLook;
};
