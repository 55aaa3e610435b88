// SPDX-License-Identifier: MIT
#pragma once

#include "tests/e2e/AccessibleTree.h"

/// A person before the display: eyes that are a screen reader's, hands on mouse and keyboard.
class Person {
public:
    using Item = AccessibleTree::Item;

    bool isThere() const { return m_tree.isThere(); }

    /// What is wanted, as soon as it is on the screen. Absent after `timeoutMs`; then everything
    /// that is there is printed.
    std::optional<Item> find(const AccessibleTree::Wanted& wanted, int timeoutMs = 20000) const;
    /// Whether `text`, or something named with it, comes to be on the screen.
    bool sees(const QString& text, int timeoutMs = 20000) const;
    /// Whether it is there now.
    bool seesNow(const QString& text) const;
    /// What can be pressed or filled in, and has `text` in its name.
    std::optional<Item> control(const QString& text) const;
    /// The same in a part of the screen.
    std::optional<Item> controlIn(QRect part, const QString& text) const;

    /// Presses such a control with the mouse, or the place; false when it does not come.
    bool press(const QString& text) const;
    static void press(QPoint place);
    static void type(const QString& text);
    /// Closes the window whose title is exactly `title`, as a window manager asks for it; false
    /// when none is shown.
    static bool close(const QString& title);
    /// A key as X11 names it, such as "Return" or "ctrl+a".
    static void key(const QString& name);

private:
    AccessibleTree m_tree;
};
