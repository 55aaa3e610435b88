// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSet>
#include <QString>

class WebView;

/// The hosts that the web view has begun to load since they were last forgotten, in lower case:
/// how a chain of redirects shows where it went.
class NavHosts : public QObject {
    Q_OBJECT
public:
    explicit NavHosts(WebView& view);

    void clear() { m_hosts.clear(); }
    bool isEmpty() const { return m_hosts.isEmpty(); }
    /// Whether a host's name contains this text.
    bool visited(const QString& host) const;

private:
    QSet<QString> m_hosts;
};
