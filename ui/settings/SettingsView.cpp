// SPDX-License-Identifier: MIT
#include "ui/settings/SettingsView.h"

#include "airline/LegFetcher.h"
#include "app/AppState.h"
#include "core/Database.h"
#include "platform/Autostart.h"
#include "polling/Notifier.h"
#include "ui/settings/CheckInterval.h"

using namespace Qt::StringLiterals;

namespace {

const QString autoLoginKey = u"auto_login"_s;
const QString notifyKey = u"native_notify"_s;
const QString notifySoldOutKey = u"notify_soldout"_s;
const QString shareHitsKey = u"share_hits"_s;
const QString intervalKey = u"poll_interval_min"_s;

} // namespace

SettingsView::SettingsView(AppState& state, Database& database, LegFetcher& airline,
                           Notifier& notifier, Autostart* autostart, SessionModel& pill,
                           SignInDetails& details, AboutTindra& about)
    : m_state(state)
    , m_database(database)
    , m_airline(airline)
    , m_notifier(notifier)
    , m_autostart(autostart)
    , m_pill(pill)
    , m_details(details)
    , m_about(about)
    , m_intervals(CheckInterval::choices(state.pollIntervalMin())) {
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
    return m_database.isOn(autoLoginKey, false);
}

bool SettingsView::notifyOn() const {
    return m_state.notifyOn();
}

bool SettingsView::notifySoldOut() const {
    return m_database.isOn(notifySoldOutKey, true);
}

bool SettingsView::shareHits() const {
    return m_database.isOn(shareHitsKey, true);
}

bool SettingsView::autostartOn() const {
    return m_autostart && m_autostart->isOn();
}

void SettingsView::setAutoLoginOn(bool on) {
    store(autoLoginKey, on);
}

void SettingsView::setNotifyOn(bool on) {
    store(notifyKey, on);
    m_state.setNotifyOn(m_database.isOn(notifyKey, true));
}

void SettingsView::setNotifySoldOut(bool on) {
    store(notifySoldOutKey, on);
}

void SettingsView::setShareHits(bool on) {
    store(shareHitsKey, on);
    m_state.refreshCommunity();
}

void SettingsView::setAutostartOn(bool on) {
    if (!m_autostart)
        return;
    m_autostartProblem = m_autostart->setOn(on).value_or(QString());
    Q_EMIT changed();
}

void SettingsView::store(const QString& key, bool on) {
    m_database.set(key, on ? u"1"_s : u"0"_s);
    noteStorage();
    Q_EMIT changed();
}

/// A change that failed, or worked again, is news to the state.
void SettingsView::noteStorage() {
    if (m_database.problem().value_or(QString()) != m_state.storageProblem())
        m_state.reload();
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
    if (index < 0 || index >= m_intervals.size())
        return;
    const double minutes = m_intervals[index];
    const QString text = CheckInterval::toStore(minutes);
    m_database.set(intervalKey, text);
    noteStorage();
    if (m_database.get(intervalKey) == text)
        m_state.setPollIntervalMin(minutes);
}

void SettingsView::offerIntervals() {
    const auto intervals = CheckInterval::choices(m_state.pollIntervalMin());
    if (std::exchange(m_intervals, intervals) != intervals)
        Q_EMIT intervalsChanged();
}
