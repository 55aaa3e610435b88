// SPDX-License-Identifier: MIT
#pragma once

#include "core/Settings.h"
#include "ui/session/SessionModel.h"
#include "ui/settings/AboutTindra.h"
#include "ui/settings/SignInDetails.h"

#include <QStringList>

class AppState;
class Autostart;
class LegFetcher;
class Notifier;

/// The settings screen. Every change is stored at once; what could not be stored keeps its old
/// value.
class SettingsView : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(SettingsViewModel)
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(SessionModel* pill READ pill CONSTANT)
    Q_PROPERTY(SignInDetails* details READ details CONSTANT)
    Q_PROPERTY(AboutTindra* about READ about CONSTANT)
    Q_PROPERTY(bool autoLoginOn READ autoLoginOn WRITE setAutoLoginOn NOTIFY changed)
    Q_PROPERTY(bool notifyOn READ notifyOn WRITE setNotifyOn NOTIFY changed)
    Q_PROPERTY(bool notifySoldOut READ notifySoldOut WRITE setNotifySoldOut NOTIFY changed)
    Q_PROPERTY(bool shareHits READ shareHits WRITE setShareHits NOTIFY changed)
    /// Absent in the demo.
    Q_PROPERTY(bool offersAutostart READ offersAutostart CONSTANT)
    Q_PROPERTY(bool autostartOn READ autostartOn WRITE setAutostartOn NOTIFY changed)
    /// Why the start at sign-in could not be switched; empty otherwise.
    Q_PROPERTY(QString autostartProblem READ autostartProblem NOTIFY changed)
    Q_PROPERTY(QStringList intervalLabels READ intervalLabels NOTIFY intervalsChanged)
    Q_PROPERTY(int intervalIndex READ intervalIndex NOTIFY intervalIndexChanged)
public:
    /// All must outlive the view. `autostart` is null where nothing may start by itself.
    SettingsView(AppState& state, Settings& settings, LegFetcher& airline, Notifier& notifier,
                 Autostart* autostart, SessionModel& pill, SignInDetails& details,
                 AboutTindra& about);

    SessionModel* pill() const { return &m_pill; }
    SignInDetails* details() const { return &m_details; }
    AboutTindra* about() const { return &m_about; }
    bool autoLoginOn() const;
    bool notifyOn() const;
    bool notifySoldOut() const;
    bool shareHits() const;
    bool offersAutostart() const { return m_autostart; }
    bool autostartOn() const;
    const QString& autostartProblem() const { return m_autostartProblem; }
    QStringList intervalLabels() const;
    int intervalIndex() const;

    void setAutoLoginOn(bool on);
    void setNotifyOn(bool on);
    void setNotifySoldOut(bool on);
    void setShareHits(bool on);
    void setAutostartOn(bool on);

    /// The page comes into view: everything is read afresh.
    Q_INVOKABLE void open();
    /// The page goes; what was not stored is forgotten.
    Q_INVOKABLE void close();
    Q_INVOKABLE void checkLogin();
    Q_INVOKABLE void testNotification();
    Q_INVOKABLE void pickInterval(int index);

Q_SIGNALS:
    void changed();
    void intervalsChanged();
    void intervalIndexChanged();

private:
    void store(const Setting::Switch& setting, bool on);
    void offerIntervals();

    AppState& m_state;
    Settings& m_settings;
    LegFetcher& m_airline;
    Notifier& m_notifier;
    Autostart* m_autostart;
    SessionModel& m_pill;
    SignInDetails& m_details;
    AboutTindra& m_about;
    QString m_autostartProblem;
    /// Minutes. An unusual one stays on offer for as long as the page is open.
    QList<double> m_intervals;
};
