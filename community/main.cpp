// SPDX-License-Identifier: MIT
#include "TindraVersion.h"
#include "community/RedisStore.h"
#include "community/Service.h"
#include "community/SqliteStore.h"

#include <getopt.h>
#include <malloc.h>
#include <pthread.h>

#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace {

using community::Options;

constexpr std::uint16_t defaultPort = 8737;

constexpr const char* help = R"(Usage: tindra-community [options]
Lets installs of Tindra share their finds, over HTTP.

  --port N               Listens on this port (default 8737; 0 takes a free one).
  --listen ADDRESS       Listens on this IP address (default 127.0.0.1).
  --data DIR             Keeps community.sqlite in this folder (default: Tindra in
                         $XDG_DATA_HOME, else in ~/.local/share).
  --store URL            Keeps the finds in Redis at redis://host:port instead.
  --rate-limit N         Requests a second and sender (default 2; a minute's worth at once;
                         0 is no limit).
  --trusted-proxy ADDRESS
                         Believes the X-Forwarded-For of this balancer. Repeatable.
  --local-bookings       Takes booking addresses of this machine too: for the stand-in site.
  --help, --version
)";

std::string dataFolder() {
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/')
        return std::string(data) + "/Tindra";
    const char* const home = std::getenv("HOME");
    return std::string(home ? home : ".") + "/.local/share/Tindra";
}

template<typename Number>
bool read(std::string_view text, Number least, Number most, Number& into) {
    const auto [stop, error] = std::from_chars(text.begin(), text.end(), into);
    return error == std::errc() && stop == text.end() && into >= least && into <= most;
}

enum Code { Port = 1, Listen, Data, Store, Rate, Proxy, Local, Help, Version };

constexpr option longOptions[]{{"port", required_argument, nullptr, Port},
                               {"listen", required_argument, nullptr, Listen},
                               {"data", required_argument, nullptr, Data},
                               {"store", required_argument, nullptr, Store},
                               {"rate-limit", required_argument, nullptr, Rate},
                               {"trusted-proxy", required_argument, nullptr, Proxy},
                               {"local-bookings", no_argument, nullptr, Local},
                               {"help", no_argument, nullptr, Help},
                               {"version", no_argument, nullptr, Version},
                               {nullptr, 0, nullptr, 0}};

struct Wish {
    Options options;
    int exitCode = -1; // to end with at once, when not negative
};

Wish complaint(const std::string& why) {
    std::fprintf(stderr, "tindra-community: %s\n", why.c_str());
    return {{}, 2};
}

Wish wishOf(int argc, char** argv) {
    Options options;
    options.port = defaultPort;
    std::string data = dataFolder();
    std::string redis;
    opterr = 0;
    for (int code = 0; (code = getopt_long(argc, argv, ":", longOptions, nullptr)) != -1;) {
        const std::string value = optarg ? optarg : "";
        if (code == Port && !read<std::uint16_t>(value, 0, 65'535, options.port))
            return complaint("--port takes a number from 0 to 65535, not \"" + value + '"');
        if (code == Rate && !read<double>(value, 0, 1e6, options.rateLimit))
            return complaint("--rate-limit takes a number from 0 to 1000000, not \"" + value + '"');
        if (code == Store && !value.starts_with("redis://"))
            return complaint("--store takes redis://host:port, not \"" + value + '"');
        if (code == ':' || code == '?')
            return complaint(std::string("unknown or incomplete option ") + argv[optind - 1]);
        if (code == Listen)
            options.listen = value;
        else if (code == Data)
            data = value;
        else if (code == Store)
            redis = value;
        else if (code == Proxy)
            options.trustedProxies.push_back(value);
        else if (code == Local)
            options.takesLocalBookings = true;
        else if (code == Help || code == Version) {
            std::fputs(code == Help ? help : "tindra-community " TINDRA_VERSION "\n", stdout);
            return {{}, 0};
        }
    }
    if (optind < argc)
        return complaint(std::string("unexpected argument \"") + argv[optind] + '"');
    options.store = redis.empty()
                        ? community::inSqlite(std::filesystem::path(data) / "community.sqlite")
                        : community::inRedis(redis);
    options.log = [](const std::string& line) {
        std::fprintf(stderr, "tindra-community: %s\n", line.c_str());
    };
    return {std::move(options), -1};
}

} // namespace

int main(int argc, char** argv) {
    // Large bodies give their memory back to the system at once.
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
    mallopt(M_ARENA_MAX, 2);
    const Wish wish = wishOf(argc, argv);
    if (wish.exitCode >= 0)
        return wish.exitCode;

    // Blocked before the service's threads exist, so that only sigwait() below gets them.
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);

    community::Service service(wish.options);
    if (const auto error = service.start()) {
        std::fprintf(stderr, "tindra-community: %s\n", error->c_str());
        return 1;
    }
    std::printf("tindra-community: listening on %s\n", service.address().c_str());
    std::fflush(stdout);
    int signal = 0;
    sigwait(&endings, &signal);
    service.stop();
    return 0;
}
