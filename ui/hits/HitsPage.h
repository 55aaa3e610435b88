// SPDX-License-Identifier: MIT
#pragma once

#include "ui/hits/HitsFilter.h"
#include "ui/hits/HitsModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

class AppState;
class Desktop;
class OfferStore;

/// The page "Treff": all offers as journeys. Everything but the deletion of all hits only reads
/// the state that the screens share. Main thread only.
class HitsPage : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(HitsModel* rows READ rows CONSTANT)
    Q_PROPERTY(HitsFilter* filter READ filter CONSTANT)
    Q_PROPERTY(int columns READ columns WRITE setColumns NOTIFY columnsChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY contentChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY contentChanged)
    Q_PROPERTY(bool hasMatches READ hasMatches NOTIFY contentChanged)
    Q_PROPERTY(bool confirmClear READ confirmClear WRITE setConfirmClear NOTIFY confirmClearChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY noticeChanged)
    Q_PROPERTY(bool shown READ shown WRITE setShown NOTIFY shownChanged)
public:
    /// All must outlive the page.
    HitsPage(AppState& state, OfferStore& offers, Desktop& desktop, Clock& clock, const Site& site);
    ~HitsPage() override;

    HitsModel* rows() { return &m_rows; }
    HitsFilter* filter() { return &m_filter; }
    /// Cards side by side.
    int columns() const { return m_layout.columns; }
    void setColumns(int columns);

    /// The offers that pass the filter bar.
    const QList<Hit>& filtered() const { return m_filtered; }
    /// These, grouped and sorted.
    const QList<JourneyGroup>& journeys() const { return m_journeys; }
    QString countText() const;
    /// Why the list is empty; empty when it is not.
    QString emptyText() const;
    /// There is something to delete.
    bool hasMatches() const;

    bool confirmClear() const { return m_confirmClear; }
    void setConfirmClear(bool confirm);
    /// Deletes every stored offer; until the notice of it is dismissed there is a way back.
    Q_INVOKABLE void clearAll();
    Q_INVOKABLE void undoClear();
    /// A line about what just happened; empty when there is nothing to say.
    const QString& notice() const { return m_notice; }
    bool canUndo() const { return m_canUndo; }
    Q_INVOKABLE void dismissNotice();

    /// Opens the journey of the offer called `subject`, its key, "#" and cabin, and asks for it to
    /// be scrolled to. Filters that hide it are reset; nothing happens when it is not there.
    void reveal(const QString& subject);
    /// Opens every journey that is there by now.
    void openAll();
    /// Opens a closed journey and closes an open one.
    Q_INVOKABLE void toggle(const QString& journey);
    /// The nearest row after `row` (before it, with a negative step) that the keyboard stops at,
    /// which headings are not; `row` itself when there is none.
    Q_INVOKABLE int nextStop(int row, int step) const;
    /// Opens the booking page of a card in the user's browser.
    Q_INVOKABLE void book(int row, int column);
    /// Puts the offer of a card on the clipboard.
    Q_INVOKABLE void copy(int row, int column);
    /// Writes a calendar file of a journey as it is shown.
    Q_INVOKABLE void exportJourney(const QString& journey);
    /// Writes a table of `filtered`.
    Q_INVOKABLE void exportTable();

    bool shown() const { return m_shown; }
    /// A page that is not shown does no work; one that comes into view asks for the community's
    /// finds, and tells the ages of its cards anew every minute.
    void setShown(bool shown);

Q_SIGNALS:
    void columnsChanged();
    void contentChanged();
    void confirmClearChanged();
    void noticeChanged();
    void shownChanged();
    /// A row is to come into view.
    void revealed(int row);

private:
    void scheduleRegroup();
    void regroup();
    void layOut();
    void startMinute();
    void say(const QString& text, bool canUndo = false);
    void save(const QString& name, const QByteArray& content);

    AppState& m_state;
    OfferStore& m_offers;
    Desktop& m_desktop;
    Clock& m_clock;
    Site m_site;

    HitsFilter m_filter;
    HitsLayout m_layout;
    QList<Hit> m_filtered;
    QList<JourneyGroup> m_journeys;
    HitsModel m_rows;
    bool m_isStale = true;
    bool m_isScheduled = false;
    bool m_shown = false;
    bool m_confirmClear = false;
    QString m_notice;
    bool m_canUndo = false;
    std::unique_ptr<Clock::Timer> m_minute;
};
