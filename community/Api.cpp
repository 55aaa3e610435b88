// SPDX-License-Identifier: MIT
#include "community/Api.h"

#include <algorithm>
#include <array>
#include <set>

namespace community {

namespace {

constexpr std::size_t mostRoutes = 60;
// So many finds cost as much as a request.
constexpr double findsPerToken = 5;

constexpr std::string_view busy = "The service is too busy.";
constexpr std::string_view storeGone = "The store does not answer.";

Response tooMany(int seconds) {
    return refusal(429, "There were too many requests from this address.",
                   "Retry-After: " + std::to_string(seconds) + "\r\n");
}

Response unavailable(std::string_view why) {
    return refusal(503, why, "Retry-After: 10\r\n");
}

bool isJson(std::string_view contentType) {
    constexpr std::string_view json = "application/json";
    return contentType.size() >= json.size() &&
           std::equal(json.begin(), json.end(), contentType.begin(),
                      [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); }) &&
           (contentType.size() == json.size() || contentType[json.size()] == ';' ||
            contentType[json.size()] == ' ');
}

} // namespace

struct Api::Endpoint {
    std::string_view path;
    std::string_view allow;
    bool isFree; // of the rate limit: whoever watches the service must always get an answer
};

Response refusal(unsigned status, std::string_view sentence, std::string headers) {
    std::string json = R"({"error":")";
    for (const char c : sentence) {
        if (c == '"')
            json += '\\';
        json += c;
    }
    json += "\"}";
    return {status, std::move(headers), std::make_shared<const std::string>(std::move(json))};
}

Api::Api(StoreThread& store, Clock clock, RateLimiter limiter, Bodies bodies,
         std::size_t mostKeptBytes)
    : m_store(store)
    , m_clock(clock)
    , m_limiter(std::move(limiter))
    , m_bodies(std::move(bodies))
    , m_board(store, std::move(clock), mostKeptBytes) {}

const Api::Endpoint* Api::endpointOf(std::string_view target) {
    static constexpr std::array<Endpoint, 3> endpoints{{{"/v1/hits", "GET, POST", false},
                                                        {"/v1/soldout", "POST", false},
                                                        {"/healthz", "GET", true}}};
    const std::string_view path = target.substr(0, target.find('?'));
    const auto* const found = std::find_if(endpoints.begin(), endpoints.end(),
                                           [&](const Endpoint& e) { return e.path == path; });
    return found == endpoints.end() ? nullptr : found;
}

std::optional<Response> Api::refused(Request& request) {
    const Endpoint* const endpoint = endpointOf(request.target);
    // A round tells of many cabins that are gone, one a request.
    const double cost = endpoint && endpoint->path == "/v1/soldout" ? 1 / findsPerToken : 1;
    if (!endpoint || !endpoint->isFree)
        if (const int wait = m_limiter.take(request.sender, cost, m_clock()))
            return tooMany(wait);
    if (!endpoint)
        return refusal(404, "There is nothing at this address.");
    const bool isPost = request.method == "POST";
    if ((!isPost && request.method != "GET") ||
        endpoint->allow.find(request.method) == std::string_view::npos)
        return refusal(405, "This address takes another method.",
                       "Allow: " + std::string(endpoint->allow) + "\r\n");
    if (!isPost && request.hasBody)
        return refusal(400, "A GET request has no body.");
    if (isPost && !isJson(request.contentType))
        return refusal(415, "The body must be application/json.");
    if (!isPost && !endpoint->isFree) {
        const std::string_view target = request.target;
        const std::size_t mark = std::min(target.find('?'), target.size() - 1);
        request.routes = routesOf(target.substr(mark + 1), mostRoutes);
        if (request.routes.empty())
            return refusal(400, R"("routes" must name routes such as OSL-BKK, joined by ",".)");
    }
    return std::nullopt;
}

void Api::answer(const Request& request, std::string_view body, Reply reply) {
    if (request.target.starts_with("/healthz"))
        sayHealth(std::move(reply));
    else if (request.target.starts_with("/v1/soldout"))
        takeSoldOut(body, std::move(reply));
    else if (request.method == "POST")
        takeHits(request, body, std::move(reply));
    else
        show(request, std::move(reply));
}

void Api::show(const Request& request, Reply reply) {
    m_board.finds(request.routes, [reply = std::move(reply)](const PagePtr& page) {
        if (page) // shares the page and points at its text
            reply({200, "Cache-Control: public, max-age=5\r\n",
                   std::shared_ptr<const std::string>(page, &page->json)});
        else
            reply(unavailable(storeGone));
    });
}

void Api::takeHits(const Request& request, std::string_view body, Reply reply) {
    auto read = m_bodies.hits(body, m_clock());
    if (const auto* fault = std::get_if<Fault>(&read)) {
        reply(refusal(400, fault->sentence));
        return;
    }
    auto& changes = std::get<std::vector<Change>>(read);
    if (const int wait =
            m_limiter.take(request.sender, double(changes.size()) / findsPerToken, m_clock()))
        reply(tooMany(wait));
    else
        store(std::move(changes), std::move(reply));
}

void Api::takeSoldOut(std::string_view body, Reply reply) {
    auto read = m_bodies.soldOut(body);
    if (const auto* fault = std::get_if<Fault>(&read))
        reply(refusal(400, fault->sentence));
    else
        store({std::get<Change>(std::move(read))}, std::move(reply));
}

void Api::store(std::vector<Change> changes, Reply reply) {
    std::set<std::string> routes;
    for (const Change& change : changes)
        routes.insert(change.route);
    if (routes.empty()) {
        reply({204, {}, nullptr});
        return;
    }
    const auto done = [this, reply, routes](bool isDone) {
        for (const std::string& route : routes)
            m_board.forget(route);
        reply(isDone ? Response{204, {}, nullptr} : unavailable(storeGone));
    };
    if (!m_store.write(std::move(changes), done))
        reply(unavailable(busy));
}

void Api::sayHealth(Reply reply) {
    const auto done = [reply](bool isDone) {
        static const auto well = std::make_shared<const std::string>(R"({"status":"ok"})");
        reply(isDone ? Response{200, "Cache-Control: no-store\r\n", well} : unavailable(storeGone));
    };
    if (!m_store.ping(done))
        reply(unavailable(busy));
}

} // namespace community
