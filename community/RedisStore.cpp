// SPDX-License-Identifier: MIT
#include "community/RedisStore.h"

#include <boost/url/parse.hpp>

#include <hiredis/hiredis.h>

#include <cstdlib>
#include <optional>
#include <set>

namespace community {

namespace {

// Of one route; more are forgotten, oldest first.
constexpr std::string_view keptOfRoute = "-1001";

constexpr timeval patience{1, 0};

std::string indexKey(const std::string& route) {
    return "tindra:{" + route + "}:finds";
}

std::string findKey(const std::string& route, std::string_view identity) {
    return "tindra:{" + route + "}:find:" + std::string(identity);
}

std::string text(Time time) {
    return std::to_string(time.time_since_epoch().count());
}

std::string_view textOf(const redisReply& reply) {
    return reply.type == REDIS_REPLY_STRING ? std::string_view(reply.str, reply.len)
                                            : std::string_view();
}

// Of redis://host:port; absent when the text is nothing like it.
std::optional<RedisStore::Address> addressOf(std::string_view text) {
    const auto url = boost::urls::parse_uri(text);
    if (!url || url->scheme() != "redis" || url->encoded_host().empty() ||
        url->port_number() == 0 || url->encoded_host_and_port().size() + 8 != text.size())
        return std::nullopt;
    return RedisStore::Address{url->host_address(), url->port_number()};
}

} // namespace

void RedisStore::Free::operator()(redisContext* context) const {
    redisFree(context);
}

void RedisStore::Free::operator()(redisReply* reply) const {
    freeReplyObject(reply);
}

void RedisStore::apply(const std::vector<Change>& changes, Time now) {
    connect();
    const std::string life = std::to_string(std::chrono::milliseconds(lifetime).count());
    const std::string reported = text(now);
    std::set<std::string> routes;
    for (const Change& change : changes) {
        const std::string index = indexKey(change.route);
        const std::string find = findKey(change.route, change.identity);
        if (change.json.empty()) {
            send({"DEL", find});
            send({"ZREM", index, change.identity});
        } else {
            send({"SET", find, change.json, "PX", life});
            send({"ZADD", index, reported, change.identity});
            routes.insert(index);
        }
    }
    const std::string expired = text(now - lifetime);
    for (const std::string& index : routes) {
        send({"ZREMRANGEBYSCORE", index, "-inf", expired});
        send({"ZREMRANGEBYRANK", index, "0", keptOfRoute});
        send({"PEXPIRE", index, life});
    }
    replies(2 * changes.size() + 3 * routes.size());
}

std::vector<std::vector<StoredFind>> RedisStore::newest(const std::vector<std::string>& routes,
                                                        Time now) {
    connect();
    const std::string after = "(" + text(now - lifetime);
    const std::string most = std::to_string(mostOfRoute);
    for (const std::string& route : routes)
        send(
            {"ZREVRANGEBYSCORE", indexKey(route), "+inf", after, "WITHSCORES", "LIMIT", "0", most});

    std::vector<std::vector<StoredFind>> result(routes.size());
    std::vector<std::vector<std::string>> keys(routes.size());
    for (std::size_t i = 0; i < routes.size(); ++i) {
        const Reply list = reply();
        for (std::size_t at = 0; at + 1 < list->elements; at += 2) {
            keys[i].push_back(findKey(routes[i], textOf(*list->element[at])));
            const std::string score(textOf(*list->element[at + 1]));
            result[i].push_back(
                {{}, Time(std::chrono::milliseconds(std::strtoll(score.c_str(), nullptr, 10)))});
        }
    }
    for (const std::vector<std::string>& ofRoute : keys) {
        if (ofRoute.empty())
            continue;
        std::vector<std::string_view> command{"MGET"};
        command.insert(command.end(), ofRoute.begin(), ofRoute.end());
        send(command);
    }
    for (std::vector<StoredFind>& finds : result) {
        if (finds.empty())
            continue;
        const Reply list = reply();
        for (std::size_t at = 0; at < list->elements && at < finds.size(); ++at)
            finds[at].json = textOf(*list->element[at]);
        // Redis may have let go of a find that its route still lists.
        std::erase_if(finds, [](const StoredFind& find) { return find.json.empty(); });
    }
    return result;
}

void RedisStore::ping() {
    connect();
    send({"PING"});
    replies(1);
}

void RedisStore::connect() {
    if (m_context)
        return;
    m_context.reset(redisConnectWithTimeout(m_address.host.c_str(), m_address.port, patience));
    if (!m_context || m_context->err != 0)
        lose(m_context ? m_context->errstr : "out of memory");
    redisSetTimeout(m_context.get(), patience);
}

void RedisStore::send(const std::vector<std::string_view>& command) {
    std::vector<const char*> texts;
    std::vector<std::size_t> sizes;
    for (const std::string_view part : command) {
        texts.push_back(part.data());
        sizes.push_back(part.size());
    }
    if (redisAppendCommandArgv(m_context.get(), int(command.size()), texts.data(), sizes.data()) !=
        REDIS_OK)
        lose(m_context->errstr);
}

RedisStore::Reply RedisStore::reply() {
    void* raw = nullptr;
    if (redisGetReply(m_context.get(), &raw) != REDIS_OK)
        lose(m_context->errstr);
    Reply reply(static_cast<redisReply*>(raw));
    // What else was sent has replies on their way, so the connection is of no more use.
    if (reply->type == REDIS_REPLY_ERROR)
        lose(reply->str);
    return reply;
}

void RedisStore::replies(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        reply();
}

void RedisStore::lose(const std::string& why) {
    const StoreError error("Redis: " + why);
    m_context.reset();
    throw error;
}

StoreMaker inRedis(std::string url) {
    return [url = std::move(url)](std::size_t) {
        auto address = addressOf(url);
        if (!address)
            throw StoreError("the store must be redis://host:port");
        return std::make_unique<RedisStore>(std::move(*address));
    };
}

} // namespace community
