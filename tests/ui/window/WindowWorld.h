// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/FakeTray.h"
#include "tests/ui/settings/SettingsWorld.h"
#include "ui/hits/HitsPage.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/search/BoardingPassSearchCard.h"
#include "ui/watchers/WatchersSection.h"
#include "ui/window/DashboardView.h"
#include "ui/window/LifeCycle.h"
#include "ui/window/MenuBarPanel.h"
#include "ui/window/RootView.h"

#include <QJsonDocument>

/// All that the main window shows, over a world without an airline.
struct WindowWorld : SettingsWorld {
    explicit WindowWorld(bool isDemo = false) : root(state, airline, isDemo) {
        state.finishOnboarding();
        http.answer = [](const HttpRequest&) { return HttpResponse{200, "{\"hits\":[]}"}; };
    }

    FakeTray tray;
    BoardingPassSearchCard form{state, clock};
    WatchersSection watchers{state, worker, database.watchers(), clock};
    HitsPage hits{state, database.offers(), desktop, clock, Site{}};
    OnboardingView onboarding{state, pill, clock};
    DashboardView dashboard{state, pill};
    MenuBarPanel panel{state, worker, pill, desktop, Site{}};
    LifeCycle life{tray, panel, notifier, database.safekeeping(), LifeCycle::SecondStart::reaches};
    RootView root;

    void lastPollWas(int fetched, const QStringList& errors = {}) {
        PollSummary summary;
        summary.at = clock.now();
        summary.searches = 3;
        summary.fetched = fetched;
        summary.matches = 41;
        summary.errors = errors;
        database.safekeeping().set(Kept::lastPoll,
                                   QString::fromUtf8(QJsonDocument(summary.toJson()).toJson()));
        state.reload();
    }

    QVariantMap content() {
        return {{QStringLiteral("root"), QVariant::fromValue(&root)},
                {QStringLiteral("figures"), QVariant::fromValue(&dashboard)},
                {QStringLiteral("form"), QVariant::fromValue(&form)},
                {QStringLiteral("login"), QVariant::fromValue(&pill)},
                {QStringLiteral("watchers"), QVariant::fromValue(&watchers)},
                {QStringLiteral("hits"), QVariant::fromValue(&hits)},
                {QStringLiteral("settings"), QVariant::fromValue(&view)},
                {QStringLiteral("onboarding"), QVariant::fromValue(&onboarding)},
                {QStringLiteral("life"), QVariant::fromValue(&life)}};
    }
};
