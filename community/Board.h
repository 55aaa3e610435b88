// SPDX-License-Identifier: MIT
#pragma once

#include "community/StoreThread.h"

#include <list>
#include <string>
#include <unordered_map>
#include <vector>

namespace community {

/// What is shown: finished answers by route, so that a route that many ask for is read once.
///
/// A page is kept for a second, for others may write into the same store, and forgotten as soon as
/// this service has written itself. All calls come from one thread.
class Board {
public:
    static constexpr std::chrono::milliseconds freshness{1000};
    /// An answer has at most this many bytes.
    static constexpr std::size_t mostAnswerBytes = 1'000'000;

    /// `mostBytes`: of all pages that are kept.
    Board(StoreThread& store, Clock clock, std::size_t mostBytes);

    /// The finds of these routes, newest first. `done` is called at once or later; with null when
    /// the store fails.
    void finds(const std::vector<std::string>& routes, StoreThread::PageDone done);
    void forget(const std::string& route);

private:
    struct Kept {
        std::string route;
        PagePtr page;
        Time until;
    };
    struct Waiting {
        std::vector<PagePtr> pages;
        std::size_t missing = 0;
        StoreThread::PageDone done;
    };

    PagePtr kept(const std::string& route, Time now);
    void keep(const std::string& route, const PagePtr& page);
    void erase(std::list<Kept>::iterator entry);
    void arrived(const std::string& route, const PagePtr& page);
    static void finish(Waiting& waiting, bool failed);

    StoreThread& m_store;
    Clock m_clock;
    std::size_t m_mostBytes;
    std::size_t m_bytes = 0;
    std::list<Kept> m_kept; // the last used first
    std::unordered_map<std::string, std::list<Kept>::iterator> m_byRoute;
    std::unordered_map<std::string, std::vector<std::shared_ptr<Waiting>>> m_readings;
};

} // namespace community
