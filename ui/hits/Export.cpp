// SPDX-License-Identifier: MIT
#include "ui/hits/Export.h"

#include "TindraVersion.h"
#include "core/Cabin.h"
#include "core/DateFmt.h"
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
    QStringList flight{CardText::duration(match), match.flight};
    flight.removeAll(QString());
    QStringList lines{u"%1 – %2"_s.arg(match.depart, match.arrive), flight.join(u" · "_s),
                      CardText::fare(match), address(match, site)};
    lines.removeAll(QString());
    return lines;
}

/// The local time of a text such as "14.03 09:05" on the first such day from the one before
/// `earliest` on; invalid when the text is of another form.
QDateTime timeOf(const QString& text, QDate earliest) {
    const QStringList pieces = text.split(u' ', Qt::SkipEmptyParts);
    const QTime time = pieces.size() == 2 ? QTime::fromString(pieces[1], u"HH:mm"_s) : QTime();
    if (!time.isValid())
        return {};
    const QDate start = earliest.addDays(-1);
    for (int year = start.year(); year <= start.year() + 1; ++year) {
        const QDate date =
            QDate::fromString(pieces[0] + u'.' + QString::number(year), u"dd.MM.yyyy"_s);
        if (date.isValid() && date >= start)
            return {date, time, Qt::UTC};
    }
    return {};
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
    const QDateTime start = timeOf(match.depart, travelDate);
    if (!start.isValid()) {
        file.add(u"DTSTART;VALUE=DATE:"_s + travelDate.toString(u"yyyyMMdd"_s));
        return;
    }
    file.add(u"DTSTART:"_s + start.toString(floating));
    // Across the date line one may land before one left, by the local clocks.
    const QDateTime end = timeOf(match.arrive, start.date());
    if (end > start)
        file.add(u"DTEND:"_s + end.toString(floating));
    else if (match.durationMinutes > 0)
        file.add(u"DURATION:PT%1M"_s.arg(match.durationMinutes));
}

} // namespace

namespace Export {

QString text(const Match& match, const Site& site) {
    QStringList lines = details(match, site);
    lines.prepend(u"%1 (%2)"_s.arg(match.places(), match.route));
    return lines.join(u'\n');
}

QByteArray calendar(const JourneyGroup& journey, const Site& site, Instant now) {
    const QString stamp = CardText::utc(now).toString(u"yyyyMMdd'T'HHmmss'Z'"_s);
    // Two watchers may have found the same offer.
    QSet<QString> written;
    CalendarFile file;
    file.add(u"BEGIN:VCALENDAR"_s);
    file.add(u"VERSION:2.0"_s);
    file.add(u"PRODID:-//Tindra//" TINDRA_VERSION "//NO"_s);
    for (const Match& match : journey.out + journey.ret) {
        const auto travelDate = DateFmt::parseIso(match.travelDate);
        const QString uid = u"%1#%2@tindra.app"_s.arg(match.key, match.cabin);
        if (match.soldOut || !travelDate || written.contains(uid))
            continue;
        written.insert(uid);
        file.add(u"BEGIN:VEVENT"_s);
        file.addText(u"UID"_s, uid);
        file.add(u"DTSTAMP:"_s + stamp);
        addTimes(file, match, *travelDate);
        file.addText(u"SUMMARY"_s, u"%1 · %2"_s.arg(match.places(), cabinLabel(match.cabin)));
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
