// SPDX-License-Identifier: MIT
#pragma once

#include "ui/watchers/ActivityStrip.h"
#include "ui/watchers/EditWatcherSheet.h"
#include "ui/watchers/LastCheckStrip.h"
#include "ui/watchers/WatcherCards.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

class AppState;
class Clock;
class WatcherStore;
class Worker;

/// All watchers with what the user can do to them. Every change goes to the database, and the
/// cards follow from what that holds then.
class WatchersSection : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(WatchersSectionModel)
    QML_UNCREATABLE("made by whoever shows the page")

    Q_PROPERTY(WatcherCards* cards READ cards CONSTANT)
    Q_PROPERTY(ActivityStrip* activity READ activity CONSTANT)
    Q_PROPERTY(LastCheckStrip* lastCheck READ lastCheck CONSTANT)
    /// "2 aktive".
    Q_PROPERTY(QString activeText READ activeText NOTIFY changed)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY changed)
    /// Whether any watcher is on.
    Q_PROPERTY(bool active READ isActive NOTIFY changed)
    /// Whether "Sjekk alle nå" would start a round: a watcher is on and no round runs or begins.
    Q_PROPERTY(bool canCheck READ canCheck NOTIFY changed)
    /// Whether the cards are on the screen; only then do their times go on.
    Q_PROPERTY(bool shown READ isShown WRITE setShown NOTIFY shownChanged)
    /// The watcher being edited; null when none is.
    Q_PROPERTY(EditWatcherSheet* sheet READ sheet NOTIFY sheetChanged)
public:
    /// All must outlive the section.
    WatchersSection(AppState& state, Worker& worker, WatcherStore& store, Clock& clock);

    WatcherCards* cards() { return &m_cards; }
    ActivityStrip* activity() { return &m_activity; }
    LastCheckStrip* lastCheck() { return &m_lastCheck; }
    QString activeText() const;
    bool isEmpty() const;
    bool isActive() const { return active() > 0; }
    bool canCheck() const;
    bool isShown() const { return m_isShown; }
    void setShown(bool shown);
    EditWatcherSheet* sheet() { return m_sheet; }

    /// Starts a round without waiting for it, or says why there is none.
    Q_INVOKABLE void checkAll();
    Q_INVOKABLE void toggle(qint64 id);
    /// Nothing when the watcher is `on` already.
    Q_INVOKABLE void setWatching(qint64 id, bool on);
    /// An empty name makes the route the title.
    Q_INVOKABLE void rename(qint64 id, const QString& name);
    /// Deletes the watcher with its offers; `undoRemove` brings the last one back.
    Q_INVOKABLE void remove(qint64 id);
    Q_INVOKABLE void undoRemove();
    /// Opens `sheet`; nothing for an id that is gone.
    Q_INVOKABLE void edit(qint64 id);
    /// The same with its windows moved so that they begin today.
    Q_INVOKABLE void editMoved(qint64 id);
    Q_INVOKABLE void closeSheet();

Q_SIGNALS:
    void changed();
    void shownChanged();
    void sheetChanged();
    /// A watcher has been deleted and can be brought back, or could not be; `text` says so.
    void removed(const QString& text);
    /// "Sjekk alle nå" could not start a round; `text` says why.
    void refused(const QString& text);

private:
    int active() const;
    void openSheet(const Search& watcher, const EditedWindows& windows);
    void refresh();
    void show(const QList<Search>& watchers);
    void keepTime();

    AppState& m_state;
    Worker& m_worker;
    WatcherStore& m_store;
    Clock& m_clock;
    WatcherCards m_cards;
    ActivityStrip m_activity;
    LastCheckStrip m_lastCheck;
    /// A child; null while no watcher is edited.
    EditWatcherSheet* m_sheet = nullptr;
    std::unique_ptr<Clock::Timer> m_minute;
    bool m_isShown = false;
    /// A watcher has been deleted and not been brought back.
    bool m_canUndo = false;
    /// A round has been asked for; before it runs it may have to revive the session.
    bool m_isBeginning = false;
};
