// SPDX-License-Identifier: MIT
#pragma once

#include "tests/ui/support/PageWindow.h"

#include <QList>
#include <QSize>

#include <functional>
#include <memory>
#include <vector>

/// One picture being made: the page, and the world it shows.
class Shot {
public:
    Shot(QSize size, bool dark) : m_size(size), m_dark(dark) {}

    /// Makes an object that lives as long as the page.
    template<typename T, typename... Arguments>
    T& make(Arguments&&... arguments) {
        auto object = std::make_shared<T>(std::forward<Arguments>(arguments)...);
        m_world.push_back(object);
        return *object;
    }
    /// Shows `type` of `module`; once.
    void show(const QString& module, const QString& type, const QVariantMap& properties = {}) {
        m_page = std::make_unique<PageWindow>(module, type, properties, m_size);
        m_page->appearance.setDark(m_dark);
    }
    /// The page, to press and type on after `show`.
    PageWindow& page() { return *m_page; }

private:
    QSize m_size;
    bool m_dark;
    std::vector<std::shared_ptr<void>> m_world;
    std::unique_ptr<PageWindow> m_page;
};

/// A named state of a screen; a static object of it is enough to have it drawn, in both modes.
class Screen {
public:
    using Build = std::function<void(Shot&)>;

    /// Drawn in the window's sizes, least, usual and large.
    Screen(const QString& name, Build build);
    /// Drawn in one size only.
    Screen(const QString& name, QSize size, Build build);

    static const QList<Screen>& all();

    QString name;
    QList<QSize> sizes;
    Build build;
};
