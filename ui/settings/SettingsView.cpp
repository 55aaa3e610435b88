// SPDX-License-Identifier: MIT
#include "ui/settings/SettingsView.h"

#include "airline/LegFetcher.h"
#include "app/AppState.h"
#include "core/Settings.h"
#include "platform/Autostart.h"
#include "polling/Notifier.h"
#include "ui/settings/CheckInterval.h"

using namespace Qt::StringLiterals;

SettingsView::SettingsView(AppState& state, Settings& settings, LegFetcher& airline,
                           Notifier& notifier, Autostart* autostart, SessionModel& pill,
                           SignInDetails& details, AboutTindra& about)
    : m_state(state)
    , m_settings(settings)
    , m_airline(airline)
    , m_notifier(notifier)
    , m_autostart(autostart)
    , m_pill(pill)
    , m_details(details)
    , m_about(about)
    , m_intervals(CheckInterval::choices(state.pollIntervalMin())) {
    connect(&settings, &Settings::changed, this, &SettingsView::changed);
    connect(&state, &AppState::notifyOnChanged, this, &SettingsView::changed);
    connect(&state, &AppState::pollIntervalMinChanged, this, [this] {
        if (!m_intervals.contains(m_state.pollIntervalMin()))
            offerIntervals();
        Q_EMIT intervalIndexChanged();
    });
}

void SettingsView::open() {
    m_autostartProblem.clear();
    m_details.open();
    m_about.open();
    offerIntervals();
    Q_EMIT intervalIndexChanged();
    Q_EMIT changed();
}

void SettingsView::close() {
    m_details.close();
}

bool SettingsView::autoLoginOn() const {
    return m_settings.isOn(Setting::autoLogin);
}

bool SettingsView::notifyOn() const {
    return m_state.notifyOn();
}

bool SettingsView::notifySoldOut() const {
    return m_settings.isOn(Setting::notifySoldOut);
}

bool SettingsView::shareHits() const {
    return m_settings.isOn(Setting::shareHits);
}

bool SettingsView::autostartOn() const {
    return m_autostart && m_autostart->isOn();
}

void SettingsView::setAutoLoginOn(bool on) {
    store(Setting::autoLogin, on);
}

void SettingsView::setNotifyOn(bool on) {
    m_state.setNotifyOn(on);
}

void SettingsView::setNotifySoldOut(bool on) {
    store(Setting::notifySoldOut, on);
}

void SettingsView::setShareHits(bool on) {
    store(Setting::shareHits, on);
    m_state.refreshCommunity();
}

void SettingsView::setAutostartOn(bool on) {
    if (!m_autostart)
        return;
    m_autostartProblem = m_autostart->setOn(on).value_or(QString());
    Q_EMIT changed();
}

void SettingsView::store(const Setting::Switch& setting, bool on) {
    if (!m_settings.set(setting, on))
        Q_EMIT changed();
}

void SettingsView::checkLogin() {
    if (!m_pill.isChecking())
        m_airline.verifyLogin();
}

void SettingsView::testNotification() {
    m_notifier.post(u"✈️ Tindra"_s, u"Slik ser et varsel ut når en saver-plass dukker opp."_s);
}

QStringList SettingsView::intervalLabels() const {
    QStringList labels;
    for (const double minutes : m_intervals)
        labels.append(CheckInterval::label(minutes));
    return labels;
}

int SettingsView::intervalIndex() const {
    return static_cast<int>(m_intervals.indexOf(m_state.pollIntervalMin()));
}

void SettingsView::pickInterval(int index) {
    if (index >= 0 && index < m_intervals.size())
        m_state.setPollIntervalMin(m_intervals[index]);
}

void SettingsView::offerIntervals() {
    const auto intervals = CheckInterval::choices(m_state.pollIntervalMin());
    if (std::exchange(m_intervals, intervals) != intervals)
        Q_EMIT intervalsChanged();
}
