// SPDX-License-Identifier: MIT
#pragma once

#include "community/Page.h"
#include "community/Store.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace community {

/// Brings a store that waits to callers that must not. What comes in while the store is busy is
/// done together next: one transaction for all changes, one exchange for all reads.
class StoreThread {
public:
    using Done = std::function<void(bool isDone)>;
    using PageDone = std::function<void(PagePtr page)>; ///< null when the store failed
    using Post = std::function<void(std::function<void()>)>;
    using Log = std::function<void(const std::string&)>;

    /// One route's page has at most this many bytes.
    static constexpr std::size_t mostPageBytes = 64 * 1024;

    /// Answers are given through `post`, in the order the store gave them.
    StoreThread(std::unique_ptr<Store> store, Clock clock, Post post, Log log);
    ~StoreThread();

    StoreThread(const StoreThread&) = delete;
    StoreThread& operator=(const StoreThread&) = delete;

    /// Each is false, and the answer never comes, when too much is waiting already.
    bool write(std::vector<Change> changes, Done done);
    bool read(std::string route, PageDone done);
    bool ping(Done done);

private:
    struct Write {
        std::vector<Change> changes;
        Done done;
    };
    struct Read {
        std::string route;
        PageDone done;
    };
    struct Batch {
        std::vector<Write> writes;
        std::vector<Read> reads;
        std::vector<Done> pings;
    };

    void run();
    std::optional<Batch> take();
    void perform(Batch batch);
    void note(const std::string& trouble);

    std::unique_ptr<Store> m_store;
    Clock m_clock;
    Post m_post;
    Log m_log;
    bool m_isInTrouble = false;

    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    bool m_isEnding = false;
    std::size_t m_waitingChanges = 0;
    std::deque<Write> m_writes;
    std::deque<Read> m_reads;
    std::vector<Done> m_pings;
    std::thread m_thread;
};

} // namespace community
