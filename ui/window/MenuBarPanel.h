// SPDX-License-Identifier: MIT
#pragma once

#include "airline/Site.h"
#include "core/Match.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

class AppState;
class Desktop;
class SessionModel;
class Worker;

/// The compact panel beside the desktop's status area: whether the hunt is on, and its latest find.
class MenuBarPanel : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(MenuBarPanelModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool isHunting READ isHunting NOTIFY changed)
    Q_PROPERTY(QString headline READ headline NOTIFY changed)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(bool canTryNow READ canTryNow NOTIFY changed)
    Q_PROPERTY(bool hasLatest READ hasLatest NOTIFY changed)
    Q_PROPERTY(QString latestRoute READ latestRoute NOTIFY changed)
    Q_PROPERTY(QString latestText READ latestText NOTIFY changed)
    Q_PROPERTY(bool canBook READ canBook NOTIFY changed)
public:
    /// All must outlive the panel. `site` is where booking addresses may lead.
    MenuBarPanel(AppState& state, Worker& worker, SessionModel& login, Desktop& desktop, Site site);

    /// A watcher is enabled.
    bool isHunting() const;
    QString headline() const;
    /// Such as "3 overvåkere · sjekker nå…".
    QString countText() const;
    /// Why the hunt gets no data; empty when it does.
    QString warning() const;
    /// The airline asks to be left alone, and the user may ask it all the same.
    bool canTryNow() const;
    bool hasLatest() const { return latest() != nullptr; }
    QString latestRoute() const;
    QString latestText() const;
    bool canBook() const;

    Q_INVOKABLE void book();
    /// Starts a round, without waiting for it; nothing while one runs.
    Q_INVOKABLE void checkNow();
    Q_INVOKABLE void tryNow();
    Q_INVOKABLE void openTindra() { Q_EMIT openRequested(); }

Q_SIGNALS:
    void changed();
    /// The main window is wanted in front.
    void openRequested();

private:
    /// The newest offer that is not sold out; null when there is none.
    const Match* latest() const;
    std::optional<QUrl> address() const;

    AppState& m_state;
    Worker& m_worker;
    SessionModel& m_login;
    Desktop& m_desktop;
    Site m_site;
};
