// SPDX-License-Identifier: MIT
#include "platform/linux/UnixSignals.h"

#include <QList>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A signal handler may do next to nothing, so it only writes to this socket.
int wakeSocket = -1;

void wake(int) {
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(wakeSocket, &byte, 1);
}

} // namespace

struct UnixSignals::Private {
    QList<int> numbers;
    int sockets[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
};

UnixSignals::UnixSignals(std::initializer_list<int> signalNumbers, std::function<void()> onSignal)
    : d(std::make_unique<Private>()) {
    d->numbers = signalNumbers;
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, d->sockets) != 0)
        return;
    wakeSocket = d->sockets[0];
    d->notifier = std::make_unique<QSocketNotifier>(d->sockets[1], QSocketNotifier::Read);
    QObject::connect(d->notifier.get(), &QSocketNotifier::activated, d->notifier.get(),
                     [socket = d->sockets[1], onSignal = std::move(onSignal)] {
                         char byte = 0;
                         if (::read(socket, &byte, 1) == 1)
                             onSignal();
                     });
    struct sigaction action{};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    for (const int number : d->numbers)
        ::sigaction(number, &action, nullptr);
}

UnixSignals::~UnixSignals() {
    for (const int number : d->numbers)
        ::signal(number, SIG_DFL);
    wakeSocket = -1;
    d->notifier.reset();
    for (const int socket : d->sockets) {
        if (socket >= 0)
            ::close(socket);
    }
}
