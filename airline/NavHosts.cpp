// SPDX-License-Identifier: MIT
#include "airline/NavHosts.h"

#include "platform/WebView.h"

#include <algorithm>

NavHosts::NavHosts(WebView& view) {
    connect(&view, &WebView::navigating, this, [this](const QUrl& url) {
        if (!url.host().isEmpty())
            m_hosts.insert(url.host().toLower());
    });
}

bool NavHosts::visited(const QString& host) const {
    return std::any_of(m_hosts.begin(), m_hosts.end(),
                       [&host](const QString& seen) { return seen.contains(host); });
}
