// SPDX-License-Identifier: MIT
#include "program/WindowProgram.h"

#include "app/Diagnosis.h"
#include "app/EngineAge.h"
#include "ui/controls/Controls.h"

#include <QDBusConnection>
#include <QDir>
#include <QIcon>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

QIcon applicationIcon() {
    return QIcon(u":/icons/tindra.svg"_s);
}

template<typename T>
QVariant variant(T& object) {
    return QVariant::fromValue(&object);
}

} // namespace

WindowProgram::WindowProgram(Tindra& tindra)
    : m_tindra(tindra)
    , m_appearance(QDBusConnection::sessionBus())
    , m_autostart(QCoreApplication::applicationFilePath())
    , m_tray(QIcon(u":/icons/tindra-small.svg"_s), QDBusConnection::sessionBus())
    , m_login(tindra.state, tindra.standBack,
              {[this] { openLogin(); }, [this] { m_tindra.tryNow(); }})
    , m_form(tindra.appState, tindra.clock)
    , m_watchers(tindra.appState, tindra.worker, tindra.database.watchers(), tindra.clock)
    , m_hits(tindra.appState, tindra.database.offers(), m_desktop, tindra.clock, tindra.site)
    , m_details(tindra.keychain, *tindra.secrets)
    , m_about(m_desktop, aboutSources())
    , m_settings(tindra.appState, tindra.database.settings(), tindra.engine, tindra.notifier,
                 tindra.line.demo ? nullptr : &m_autostart, m_login, m_details, m_about)
    , m_onboarding(tindra.appState, m_login, tindra.clock)
    , m_dashboard(tindra.appState, m_login)
    , m_panel(tindra.appState, tindra.worker, m_login, m_desktop, tindra.site)
    , m_root(tindra.appState, tindra.engine, tindra.line.demo)
    , m_life(m_tray, m_panel, tindra.notifier, tindra.database.safekeeping(),
             QDBusConnection::sessionBus().isConnected() ? LifeCycle::SecondStart::reaches
                                                         : LifeCycle::SecondStart::isLost)
    , m_window((setUpEngine(m_engine, m_theme), m_engine), m_life, m_theme, content())
    , m_panelWindow(m_engine, m_theme, {{u"panel"_s, variant(m_panel)}}) {
    connect(&m_life, &LifeCycle::panelRequested, &m_panelWindow, &PanelWindow::toggle);
    connect(&m_life, &LifeCycle::panelInWindowRequested, &m_panelWindow,
            [this] { m_panelWindow.toggleIn(m_window); });
    connect(&m_life, &LifeCycle::quitRequested, this, &WindowProgram::quitRequested);
    m_window.setIcon(applicationIcon());
}

void WindowProgram::start() {
    // Only now: a window that is but drawn into a file answers nobody.
    connect(&m_tindra.notifications, &NotificationCenter::opened, this, &WindowProgram::showOffer);
    connect(&m_tindra.notifications, &NotificationCenter::actionChosen, this,
            &WindowProgram::bookOffer);
    // Who has finished signing in goes on in the window, which may have been hidden meanwhile.
    connect(&m_tindra.session.window(), &SignInWindow::loginFinished, &m_life,
            &LifeCycle::showWindow);
    m_tray.show();
    m_life.start(m_tindra.line.hidden);
    m_tindra.worker.startTimer();
    m_root.start();
}

void WindowProgram::openHits() {
    m_root.passOverOnboarding();
    m_root.select(RootView::Hits);
    m_hits.openAll();
}

void WindowProgram::openLogin() {
    m_tindra.session.window().openLogin();
}

/// From a notification: the find, among the others.
void WindowProgram::showOffer(const QString& subject) {
    m_root.select(RootView::Hits);
    m_hits.reveal(subject);
    m_life.showWindow();
}

void WindowProgram::bookOffer(const QString& subject) {
    const auto offer = OfferId::fromText(subject);
    const Match* match = nullptr;
    for (const Hit& hit : m_tindra.appState.matches()) {
        const auto* one = std::get_if<Match>(&hit);
        if (one && one->offer() == offer) {
            match = one;
            break;
        }
    }
    const auto address = match ? m_tindra.site.bookingAddress(match->bookingURL) : std::nullopt;
    if (address)
        m_desktop.open(*address);
    else
        showOffer(subject);
}

AboutTindra::Sources WindowProgram::aboutSources() const {
    const QString engine = WebKitRuntime::version();
    return {engine, m_tindra.folders.data(),
            [this, engine] { return EngineAge::warning(engine, m_tindra.clock.today()); },
            [this, engine] {
                const Diagnosis::Program program{engine, m_tindra.webKit->isSandboxed(),
                                                 m_tindra.folders.data(), QDir::homePath(),
                                                 qEnvironmentVariable("USER")};
                const auto facts = Diagnosis::collect(m_tindra.database, m_tindra.appState,
                                                      m_tindra.state, m_tindra.clock, program);
                return Diagnosis::text(facts, Diagnosis::secrets(m_tindra.appState, program));
            }};
}

QVariantMap WindowProgram::content() {
    return {{u"root"_s, variant(m_root)},         {u"figures"_s, variant(m_dashboard)},
            {u"form"_s, variant(m_form)},         {u"login"_s, variant(m_login)},
            {u"watchers"_s, variant(m_watchers)}, {u"hits"_s, variant(m_hits)},
            {u"settings"_s, variant(m_settings)}, {u"onboarding"_s, variant(m_onboarding)},
            {u"life"_s, variant(m_life)}};
}
