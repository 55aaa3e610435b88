// SPDX-License-Identifier: MIT
#include "community/Board.h"

#include <algorithm>
#include <utility>

namespace community {

namespace {

// A kept page takes somewhat more than its text, above all when it is empty.
std::size_t weight(const Page& page) {
    return page.json.size() + page.finds.size() * sizeof(Page::Entry) + 300;
}

} // namespace

Board::Board(StoreThread& store, Clock clock, std::size_t mostBytes)
    : m_store(store), m_clock(std::move(clock)), m_mostBytes(mostBytes) {}

void Board::finds(const std::vector<std::string>& routes, StoreThread::PageDone done) {
    const Time now = m_clock();
    const auto waiting = std::make_shared<Waiting>();
    waiting->done = std::move(done);
    std::vector<std::string> absent;
    for (const std::string& route : routes) {
        if (PagePtr page = kept(route, now))
            waiting->pages.push_back(std::move(page));
        else
            absent.push_back(route);
    }
    waiting->missing = absent.size();
    for (const std::string& route : absent) {
        auto& others = m_readings[route];
        others.push_back(waiting);
        if (others.size() > 1)
            continue;
        const bool isAccepted =
            m_store.read(route, [this, route](const PagePtr& page) { arrived(route, page); });
        if (!isAccepted) {
            m_readings.erase(route);
            finish(*waiting, true);
            return;
        }
    }
    if (absent.empty())
        finish(*waiting, false);
}

void Board::arrived(const std::string& route, const PagePtr& page) {
    if (page)
        keep(route, page);
    const auto others = std::move(m_readings.extract(route).mapped());
    for (const auto& waiting : others) {
        waiting->pages.push_back(page);
        if (!page || --waiting->missing == 0)
            finish(*waiting, !page);
    }
}

// Tells the caller, once.
void Board::finish(Waiting& waiting, bool failed) {
    const auto done = std::exchange(waiting.done, {});
    if (!done)
        return;
    if (failed)
        done(nullptr);
    else
        done(waiting.pages.size() == 1 ? waiting.pages.front()
                                       : merged(waiting.pages, mostAnswerBytes));
}

void Board::forget(const std::string& route) {
    if (const auto found = m_byRoute.find(route); found != m_byRoute.end())
        erase(found->second);
}

PagePtr Board::kept(const std::string& route, Time now) {
    const auto found = m_byRoute.find(route);
    if (found == m_byRoute.end())
        return nullptr;
    if (found->second->until <= now) {
        erase(found->second);
        return nullptr;
    }
    m_kept.splice(m_kept.begin(), m_kept, found->second);
    return found->second->page;
}

void Board::keep(const std::string& route, const PagePtr& page) {
    forget(route);
    const Time now = m_clock();
    // Not beyond the end of its oldest find.
    const Time until = page->finds.empty()
                           ? now + freshness
                           : std::min(now + freshness, page->finds.back().reported + lifetime);
    m_kept.push_front({route, page, until});
    m_byRoute[route] = m_kept.begin();
    m_bytes += weight(*page);
    while (m_bytes > m_mostBytes)
        erase(std::prev(m_kept.end()));
}

void Board::erase(std::list<Kept>::iterator entry) {
    m_bytes -= weight(*entry->page);
    m_byRoute.erase(entry->route);
    m_kept.erase(entry);
}

} // namespace community
