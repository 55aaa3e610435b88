// SPDX-License-Identifier: MIT
#include "TindraVersion.h"
#include "standin/Leg.h"
#include "standin/StandIn.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

using standin::Misbehaviour;
using standin::Options;

struct Wish {
    Options options;
    QList<std::pair<QString, Misbehaviour>> misbehaviours;
};

// Reads a number in a range, or says in `error` what is wrong with it.
template<typename Number>
void readNumber(const QCommandLineParser& line, const char* name, qulonglong most, Number& into,
                QString& error) {
    const QString option = QLatin1String(name);
    if (!line.isSet(option))
        return;
    bool ok = false;
    const qulonglong value = line.value(option).toULongLong(&ok);
    if (!ok || value > most)
        error = QStringLiteral("--%1 takes a number from 0 to %2, not \"%3\"")
                    .arg(option, QString::number(most), line.value(option));
    else
        into = Number(value);
}

void addOptions(QCommandLineParser& line) {
    line.setApplicationDescription(
        QStringLiteral("A stand-in for the airline's web site, on this machine only."));
    line.addHelpOption();
    line.addVersionOption();
    const QString milliseconds = QStringLiteral("ms");
    line.addOptions(
        {{QStringLiteral("port"), QStringLiteral("Listens on this port (default: a free one)."),
          QStringLiteral("n")},
         {QStringLiteral("seed"), QStringLiteral("Another timetable and other seats (default 1)."),
          QStringLiteral("n")},
         {QStringLiteral("page-delay"),
          QStringLiteral("From a page's load to its offer request (default 150)."), milliseconds},
         {QStringLiteral("response-bytes"),
          QStringLiteral("Pads offer answers to about this size."), QStringLiteral("n")},
         {QStringLiteral("state"),
          QStringLiteral(
              "Keeps the looks at each leg and the sessions in this file, for the next run."),
          QStringLiteral("file")},
         {QStringLiteral("misbehave"),
          QStringLiteral("Misbehaves at a leg such as OSL-BKK-20270301, or at every one (*). "
                         "Kinds: %1. NNN is the status of the offers' answer or of the search "
                         "page, TEXT its Retry-After header, whatever it says, as in "
                         "*=status:429:60. Repeatable.")
              .arg(Misbehaviour::words().join(QStringLiteral(", "))),
          QStringLiteral("leg=kind")},
         {QStringLiteral("refuse-after"),
          QStringLiteral("Refuses once by itself: after so many answered offers, requests for "
                         "offers get status 429 for a while (see --refuse-for)."),
          QStringLiteral("n")},
         {QStringLiteral("refuse-for"),
          QStringLiteral("How long that lasts, and its Retry-After header (default 60)."),
          QStringLiteral("s")}});
}

void addSignInOptions(QCommandLineParser& line) {
    const QString seconds = QStringLiteral("s");
    line.addOptions(
        {{QStringLiteral("require-sign-in"),
          QStringLiteral("Shows offers to signed-in visitors only.")},
         {QStringLiteral("user"),
          QStringLiteral("User name of the one account (default demo@tindra.example)."),
          QStringLiteral("name")},
         {QStringLiteral("password"), QStringLiteral("Its password (default demo)."),
          QStringLiteral("text")},
         {QStringLiteral("challenge"),
          QStringLiteral("Challenge of the sign-in forms: none, never (it is not solved by "
                         "itself), or solved by itself after milliseconds (default 500)."),
          QStringLiteral("kind")},
         {QStringLiteral("challenge-required"),
          QStringLiteral("Does not accept a form without the solved challenge.")},
         {QStringLiteral("site-session"),
          QStringLiteral("Seconds after which the site signs a visitor out (default: never)."),
          seconds},
         {QStringLiteral("sso-session"),
          QStringLiteral("Seconds after which single sign-on ends (default: never)."), seconds},
         {QStringLiteral("sso-without-offers"),
          QStringLiteral("Single sign-on works, but offers need a sign-in with the password.")},
         {QStringLiteral("everybody-known"),
          QStringLiteral("The identity provider knows every browser already.")},
         {QStringLiteral("sign-in-trouble"),
          QStringLiteral("The identity provider redirects for ever (redirects), shows an empty "
                         "page (blank) or the same form again and again (loop)."),
          QStringLiteral("kind")}});
}

QString readMisbehaviours(const QCommandLineParser& line, Wish& wish) {
    const QStringList values = line.values(QStringLiteral("misbehave"));
    for (const QString& value : values) {
        const QString leg = value.section(u'=', 0, 0).toUpper();
        const auto kind = Misbehaviour::of(value.section(u'=', 1));
        if (!kind || (leg != u"*" && !standin::Leg::fromKey(leg)))
            return QStringLiteral("--misbehave takes LEG=KIND, such as OSL-BKK-20270301=never, "
                                  "not \"%1\"")
                .arg(value);
        wish.misbehaviours.append({leg, *kind});
    }
    return {};
}

QString readChallenge(const QString& text, standin::SignInOptions& signIn) {
    using Challenge = standin::SignInOptions::Challenge;
    bool ok = true;
    if (text == u"none")
        signIn.challenge = Challenge::None;
    else if (text == u"never")
        signIn.challenge = Challenge::Never;
    else
        signIn.challengeDelay = std::chrono::milliseconds(text.toUInt(&ok));
    return ok ? QString()
              : QStringLiteral("--challenge takes none, never or milliseconds, not \"%1\"")
                    .arg(text);
}

QString readTrouble(const QString& text, standin::SignInOptions& signIn) {
    using Trouble = standin::SignInOptions::Trouble;
    if (text == u"redirects")
        signIn.trouble = Trouble::EndlessRedirects;
    else if (text == u"blank")
        signIn.trouble = Trouble::BlankPage;
    else if (text == u"loop")
        signIn.trouble = Trouble::FormLoops;
    else
        return QStringLiteral("--sign-in-trouble takes redirects, blank or loop, not \"%1\"")
            .arg(text);
    return {};
}

QString readSignIn(const QCommandLineParser& line, standin::SignInOptions& signIn) {
    constexpr qulonglong tenYears = 3650ULL * 86'400;
    qint64 site = 0;
    qint64 sso = 0;
    QString error;
    readNumber(line, "site-session", tenYears, site, error);
    readNumber(line, "sso-session", tenYears, sso, error);
    if (!error.isEmpty())
        return error;
    signIn.siteSession = std::chrono::seconds(site);
    signIn.ssoSession = std::chrono::seconds(sso);
    signIn.isRequired = line.isSet(QStringLiteral("require-sign-in"));
    signIn.isChallengeRequired = line.isSet(QStringLiteral("challenge-required"));
    signIn.isEverybodyKnown = line.isSet(QStringLiteral("everybody-known"));
    signIn.isSsoWithoutOffers = line.isSet(QStringLiteral("sso-without-offers"));
    if (line.isSet(QStringLiteral("user")))
        signIn.user = line.value(QStringLiteral("user"));
    if (line.isSet(QStringLiteral("password")))
        signIn.password = line.value(QStringLiteral("password"));
    if (line.isSet(QStringLiteral("challenge")))
        error = readChallenge(line.value(QStringLiteral("challenge")), signIn);
    if (error.isEmpty() && line.isSet(QStringLiteral("sign-in-trouble")))
        error = readTrouble(line.value(QStringLiteral("sign-in-trouble")), signIn);
    return error;
}

void readRefusal(const QCommandLineParser& line, Options& options, QString& error) {
    standin::Refusal refusal;
    qulonglong seconds = qulonglong(refusal.retryAfter.count());
    readNumber(line, "refuse-after", 1'000'000, refusal.afterOffers, error);
    readNumber(line, "refuse-for", 86'400, seconds, error);
    refusal.retryAfter = std::chrono::seconds(seconds);
    if (line.isSet(QStringLiteral("refuse-after")))
        options.refusal = refusal;
    else if (line.isSet(QStringLiteral("refuse-for")))
        error = QStringLiteral("--refuse-for needs --refuse-after");
}

// The first error of the command line, empty when there is none.
QString readWish(const QCommandLineParser& line, Wish& wish) {
    if (!line.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument \"%1\"").arg(line.positionalArguments().first());
    QString error;
    qulonglong delay = qulonglong(wish.options.pageDelay.count());
    readNumber(line, "port", 65'535, wish.options.port, error);
    readNumber(line, "seed", std::numeric_limits<quint64>::max(), wish.options.seed, error);
    readNumber(line, "page-delay", 600'000, delay, error);
    readNumber(line, "response-bytes", 100'000'000, wish.options.responseBytes, error);
    wish.options.pageDelay = std::chrono::milliseconds(delay);
    readRefusal(line, wish.options, error);
    wish.options.stateFile = line.value(QStringLiteral("state"));
    if (error.isEmpty())
        error = readSignIn(line, wish.options.signIn);
    return error.isEmpty() ? readMisbehaviours(line, wish) : error;
}

int complain(const QString& error) {
    std::fprintf(stderr, "tindra-standin: %s\n", qUtf8Printable(error));
    return 2;
}

void printAddresses(const standin::StandIn& site) {
    std::printf("# The stand-in site is at %s/\n"
                "# Start Tindra with these settings in its environment:\n"
                "export TINDRA_SITE_ORIGIN=%s\n"
                "export TINDRA_SITE_DOMAIN=%s\n"
                "export TINDRA_IDP_HOST=%s\n"
                "export TINDRA_IDP_DOMAIN=%s\n",
                qUtf8Printable(site.siteOrigin()), qUtf8Printable(site.siteOrigin()),
                qUtf8Printable(site.siteDomain()), qUtf8Printable(site.idpHost()),
                qUtf8Printable(site.idpDomain()));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    app.setApplicationName(QStringLiteral("tindra-standin"));
    app.setApplicationVersion(QStringLiteral(TINDRA_VERSION));

    QCommandLineParser line;
    addOptions(line);
    addSignInOptions(line);
    if (!line.parse(app.arguments()))
        return complain(line.errorText());
    if (line.isSet(QStringLiteral("help")))
        line.showHelp();
    if (line.isSet(QStringLiteral("version")))
        line.showVersion();
    Wish wish;
    if (const QString error = readWish(line, wish); !error.isEmpty())
        return complain(error);

    // Blocked before the server's thread exists, so that only sigwait() below gets them.
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);

    standin::StandIn site(wish.options);
    for (const auto& [leg, misbehaviour] : wish.misbehaviours)
        site.misbehave(leg, misbehaviour);
    if (const auto error = site.start()) {
        std::fprintf(stderr, "tindra-standin: %s\n", qUtf8Printable(*error));
        return 1;
    }
    printAddresses(site);
    int signal = 0;
    sigwait(&endings, &signal);
    site.stop();
    return 0;
}
