// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

class TestBus;

/// One line of the table: what was measured, against what it is held.
struct Result {
    QString subject;
    /// With its unit or the ratio.
    QString measured;
    /// The goal, such as "≥ 0,85".
    QString goal;
    bool reached = false;
};

QString table(const QList<Result>& results);

// Each measures one subject; they need a display and GLib's event loop where they load pages.
QList<Result> measureCaptures();
QList<Result> measureLookups();
QList<Result> measureRounds();
QList<Result> measureTelling();
/// `bus` gets a keychain.
QList<Result> measureStream(TestBus& bus);
QList<Result> measureHits();
QList<Result> measureState();
QList<Result> measureWatchers();
QList<Result> measureMemory();
QList<Result> measureWindow();
