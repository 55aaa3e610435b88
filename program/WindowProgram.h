// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/DesktopAppearance.h"
#include "platform/linux/LinuxDesktop.h"
#include "platform/linux/QtTray.h"
#include "platform/linux/XdgAutostart.h"
#include "program/Tindra.h"
#include "ui/hits/HitsPage.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/search/BoardingPassSearchCard.h"
#include "ui/session/SessionModel.h"
#include "ui/settings/SettingsView.h"
#include "ui/theme/Theme.h"
#include "ui/watchers/WatchersSection.h"
#include "ui/window/DashboardView.h"
#include "ui/window/LifeCycle.h"
#include "ui/window/MenuBarPanel.h"
#include "ui/window/RootView.h"
#include "ui/window/Windows.h"

#include <QQmlEngine>

/// The application with its window, panel and tray icon, over everything that hunts.
class WindowProgram : public QObject {
    Q_OBJECT
public:
    /// Needs a QApplication. `tindra` must outlive it.
    explicit WindowProgram(Tindra& tindra);

    /// Shows the window, unless the user asked for none, and begins to hunt.
    void start();
    /// Brings the window to the front.
    void activate() { m_life.showWindow(); }

    /// The page with the finds, every journey open, whether the onboarding is finished or not. Does
    /// not show the window.
    void openHits();

    QQuickView& window() { return m_window; }
    QQuickView& panel() { return m_panelWindow; }

Q_SIGNALS:
    void quitRequested();

private:
    AboutTindra::Sources aboutSources() const;
    void openLogin();
    void showOffer(const QString& subject);
    void bookOffer(const QString& subject);
    QVariantMap content();

    Tindra& m_tindra;
    LinuxDesktop m_desktop;
    DesktopAppearance m_appearance;
    XdgAutostart m_autostart;
    QtTray m_tray;
    Theme m_theme{m_appearance};

    SessionModel m_login;
    BoardingPassSearchCard m_form;
    WatchersSection m_watchers;
    HitsPage m_hits;
    SignInDetails m_details;
    AboutTindra m_about;
    SettingsView m_settings;
    OnboardingView m_onboarding;
    DashboardView m_dashboard;
    MenuBarPanel m_panel;
    RootView m_root;
    LifeCycle m_life;

    QQmlEngine m_engine;
    MainWindow m_window;
    PanelWindow m_panelWindow;
};
