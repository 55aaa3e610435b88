// SPDX-License-Identifier: MIT
// Requests against real servers that mean no good.
#include "platform/linux/CurlSession.h"
#include "tests/support/Settled.h"
#include "tests/support/TestProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Answers every request on a port of its own with what `respond` writes.
class HostileServer {
public:
    using Respond = std::function<void(QTcpSocket&, const QByteArray& request)>;

    explicit HostileServer(Respond respond, std::unique_ptr<QTcpServer> server = nullptr)
        : m_server(server ? std::move(server) : std::make_unique<QTcpServer>())
        , m_respond(std::move(respond)) {
        m_server->listen(QHostAddress::LocalHost);
        QObject::connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, [this] {
            QTcpSocket* socket = m_server->nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                QByteArray& request = m_requests[socket];
                request += socket->readAll();
                if (!request.contains("\r\n\r\n"))
                    return;
                ++requests;
                m_respond(*socket, std::exchange(request, {}));
            });
        });
    }

    QUrl url(const QString& scheme = u"http"_s) const {
        return QUrl(u"%1://127.0.0.1:%2/v1/hits"_s.arg(scheme).arg(m_server->serverPort()));
    }

    int requests = 0;

private:
    std::unique_ptr<QTcpServer> m_server;
    Respond m_respond;
    QHash<QTcpSocket*, QByteArray> m_requests;
};

QByteArray answer(const QByteArray& body, const QByteArray& headers = {}) {
    return "HTTP/1.1 200 OK\r\ncontent-length: " + QByteArray::number(body.size()) + "\r\n" +
           headers + "\r\n" + body;
}

/// The most memory that this process has held since the last `forgetPeak`, in bytes.
qint64 peakMemory() {
    QFile status(u"/proc/self/status"_s);
    [[maybe_unused]] const bool isOpen = status.open(QIODevice::ReadOnly);
    const QByteArray text = status.readAll();
    const auto at = text.indexOf("VmHWM:") + 6;
    return text.mid(at, text.indexOf("kB", at) - at).trimmed().toLongLong() * 1024;
}

void forgetPeak() {
    QFile file(u"/proc/self/clear_refs"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("5") == 1);
}

} // namespace

class TestCurlSession : public QObject {
    Q_OBJECT

    std::optional<HttpResponse> ask(const QUrl& url, std::chrono::milliseconds timeout = 5s,
                                    const QByteArray& body = {}, qint64 largestBody = 1000) {
        CurlSession session;
        HttpRequest request;
        request.url = url;
        request.timeout = timeout;
        request.largestBody = largestBody;
        if (!body.isEmpty())
            request.method = HttpRequest::Method::post;
        request.body = body;
        return awaited(session.send(request)).value_or(HttpResponse{});
    }

private Q_SLOTS:
    void anHonestServerIsHeard() {
        QByteArray seen;
        HostileServer server([&seen](QTcpSocket& socket, const QByteArray& request) {
            seen = request;
            socket.write(answer("{}", "set-cookie: who=you\r\n"));
        });
        QCOMPARE(ask(server.url()), (HttpResponse{200, "{}"}));
        QVERIFY(seen.startsWith("GET /v1/hits HTTP/1.1\r\n"));
        QCOMPARE(ask(server.url(), 5s, "[1]"), (HttpResponse{200, "{}"}));
        QVERIFY(seen.startsWith("POST /v1/hits"));
        QVERIFY(seen.toLower().contains("content-type: application/json"));
        QVERIFY(!seen.toLower().contains("cookie"));
    }

    void anErrorStatusIsAnAnswer() {
        HostileServer server([](QTcpSocket& socket, const QByteArray&) {
            socket.write("HTTP/1.1 429 Slow Down\r\ncontent-length: 2\r\n\r\nno");
        });
        QCOMPARE(ask(server.url()), (HttpResponse{429, "no"}));
    }

    void whatIsNoWholeAnswerIsNone_data() {
        QTest::addColumn<HostileServer::Respond>("respond");
        const auto row = [](const char* name, HostileServer::Respond respond) {
            QTest::newRow(name) << std::move(respond);
        };
        const auto writes = [](const QByteArray& bytes, bool closes = false) {
            return [bytes, closes](QTcpSocket& socket, const QByteArray&) {
                socket.write(bytes);
                if (closes)
                    socket.disconnectFromHost();
            };
        };
        row("nothing at all", writes({}, true));
        row("no HTTP", writes("SSH-2.0-OpenSSH_9.2\r\n", true));
        row("half a body",
            writes("HTTP/1.1 200 OK\r\ncontent-length: 900\r\n\r\n{\"hits\":[", true));
        row("too long, as announced", writes(answer(QByteArray(1001, ' '))));
        row("too long, in chunks",
            writes("HTTP/1.1 200 OK\r\ntransfer-encoding: chunked\r\n\r\n3e9\r\n" +
                   QByteArray(1001, ' ') + "\r\n0\r\n\r\n"));
        row("another scheme", writes("HTTP/1.1 302 Found\r\nlocation: file:///etc/passwd\r\n"
                                     "content-length: 0\r\n\r\n"));
        row("from http to https", writes("HTTP/1.1 302 Found\r\nlocation: https://127.0.0.1/\r\n"
                                         "content-length: 0\r\n\r\n"));
    }

    void whatIsNoWholeAnswerIsNone() {
        QFETCH(HostileServer::Respond, respond);
        HostileServer server(respond);
        QCOMPARE(ask(server.url()), std::nullopt);
        QVERIFY(server.requests > 0);
    }

    void aLoopOfRedirectsEnds() {
        HostileServer server([](QTcpSocket& socket, const QByteArray&) {
            socket.write("HTTP/1.1 302 Found\r\nlocation: /again\r\ncontent-length: 0\r\n\r\n");
        });
        QCOMPARE(ask(server.url()), std::nullopt);
        QVERIFY(server.requests > 1 && server.requests < 10);
    }

    void slownessEndsAtTheLimit_data() {
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("the connection is taken and nothing comes") << QByteArray();
        QTest::newRow("headers byte by byte") << QByteArray("HTTP/1.1 200 OK\r\nx: ");
        QTest::newRow("a body byte by byte")
            << QByteArray("HTTP/1.1 200 OK\r\ncontent-length: 900\r\n\r\n");
    }

    void slownessEndsAtTheLimit() {
        QFETCH(QByteArray, start);
        HostileServer server([start](QTcpSocket& socket, const QByteArray&) {
            socket.write(start);
            auto* drip = new QTimer(&socket);
            QObject::connect(drip, &QTimer::timeout, &socket, [&socket, start] {
                if (!start.isEmpty())
                    socket.write("a");
            });
            drip->start(20);
        });
        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(ask(server.url(), 300ms), std::nullopt);
        QVERIFY(elapsed.elapsed() >= 290);
    }

    void aFloodIsCutOffAndTakesNoMemory_data() {
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("a body") << QByteArray(
            "HTTP/1.1 200 OK\r\ncontent-length: 104857600\r\n\r\n");
        QTest::newRow("a body that asks who we are")
            << QByteArray("HTTP/1.1 401 No\r\nwww-authenticate: basic realm=x\r\n"
                          "content-length: 104857600\r\n\r\n");
        QTest::newRow("a header without end") << QByteArray("HTTP/1.1 200 OK\r\nx: ");
        QTest::newRow("a status without end") << QByteArray("HTTP/1.1 200 ");
    }

    void aFloodIsCutOffAndTakesNoMemory() {
        QFETCH(QByteArray, start);
        qint64 poured = 0;
        HostileServer server([start, &poured](QTcpSocket& socket, const QByteArray&) {
            socket.write(start);
            const auto pour = [&socket, &poured] {
                while (socket.bytesToWrite() < 100'000 && socket.isOpen() && poured < 100'000'000) {
                    socket.write(QByteArray(50'000, 'x'));
                    poured += 50'000;
                }
            };
            QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, pour);
            pour();
        });
        forgetPeak();
        const qint64 before = peakMemory();
        QCOMPARE(ask(server.url()), std::nullopt);
        QVERIFY2(peakMemory() - before < 8'000'000,
                 qPrintable(QString::number(peakMemory() - before)));
    }

    /// Twenty megabytes of zeros in twenty kilobytes; nobody asked for them.
    void aCompressedAnswerIsNotUnpacked() {
        const QByteArray zeros = qCompress(QByteArray(20'000'000, '\0'), 9).mid(4);
        HostileServer server([&zeros](QTcpSocket& socket, const QByteArray& request) {
            QVERIFY(!request.toLower().contains("accept-encoding"));
            socket.write(answer(zeros, "content-encoding: deflate\r\n"));
        });
        const auto response = ask(server.url(), 5s, {}, 1'000'000);
        QCOMPARE(response, (HttpResponse{200, zeros}));
    }

    void aCertificateThatNobodyVouchesForIsRefused() {
        auto tls = std::make_unique<QSslServer>();
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        QFile certificate(QStringLiteral(TINDRA_TEST_DATA "/tls/self-signed.pem"));
        QFile key(QStringLiteral(TINDRA_TEST_DATA "/tls/self-signed.key"));
        QVERIFY(certificate.open(QIODevice::ReadOnly) && key.open(QIODevice::ReadOnly));
        configuration.setLocalCertificate(QSslCertificate(&certificate));
        configuration.setPrivateKey(QSslKey(&key, QSsl::Rsa));
        tls->setSslConfiguration(configuration);
        HostileServer server(
            [](QTcpSocket& socket, const QByteArray&) { socket.write(answer("{}")); },
            std::move(tls));
        QCOMPARE(ask(server.url(u"https"_s)), std::nullopt);
        QCOMPARE(server.requests, 0);
    }

    void aSessionThatEndsLeavesNobodyWaiting() {
        HostileServer server([](QTcpSocket&, const QByteArray&) {});
        auto session = std::make_unique<CurlSession>();
        HttpRequest request;
        request.url = server.url();
        bool ended = false;
        session->send(request).then([&ended](const auto& response) { ended = !response; });
        QTRY_COMPARE(server.requests, 1);
        session.reset();
        QTRY_VERIFY(ended);
    }
};

TINDRA_TEST(TestCurlSession)
#include "test_curl_session.moc"
