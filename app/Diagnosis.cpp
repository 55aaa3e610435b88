// SPDX-License-Identifier: MIT
#include "app/Diagnosis.h"

#include "TindraVersion.h"
#include "airline/SessionState.h"
#include "app/AppState.h"
#include "app/EngineAge.h"
#include "core/Database.h"
#include "core/SqliteConnection.h"
#include "polling/Worker.h"

#include <QDateTime>
#include <QFile>
#include <QSysInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The end of the log that is read.
constexpr qint64 logBytes = 256 * 1024;

QString loginText(SASLoginStatus::Case state) {
    switch (state) {
    case SASLoginStatus::Case::loggedIn:
        return u"innlogget"_s;
    case SASLoginStatus::Case::checking:
        return u"sjekkes"_s;
    case SASLoginStatus::Case::loggedOut:
        return u"utlogget"_s;
    case SASLoginStatus::Case::unknown:
        break;
    }
    return u"ikke sjekket ennå"_s;
}

QString pollText(const PollSummary& poll) {
    const auto at =
        QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSince1970(poll.at)), Qt::UTC);
    return u"%1, %2 overvåkere, %3 reiser, %4 passer, %5 nye, %6 utsolgt, %7 feil"_s
        .arg(at.toString(Qt::ISODate))
        .arg(poll.searches)
        .arg(poll.fetched)
        .arg(poll.matches)
        .arg(poll.newAlerts)
        .arg(poll.soldOut)
        .arg(poll.errors.size());
}

QString environment(const char* name) {
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? u"ukjent"_s : value;
}

} // namespace

namespace Diagnosis {

QStringList lastLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const bool isCut = file.size() > logBytes && file.seek(file.size() - logBytes);
    QStringList lines = QString::fromUtf8(file.read(logBytes)).split(u'\n');
    // Half a line could hide what a whole one shows to be private.
    if (isCut)
        lines.removeFirst();
    lines.removeAll(QString());
    return lines.mid(std::max<qsizetype>(0, lines.size() - logLines));
}

Redaction::Secrets secrets(const AppState& state, const Program& program) {
    Redaction::Secrets secrets{program.homeFolder, program.userName, {}};
    for (const Search& watcher : state.searches())
        secrets.words += QStringList{watcher.name} + Search::codes(watcher.origin) +
                         Search::codes(watcher.destination);
    secrets.words.removeDuplicates();
    return secrets;
}

Facts collect(Database& database, const AppState& state, const SessionState& session,
              const Clock& clock, const Program& program) {
    Facts facts;
    facts.versions = {{u"Tindra"_s, QStringLiteral(TINDRA_VERSION)},
                      {u"Qt"_s, QString::fromLatin1(qVersion())},
                      {u"WebKitGTK"_s, program.engine},
                      {u"Sandkasse"_s, program.isSandboxed ? u"ja"_s : u"nei"_s},
                      {u"SQLite"_s, SqliteConnection::version()},
                      {u"System"_s, QSysInfo::prettyProductName()},
                      {u"Kjerne"_s, QSysInfo::kernelVersion()},
                      {u"Arkitektur"_s, QSysInfo::currentCpuArchitecture()},
                      {u"Skrivebord"_s, environment("XDG_CURRENT_DESKTOP")},
                      {u"Økt"_s, environment("XDG_SESSION_TYPE")}};
    facts.engineWarning = EngineAge::warning(program.engine, clock.today()).value_or(QString());
    facts.problem = database.problem().value_or(QString());
    facts.notice = database.notice().value_or(QString());
    facts.watchers = static_cast<int>(state.searches().size());
    facts.enabledWatchers = static_cast<int>(enabledOf(state.searches()).size());
    for (const Hit& hit : state.matches()) {
        const auto* match = std::get_if<Match>(&hit);
        ++facts.offers;
        facts.soldOutRecords += match ? 0 : 1;
        facts.communityFinds += match && match->isCommunity ? 1 : 0;
    }
    facts.login = loginText(session.loginStatus().state);
    facts.lastPoll = state.lastPoll();
    const Settings& settings = database.settings();
    for (const auto& one : {Setting::onboarded, Setting::nativeNotify, Setting::notifySoldOut,
                            Setting::shareHits, Setting::autoLogin})
        facts.settings.append({one.key, settings.isOn(one) ? u"på"_s : u"av"_s});
    facts.settings.append({Setting::pollIntervalMin.key, QString::number(state.pollIntervalMin())});
    // Where it points is the user's own affair.
    facts.settings.append({Setting::communityUrl.key,
                           settings.text(Setting::communityUrl) ? u"egen"_s : u"vanlig"_s});
    facts.log = lastLines(program.folder + u"/ui.log"_s);
    return facts;
}

QString text(const Facts& facts, const Redaction::Secrets& secrets) {
    QStringList lines;
    const auto add = [&lines](const QString& name, const QString& value) {
        lines.append(name + u": "_s + value);
    };
    for (const auto& [name, version] : facts.versions)
        add(name, version);
    if (!facts.engineWarning.isEmpty())
        lines.append(facts.engineWarning);
    add(u"Lagring"_s,
        facts.problem.isEmpty() ? u"i orden"_s : Redaction::line(facts.problem, secrets));
    if (!facts.notice.isEmpty())
        lines.append(Redaction::line(facts.notice, secrets));
    add(u"Overvåkere"_s, u"%1 (%2 i gang)"_s.arg(facts.watchers).arg(facts.enabledWatchers));
    add(u"Treff"_s, u"%1 (%2 utsolgt, %3 fra fellesskapet)"_s.arg(facts.offers)
                        .arg(facts.soldOutRecords)
                        .arg(facts.communityFinds));
    add(u"SAS"_s, facts.login);
    add(u"Siste runde"_s, facts.lastPoll ? pollText(*facts.lastPoll) : u"ingen"_s);
    for (const auto& [key, value] : facts.settings)
        add(key, value);
    lines.append(u"\nLogg:"_s);
    for (const QString& line : facts.log)
        lines.append(Redaction::line(line, secrets));
    return lines.join(u'\n') + u'\n';
}

} // namespace Diagnosis
