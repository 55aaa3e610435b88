// SPDX-License-Identifier: MIT
#include "community/StoreThread.h"

#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <iterator>

namespace community {

namespace {

// In one batch, so that one store call is short and its answer small.
constexpr std::size_t changesAtOnce = 2000;
/// So long does a store not take that still answers.
constexpr std::chrono::milliseconds hanging{500};
constexpr std::chrono::milliseconds restAfterHanging{1000};
constexpr std::size_t readsAtOnce = 32;
// Waiting altogether.
constexpr std::size_t mostChanges = 6000;
constexpr std::size_t mostReads = 4000;
constexpr std::size_t mostPings = 1000;

} // namespace

StoreThread::StoreThread(std::unique_ptr<Store> store, Clock clock, Post post, Log log)
    : m_store(std::move(store))
    , m_clock(std::move(clock))
    , m_post(std::move(post))
    , m_log(std::move(log))
    , m_thread([this] { run(); }) {}

StoreThread::~StoreThread() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

bool StoreThread::write(std::vector<Change> changes, Done done) {
    const std::lock_guard lock(m_mutex);
    if (m_waitingChanges + changes.size() > mostChanges)
        return false;
    m_waitingChanges += changes.size();
    m_writes.push_back({std::move(changes), std::move(done)});
    m_wakeUp.notify_one();
    return true;
}

bool StoreThread::read(std::string route, PageDone done) {
    const std::lock_guard lock(m_mutex);
    if (m_reads.size() >= mostReads)
        return false;
    m_reads.push_back({std::move(route), std::move(done)});
    m_wakeUp.notify_one();
    return true;
}

bool StoreThread::ping(Done done) {
    const std::lock_guard lock(m_mutex);
    if (m_pings.size() >= mostPings)
        return false;
    m_pings.push_back(std::move(done));
    m_wakeUp.notify_one();
    return true;
}

void StoreThread::run() {
    // A store may write to a socket that has been closed.
    sigset_t broken;
    sigemptyset(&broken);
    sigaddset(&broken, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &broken, nullptr);

    while (std::optional<Batch> batch = take())
        perform(std::move(*batch));
}

// Absent at the end.
std::optional<StoreThread::Batch> StoreThread::take() {
    std::unique_lock lock(m_mutex);
    m_wakeUp.wait(lock, [this] {
        return m_isEnding || !m_writes.empty() || !m_reads.empty() || !m_pings.empty();
    });
    if (m_isEnding)
        return std::nullopt;
    Batch batch;
    std::size_t changes = 0;
    while (!m_writes.empty() && changes < changesAtOnce) {
        changes += m_writes.front().changes.size();
        batch.writes.push_back(std::move(m_writes.front()));
        m_writes.pop_front();
    }
    m_waitingChanges -= changes;
    const auto end = m_reads.begin() + std::ptrdiff_t(std::min(m_reads.size(), readsAtOnce));
    std::move(m_reads.begin(), end, std::back_inserter(batch.reads));
    m_reads.erase(m_reads.begin(), end);
    batch.pings.swap(m_pings);
    return batch;
}

// Reads go first: no change of this batch has been answered yet, so nobody misses it.
void StoreThread::perform(Batch batch) {
    std::vector<PagePtr> pages(batch.reads.size());
    bool isDone = false;
    bool hasRead = false;
    const auto begin = std::chrono::steady_clock::now();
    try {
        // A store that hangs costs its patience once in a while, not once a batch.
        if (begin < m_retryAt)
            throw StoreError(m_trouble);
        const Time now = m_clock();
        if (!batch.reads.empty()) {
            std::vector<std::string> routes;
            routes.reserve(batch.reads.size());
            for (const Read& read : batch.reads)
                routes.push_back(read.route);
            const auto finds = m_store->newest(routes, now);
            for (std::size_t i = 0; i < finds.size(); ++i)
                pages[i] = pageOf(finds[i], mostPageBytes);
        }
        if (!batch.pings.empty())
            m_store->ping();
        hasRead = true;
        if (!batch.writes.empty()) {
            std::vector<Change> changes;
            for (Write& write : batch.writes)
                std::move(write.changes.begin(), write.changes.end(), std::back_inserter(changes));
            m_store->apply(changes, now);
        }
        isDone = true;
        note({});
    } catch (const StoreError& error) {
        const auto end = std::chrono::steady_clock::now();
        if (!hasRead && end - begin >= hanging)
            m_retryAt = end + restAfterHanging;
        note(error.what());
    }
    m_post([batch = std::move(batch), pages = std::move(pages), isDone] {
        for (std::size_t i = 0; i < pages.size(); ++i)
            batch.reads[i].done(pages[i]);
        for (const Write& write : batch.writes)
            write.done(isDone);
        for (const Done& ping : batch.pings)
            ping(isDone);
    });
}

// One line when it begins and one when it is over.
void StoreThread::note(const std::string& trouble) {
    if (m_log && trouble.empty() && m_isInTrouble)
        m_log("the store answers again");
    else if (m_log && !trouble.empty() && !m_isInTrouble)
        m_log("the store does not answer: " + trouble);
    m_isInTrouble = !trouble.empty();
    m_trouble = trouble;
}

} // namespace community
