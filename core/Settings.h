// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1StringView>
#include <QObject>
#include <QString>

#include <array>
#include <optional>

class KeyValues;

/// Everything that the user can choose: its name in the file, its type, and what it is until the
/// user has chosen.
namespace Setting {

/// Stored as "1" and "0"; on only when it is exactly "1".
struct Switch {
    QLatin1StringView key;
    bool usual;
};
/// Stored as the shortest decimal text with a fractional digit, such as "15.0"; read from any text
/// of a finite number, and cut to the limits.
struct Number {
    QLatin1StringView key;
    double usual;
    double least;
    double most;
};
/// Stored as it is.
struct Text {
    QLatin1StringView key;
};

/// The welcome was gone through.
inline constexpr Switch onboarded{QLatin1StringView("onboarded"), false};
/// Desktop notifications, all of them.
inline constexpr Switch nativeNotify{QLatin1StringView("native_notify"), true};
/// Notifications that an offer has sold out.
inline constexpr Switch notifySoldOut{QLatin1StringView("notify_soldout"), true};
/// Finds are shared with other hunters, and theirs are shown.
inline constexpr Switch shareHits{QLatin1StringView("share_hits"), true};
/// The program signs in by itself, with the details from the keychain.
inline constexpr Switch autoLogin{QLatin1StringView("auto_login"), false};
/// Minutes from the end of a round to the next one; more than a week is a slip of the pen.
inline constexpr Number pollIntervalMin{QLatin1StringView("poll_interval_min"), 10, 1, 7 * 24 * 60};
/// Base address of the community service; the build's own until it is set.
inline constexpr Text communityUrl{QLatin1StringView("community_url")};

inline constexpr std::array keys{onboarded.key,   nativeNotify.key, notifySoldOut.key,
                                 shareHits.key,   autoLogin.key,    pollIntervalMin.key,
                                 communityUrl.key};

} // namespace Setting

/// What the user has chosen.
class Settings : public QObject {
    Q_OBJECT
public:
    explicit Settings(KeyValues& values) : m_values(values) {}

    bool isOn(const Setting::Switch& setting) const;
    double number(const Setting::Number& setting) const { return number(setting, setting.usual); }
    /// With another value for what is missing or no number.
    double number(const Setting::Number& setting, double otherwise) const;
    /// Absent until it is set.
    std::optional<QString> text(const Setting::Text& setting) const;

    /// These say whether it could be stored. Not inside a transaction.
    bool set(const Setting::Switch& setting, bool on);
    bool set(const Setting::Number& setting, double value);
    bool set(const Setting::Text& setting, const QString& text);

Q_SIGNALS:
    /// The setting of this key may have another value.
    void changed(const QString& key);

private:
    bool store(QLatin1StringView key, const QString& value);

    KeyValues& m_values;
};
