// SPDX-License-Identifier: MIT
#pragma once

#include "community/Store.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>

struct redisContext;
struct redisReply;

namespace community {

/// Finds in Redis, where any number of services share them and they expire by themselves.
///
/// tindra:{AAA-BBB}:find:<identity> is a find, tindra:{AAA-BBB}:finds the sorted set of the
/// identities of a route, by the time of the last report. All keys of a route have one hash tag, so
/// that they stay together in a cluster.
class RedisStore final : public Store {
public:
    struct Address {
        std::string host;
        std::uint16_t port;
    };

    /// Connects with the first call, and again whenever the connection was lost.
    explicit RedisStore(Address address) : m_address(std::move(address)) {}

    void apply(const std::vector<Change>& changes, Time now) override;
    std::vector<std::vector<StoredFind>> newest(const std::vector<std::string>& routes,
                                                Time now) override;
    void ping() override;

private:
    struct Free {
        void operator()(redisContext* context) const;
        void operator()(redisReply* reply) const;
    };
    using Reply = std::unique_ptr<redisReply, Free>;

    // Commands are sent together; each then has one reply, in order.
    void connect();
    void send(const std::vector<std::string_view>& command);
    Reply reply();
    void replies(std::size_t count);
    [[noreturn]] void lose(const std::string& why);

    Address m_address;
    std::unique_ptr<redisContext, Free> m_context;
};

/// At redis://host:port, which need not be there yet. An address of another form is the service's
/// error when it starts.
StoreMaker inRedis(std::string url);

} // namespace community
