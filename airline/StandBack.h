// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clock.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class Safekeeping;

/// The site has asked to be left alone: until when nothing is looked at and nobody signs in by
/// program. Kept in the database, so that a restart changes nothing.
///
/// The time is the site's own, between a minute and four hours, or where it names none, a quarter
/// of an hour that doubles up to four hours for as long as no answer comes between.
class StandBack : public QObject {
    Q_OBJECT
public:
    /// Reads what is left of an earlier run. Both must outlive this object.
    StandBack(Safekeeping& kept, Clock& clock);
    ~StandBack() override;

    bool isOn() const { return m_end.has_value(); }
    /// By the wall clock; absent when the site may be asked.
    std::optional<Instant> until() const;

    /// The site has refused; `retryAfter` is its header, `status` the response's or 0.
    void refuse(const QString& retryAfter, int status);
    /// The site has answered: its next refusal is a first one again.
    void answered();
    /// The user wants to try now.
    void lift();

    /// What the user is told, such as "SAS ber oss vente til 14:32", in the user's time zone and
    /// never too early.
    static QString text(Instant until);

Q_SIGNALS:
    void changed();

private:
    void begin(std::chrono::seconds pause);
    void end();
    void store();

    Safekeeping& m_kept;
    Clock& m_clock;
    std::optional<Ticks> m_end;
    /// How long was waited last without the site naming a time; 0 after an answer.
    std::chrono::seconds m_ownPause{0};
    std::unique_ptr<Clock::Timer> m_timer;
};
