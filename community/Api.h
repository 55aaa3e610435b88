// SPDX-License-Identifier: MIT
#pragma once

#include "community/Board.h"
#include "community/Bodies.h"
#include "community/RateLimiter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace community {

struct Request {
    std::string method;
    std::string target;      ///< path and query
    std::string contentType; ///< empty when absent
    bool hasBody = false;
    std::uint64_t sender = 0;        ///< see senderOf()
    std::vector<std::string> routes; ///< asked for; filled in by Api::refused
};

struct Response {
    unsigned status = 200;
    std::string headers;                     ///< whole lines, beyond those of every answer
    std::shared_ptr<const std::string> body; ///< JSON; null when there is none
};

/// {"error": sentence}; the sentence needs no escapes of JSON but for quotation marks.
Response refusal(unsigned status, std::string_view sentence, std::string headers = {});

/// What the service answers, apart from HTTP itself. All calls come from one thread.
class Api {
public:
    using Reply = std::function<void(Response)>;

    Api(StoreThread& store, Clock clock, RateLimiter limiter, Bodies bodies,
        std::size_t mostKeptBytes);

    /// Why the request is refused before its body has been read; absent when it is welcome.
    std::optional<Response> refused(Request& request);
    /// The memory that answering a welcome GET may take.
    static std::size_t mostAnswerBytes(const Request& request) {
        return request.routes.size() * StoreThread::mostPageBytes;
    }
    /// Answers a welcome request, at once or later.
    void answer(const Request& request, std::string_view body, Reply reply);

private:
    struct Endpoint;

    static const Endpoint* endpointOf(std::string_view target);
    void show(const Request& request, Reply reply);
    void takeHits(const Request& request, std::string_view body, Reply reply);
    void takeSoldOut(std::string_view body, Reply reply);
    void store(std::vector<Change> changes, Reply reply);
    void sayHealth(Reply reply);

    StoreThread& m_store;
    Clock m_clock;
    RateLimiter m_limiter;
    Bodies m_bodies;
    Board m_board;
};

} // namespace community
