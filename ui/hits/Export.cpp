// SPDX-License-Identifier: MIT
#include "ui/hits/Export.h"

#include "TindraVersion.h"
#include "ui/hits/CardText.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

QString address(const Match& match, const Site& site) {
    const auto url = site.bookingAddress(match.bookingURL);
    return url ? QString::fromLatin1(url->toEncoded()) : QString();
}

/// Departure and arrival, flight and address.
QStringList details(const Match& match, const Site& site) {
    QStringList flight{CardText::duration(match), match.key.flights};
    flight.removeAll(QString());
    QStringList lines{u"%1 – %2"_s.arg(match.depart.text(), match.arrive.text()),
                      flight.join(u" · "_s), CardText::fare(match), address(match, site)};
    lines.removeAll(QString());
    return lines;
}

class CalendarFile {
public:
    /// A line, folded so that no piece is longer than 75 octets and no character is split.
    void add(const QString& line) {
        constexpr qsizetype longest = 75;
        qsizetype used = 0;
        for (const char32_t character : line.toUcs4()) {
            const QByteArray bytes = QString::fromUcs4(&character, 1).toUtf8();
            if (used + bytes.size() > longest) {
                m_content += "\r\n ";
                used = 1;
            }
            m_content += bytes;
            used += bytes.size();
        }
        m_content += "\r\n";
    }
    void addText(const QString& name, QString value) {
        value.replace(u'\\', u"\\\\"_s).replace(u';', u"\\;"_s).replace(u',', u"\\,"_s);
        value.remove(u'\r').replace(u'\n', u"\\n"_s);
        value.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
        add(name + u':' + value);
    }
    const QByteArray& content() const { return m_content; }

private:
    QByteArray m_content;
};

void addTimes(CalendarFile& file, const Match& match, QDate travelDate) {
    const QString floating = u"yyyyMMdd'T'HHmmss"_s;
    const QDateTime start(match.depart.date(), match.depart.time(), Qt::UTC);
    if (!match.depart.isKnown()) {
        file.add(u"DTSTART;VALUE=DATE:"_s + travelDate.toString(u"yyyyMMdd"_s));
        return;
    }
    file.add(u"DTSTART:"_s + start.toString(floating));
    // Across the date line one may land before one left, by the local clocks.
    const QDateTime end(match.arrive.date(), match.arrive.time(), Qt::UTC);
    if (match.arrive.isKnown() && end > start)
        file.add(u"DTEND:"_s + end.toString(floating));
    else if (match.durationMinutes > 0)
        file.add(u"DURATION:PT%1M"_s.arg(match.durationMinutes));
}

} // namespace

namespace Export {

QString text(const Match& match, const Site& site) {
    QStringList lines = details(match, site);
    lines.prepend(u"%1 (%2)"_s.arg(match.places(), match.route().text()));
    return lines.join(u'\n');
}

QByteArray calendar(const JourneyGroup& journey, const Site& site, Instant now) {
    const QString stamp = CardText::utc(now).toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    // Two watchers may have found the same offer.
    QSet<OfferId> written;
    CalendarFile file;
    file.add(u"BEGIN:VCALENDAR"_s);
    file.add(u"VERSION:2.0"_s);
    file.add(u"PRODID:-//Tindra//" TINDRA_VERSION "//NO"_s);
    for (const Hit& hit : journey.out + journey.ret) {
        const auto* offer = std::get_if<Match>(&hit);
        if (!offer || !offer->travelDate().isValid() || written.contains(offer->offer()))
            continue;
        const Match& match = *offer;
        written.insert(match.offer());
        file.add(u"BEGIN:VEVENT"_s);
        file.addText(u"UID"_s, match.offer().text() + u"@tindra.app"_s);
        file.add(u"DTSTAMP:"_s + stamp);
        addTimes(file, match, match.travelDate());
        file.addText(u"SUMMARY"_s, u"%1 · %2"_s.arg(match.places(), label(match.cabin)));
        file.addText(u"DESCRIPTION"_s, details(match, site).join(u'\n'));
        if (const QString url = address(match, site); !url.isEmpty())
            file.add(u"URL:"_s + url);
        // Nothing is booked yet.
        file.add(u"TRANSP:TRANSPARENT"_s);
        file.add(u"END:VEVENT"_s);
    }
    file.add(u"END:VCALENDAR"_s);
    return file.content();
}

QString fileName(const QString& title, const QString& extension) {
    constexpr qsizetype longest = 60;
    QString name = title;
    name.replace(QRegularExpression(u"\\s*[→⇄]\\s*"_s), u" - "_s);
    name.remove(QRegularExpression(u"[/\\\\:*?\"<>|\\p{C}]"_s));
    name = name.left(longest).trimmed();
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    return (name.isEmpty() ? u"Tindra"_s : name) + u'.' + extension;
}

} // namespace Export
