// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class AppState;
class LegFetcher;

/// The main window's frame: which page is shown, and what concerns all of them.
class RootView : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(RootViewModel)
    QML_UNCREATABLE("made by the program")
    /// A SidebarSection.
    Q_PROPERTY(int selection READ selection WRITE select NOTIFY selectionChanged)
    Q_PROPERTY(bool onboarded READ onboarded NOTIFY onboardedChanged)
    /// "4 nye", or empty.
    Q_PROPERTY(QString hitsBadge READ hitsBadge NOTIFY hitsBadgeChanged)
    /// What the user should know wherever they are; empty when all is well.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    /// It tells of something that has happened and passed; what is still wrong stays.
    Q_PROPERTY(bool canDismissNotice READ canDismissNotice NOTIFY noticeChanged)
    Q_PROPERTY(bool isDemo READ isDemo CONSTANT)
public:
    enum SidebarSection { Dashboard, Watchers, Hits, Settings };
    Q_ENUM(SidebarSection)

    /// All must outlive the view.
    RootView(AppState& state, LegFetcher& fetcher, bool isDemo);

    int selection() const { return m_selection; }
    /// Anything that is no section selects the dashboard.
    void select(int section);
    bool onboarded() const;
    /// Shows the pages without an onboarding, for as long as the view lives; nothing is stored.
    void passOverOnboarding();
    QString hitsBadge() const;
    QString notice() const;
    bool canDismissNotice() const;
    Q_INVOKABLE void dismissNotice();
    bool isDemo() const { return m_isDemo; }

    /// Once, when the window is first shown: without an enabled watcher no round will check the
    /// sign-in, so this does.
    void start();

Q_SIGNALS:
    void selectionChanged();
    void onboardedChanged();
    void hitsBadgeChanged();
    void noticeChanged();

private:
    AppState& m_state;
    LegFetcher& m_fetcher;
    bool m_isDemo;
    bool m_passesOverOnboarding = false;
    int m_selection = Dashboard;
    bool m_isStarted = false;
};
