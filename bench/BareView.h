// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>

#include <functional>
#include <memory>

/// A WebKitGTK view with nothing of ours in it: no hook, no filter, no rules. It runs at full
/// speed while hidden, as ours does, since a throttled one would be no measure.
class BareView {
public:
    BareView();
    ~BareView();
    Q_DISABLE_COPY_MOVE(BareView)

    /// Loads the page and calls back when its title contains `titlePart`.
    void load(const QUrl& url, const QByteArray& titlePart, std::function<void()> onShown);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
