// Runs at the start of every page of the airline, before the page's own scripts. Hands a copy of
// every offer response that the page fetches to the application, and changes nothing for the page.
//
// `word` is known to nobody else; a message without it did not come from here. A body of more
// than `limit` characters is handed over empty. A request that breaks has status 0.
(function (word, limit) {
    if (window.__tdHooked) {
        return;
    }
    window.__tdHooked = true;

    // Taken now, so that nothing the page does later can stand between.
    const handler = window.webkit.messageHandlers.sniff;

    function post(url, status, retryAfter, body) {
        try {
            handler.postMessage({
                url: url,
                status: String(status),
                retryAfter: retryAfter || "",
                body: body.length > limit ? "" : body,
                word: word,
            });
        } catch (e) {}
    }

    function hit(url) {
        const text = String(url === undefined || url === null ? "" : url);
        return text.includes("api/offers/flights") || text.includes("award-api/flights");
    }

    function addressOf(resource) {
        return (resource instanceof Request ? resource.url : String(resource || "")) || "";
    }

    const pageFetch = window.fetch;
    window.fetch = function (resource) {
        const answer = pageFetch.apply(this, arguments);
        const requested = addressOf(resource);
        answer
            .then(function (response) {
                if (!hit(response.url) && !hit(requested)) {
                    return;
                }
                const url = requested || response.url;
                response
                    .clone()
                    .text()
                    .then(
                        function (body) {
                            const retryAfter = response.headers.get("Retry-After");
                            post(url, response.status, retryAfter, body);
                        },
                        function () {
                            post(url, 0, "", "");
                        },
                    );
            })
            .catch(function () {
                if (hit(requested)) {
                    post(requested, 0, "", "");
                }
            });
        return answer;
    };

    const pageOpen = XMLHttpRequest.prototype.open;
    XMLHttpRequest.prototype.open = function (method, url) {
        this.__tdU = url;
        return pageOpen.apply(this, arguments);
    };

    function bodyOf(request) {
        return request.responseType === "json"
            ? JSON.stringify(request.response)
            : request.responseText;
    }

    const pageSend = XMLHttpRequest.prototype.send;
    XMLHttpRequest.prototype.send = function () {
        this.addEventListener("load", function () {
            try {
                const url = this.responseURL || this.__tdU;
                if (hit(this.responseURL) || hit(this.__tdU)) {
                    const retryAfter = this.getResponseHeader("Retry-After");
                    post(String(url), this.status, retryAfter, bodyOf(this));
                }
            } catch (e) {}
        });
        this.addEventListener("error", function () {
            if (hit(this.__tdU)) {
                post(String(this.__tdU), 0, "", "");
            }
        });
        return pageSend.apply(this, arguments);
    };
})
