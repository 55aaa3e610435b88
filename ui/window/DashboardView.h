// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class AppState;
class SessionModel;

/// The dashboard's figures and its notice, read from the state that the screens share.
class DashboardView : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(DashboardViewModel)
    QML_UNCREATABLE("made by the program")
    /// What failed at the last check; empty when nothing did, and while signed out, which is shown
    /// instead.
    Q_PROPERTY(QString errorText READ errorText NOTIFY changed)
    Q_PROPERTY(QString watchersValue READ watchersValue NOTIFY changed)
    Q_PROPERTY(QString pausedText READ pausedText NOTIFY changed)
    Q_PROPERTY(QString hitsValue READ hitsValue NOTIFY changed)
    Q_PROPERTY(QString hitsText READ hitsText NOTIFY changed)
    Q_PROPERTY(bool hasNewHits READ hasNewHits NOTIFY changed)
    Q_PROPERTY(QString lastCheckValue READ lastCheckValue NOTIFY changed)
    Q_PROPERTY(QString lastCheckSub READ lastCheckSub NOTIFY changed)
public:
    /// Both must outlive the view.
    DashboardView(AppState& state, SessionModel& session);

    QString errorText() const;
    QString watchersValue() const;
    /// Such as "aktive · 2 pauset".
    QString pausedText() const;
    QString hitsValue() const;
    QString hitsText() const;
    bool hasNewHits() const;
    /// When the last round began, in the user's time zone, such as "14:05"; an en dash when there
    /// was none or its time is damaged.
    QString lastCheckValue() const;
    QString lastCheckSub() const;

Q_SIGNALS:
    void changed();

private:
    AppState& m_state;
    SessionModel& m_session;
};
