// SPDX-License-Identifier: MIT
// The page "Treff" with as many offers as the application ever shows, in the software renderer.
#include "airports/Airports.h"
#include "bench/Results.h"
#include "core/DateFmt.h"
#include "tests/support/AppWorld.h"
#include "tests/support/FakeDesktop.h"
#include "tests/ui/support/PageWindow.h"
#include "ui/hits/HitsPage.h"

#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int shownOffers = 2000;
constexpr int journeys = 300;
constexpr int hitsRepetitions = 5;

double millisecondsOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double best(const std::function<double()>& measure) {
    double least = measure();
    for (int i = 1; i < hitsRepetitions; ++i)
        least = std::min(least, measure());
    return least;
}

/// A full list: every third journey both ways, every eighth offer sold out.
class HitsBench {
public:
    HitsBench() {
        QSet<QString> cities{u"Oslo"_s};
        for (const auto& airport : Airports::all()) {
            const QString city = Airports::metro(airport.code);
            if (m_destinations.size() < journeys && !cities.contains(city))
                m_destinations.append(airport);
            cities.insert(city);
        }
        m_world.http.answer = [](const HttpRequest&) { return std::nullopt; };
        m_world.addWatcher(u"EWR"_s, [](Search& s) { s.returnDateTo = QDate(2027, 6, 1); });
        m_world.database.transaction([this] {
            for (int i = 0; i < shownOffers; ++i)
                store(i);
        });
        m_world.state.reload();
    }

    void store(int number) {
        const int journey = number % journeys;
        Airports::Airport from{u"OSL"_s, u"Oslo"_s};
        Airports::Airport to = m_destinations[journey];
        if (journey % 3 == 0 && number / journeys % 2 == 1)
            std::swap(from, to);
        const QDate date = QDate(2027, 2, 1).addDays(number % 97);
        const Instant foundAt =
            m_world.clock.now() - std::chrono::minutes((shownOffers - number) * 3);
        const FareKey key{
            date, {from.code, to.code}, u"SK%1,SK%2"_s.arg(900 + number).arg(1400 + number)};
        if (number % 8 == 0) {
            m_world.database.offers().recordSoldOut(
                {0, 1, key, {Cabin::business}, key.route.text() + u' ' + key.flights, foundAt});
            return;
        }
        Match m;
        m.searchId = 1;
        m.key = key;
        m.fromCity = from.city;
        m.toCity = to.city;
        m.depart = {date, {11, 5}};
        m.arrive = {date, {23, 20}};
        m.stops = Stops{1, {u"CPH"_s}};
        m.durationMinutes = 735;
        m.cabin = Cabin::business;
        m.seats = 1 + number % 4;
        m.points = 50000 + number % 13 * 2500;
        m.bookingURL = u"https://www.sas.no/book/flights/?search=OW_"_s + m.route().text();
        m.foundAt = foundAt;
        m_world.database.offers().recordMatch(m);
    }

    double group() {
        const auto& state = m_world.state;
        return millisecondsOf([&state] {
            const auto filtered = Journeys::filtered(state.matches(), {}, {});
            const auto groups = Journeys::grouped(
                filtered, Journeys::SortOrder::region, Journeys::CardOrder::travel,
                [&state](const Match& m) { return state.direction(m) == Direction::out; });
            if (Journeys::regionSections(groups).isEmpty())
                qFatal("nothing grouped");
        });
    }

    void openAll() {
        for (const JourneyGroup& journey : QList(m_page.journeys()))
            m_page.toggle(journey.id);
    }

    /// Three new offers, from the database to the rows.
    double news() {
        for (int i = 0; i < 3; ++i)
            store(shownOffers + m_news++);
        return reload();
    }
    /// The same where every card on the screen moves: before the first cards of the page.
    double visibleNews() {
        QList<Match> first;
        for (const HitsRow& row : m_page.rows()->rows()) {
            const bool isNext = row.kind == HitsRow::Kind::cards && row.id.endsWith(u"UTREISE0");
            const auto* match = isNext ? std::get_if<Match>(&row.cards.first().hit) : nullptr;
            if (match && first.size() < 3)
                first.append(*match);
        }
        for (Match& offer : first) {
            offer.key.flights += QString::number(++m_news);
            offer.foundAt = m_world.clock.now();
            m_world.database.offers().recordMatch(offer);
        }
        return reload();
    }
    double reload() {
        return millisecondsOf([this] {
            QCoreApplication::sendPostedEvents(&m_world.database);
            QCoreApplication::sendPostedEvents(&m_page);
        });
    }

    HitsPage& page() { return m_page; }
    QVariantMap properties() { return {{u"page"_s, QVariant::fromValue(&m_page)}}; }

private:
    AppWorld m_world;
    FakeDesktop m_desktop;
    HitsPage m_page{m_world.state, m_world.database.offers(), m_desktop, m_world.clock, Site{}};
    int m_news = 0;
    QList<Airports::Airport> m_destinations;
};

/// All that one frame takes, apart from the waiting.
double frame(PageWindow& window, const std::function<void()>& change) {
    bool isDrawn = false;
    const auto drawn = QObject::connect(&window.window(), &QQuickWindow::afterRendering,
                                        [&isDrawn] { isDrawn = true; });
    const double time = millisecondsOf([&] {
        change();
        QEvent update(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&window.window(), &update);
    });
    QObject::disconnect(drawn);
    if (!isDrawn)
        qFatal("nothing was drawn");
    return time;
}

/// The longest frame of a long scroll. Each frame counts with the best of several scrolls, so that
/// what else the machine does is not measured.
double longestFrame(PageWindow& window) {
    QQuickItem& list = *window.find(u"list"_s);
    constexpr int frames = 400;
    constexpr double pixels = 53;
    QList<double> times(frames, 1e9);
    for (int i = 0; i < hitsRepetitions; ++i) {
        list.setProperty("contentY", 0);
        settle();
        for (int step = 0; step < frames; ++step)
            times[step] =
                std::min(times[step],
                         frame(window, [&] { list.setProperty("contentY", (step + 1) * pixels); }));
    }
    return *std::max_element(times.begin(), times.end());
}

Result line(const QString& subject, double milliseconds, double goal) {
    return {subject, u"%1 ms"_s.arg(milliseconds, 0, 'f', 1), u"< %1 ms"_s.arg(goal),
            milliseconds < goal};
}

} // namespace

QList<Result> measureHits() {
    HitsBench hits;
    QList<Result> results{line(u"2000 offers to %1 journeys, sorted, under regions"_s.arg(journeys),
                               best([&hits] { return hits.group(); }), 8)};

    PageWindow window(u"Tindra.Hits"_s, u"HitsView"_s, hits.properties());
    // A round has brought news meanwhile.
    results += line(u"to the page \"Treff\", with all offers to group"_s, best([&] {
                        window.root()->setVisible(false);
                        hits.news();
                        return frame(window, [&] { window.root()->setVisible(true); });
                    }),
                    100);
    results += line(u"the page made anew, with an engine and a window of its own"_s, best([&] {
                        return millisecondsOf([&] {
                            PageWindow other(u"Tindra.Hits"_s, u"HitsView"_s, hits.properties());
                            other.grab();
                        });
                    }),
                    100);
    results += line(u"longest frame scrolling %1 closed journeys"_s.arg(journeys),
                    longestFrame(window), 16);
    results += line(u"three new offers, stored to shown rows"_s,
                    best([&hits] { return hits.news(); }), 16);
    hits.openAll();
    settle();
    results += line(u"longest frame scrolling all their cards"_s, longestFrame(window), 16);
    results += line(u"three new offers with every journey open"_s,
                    best([&hits] { return hits.news(); }), 16);
    window.find(u"list"_s)->setProperty("contentY", 0);
    settle();
    results += line(u"three new offers that move every card on the screen"_s,
                    best([&hits] { return hits.visibleNews(); }), 16);
    results += line(u"the frame that shows them"_s, best([&] {
                        hits.visibleNews();
                        return frame(window, [] {});
                    }),
                    16);
    return results;
}
