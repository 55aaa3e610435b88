// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <initializer_list>
#include <optional>

enum class Cabin : quint8 { economy, premeco, business, first };

/// All cabins, from the back of the aircraft to the front.
inline constexpr std::array allCabins{Cabin::economy, Cabin::premeco, Cabin::business,
                                      Cabin::first};

/// The text that records, database and community service use, such as "premeco".
QString rawValue(Cabin cabin);
/// Absent for any text that is not exactly one of the four raw values.
std::optional<Cabin> cabinFromRaw(QStringView text);

/// What the user sees, such as "Premium".
QString label(Cabin cabin);

/// Some of the four cabins.
class CabinSet {
public:
    constexpr CabinSet() = default;
    constexpr CabinSet(std::initializer_list<Cabin> cabins) {
        for (const Cabin cabin : cabins)
            insert(cabin);
    }

    constexpr void insert(Cabin cabin) { m_bits |= bit(cabin); }
    constexpr void remove(Cabin cabin) { m_bits &= static_cast<quint8>(~bit(cabin)); }
    constexpr bool contains(Cabin cabin) const { return (m_bits & bit(cabin)) != 0; }
    constexpr bool isEmpty() const { return m_bits == 0; }
    constexpr CabinSet operator&(CabinSet other) const { return CabinSet(m_bits & other.m_bits); }
    constexpr CabinSet operator-(CabinSet other) const { return CabinSet(m_bits & ~other.m_bits); }

    bool operator==(const CabinSet&) const = default;

    /// Iterates over what is in the set, in the order of the raw values' bytes.
    class Iterator {
    public:
        Cabin operator*() const { return order[m_place]; }
        Iterator& operator++() {
            ++m_place;
            skip();
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_place == other.m_place; }

    private:
        friend CabinSet;
        Iterator(const CabinSet* set, size_t place) : m_set(set), m_place(place) { skip(); }
        void skip() {
            while (m_place < order.size() && !m_set->contains(order[m_place]))
                ++m_place;
        }
        static constexpr std::array order{Cabin::business, Cabin::economy, Cabin::first,
                                          Cabin::premeco};
        const CabinSet* m_set;
        size_t m_place;
    };
    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, allCabins.size()}; }

private:
    constexpr explicit CabinSet(int bits) : m_bits(static_cast<quint8>(bits)) {}
    static constexpr quint8 bit(Cabin cabin) {
        return static_cast<quint8>(1U << static_cast<quint8>(cabin));
    }
    quint8 m_bits = 0;
};

/// The raw values in ascending byte order, joined by ",".
QString encodeCabins(CabinSet cabins);
/// The reverse; what is no cabin is left out.
CabinSet decodeCabins(const QString& text);
/// What the user sees of several, in the same order: "Business, Premium".
QString cabinLabels(CabinSet cabins);
