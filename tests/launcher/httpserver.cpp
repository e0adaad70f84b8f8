// SPDX-License-Identifier: MIT
#include "tests/launcher/httpserver.h"

#include <QElapsedTimer>
#include <QTest>

namespace {

const char ignoredTarget[] = "ignoredTarget"; // a property of the sockets that wait for an answer

QByteArray response(const QByteArray &status, const QByteArray &headers, const QByteArray &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: text/html\r\nConnection: close\r\n" + headers
        + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

HttpRequest parse(const QByteArray &head)
{
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.at(0).split(' ');
    HttpRequest request;
    request.method = words.value(0);
    request.target = words.value(1);
    for (int i = 1; i < lines.size(); ++i) {
        const int colon = lines.at(i).indexOf(':');
        if (colon > 0)
            request.headers.insert(lines.at(i).left(colon).toLower(),
                                   lines.at(i).mid(colon + 1).trimmed());
    }
    return request;
}

} // namespace

HttpServer::HttpServer()
{
    if (!listen(QHostAddress::LocalHost))
        qFatal("no free port on the loopback interface");
}

QString HttpServer::address(const char *path) const
{
    return QString(QLatin1String("http://127.0.0.1:%1%2"))
        .arg(QString::number(serverPort()), QLatin1String(path));
}

void HttpServer::serve(const char *target, const QByteArray &body, const QByteArray &headers)
{
    serveBytes(target, response("200 OK", headers, body));
}

void HttpServer::serveBytes(const QByteArray &target, const QByteArray &bytes)
{
    m_answers.insert(target, bytes);
}

void HttpServer::ignore(const QByteArray &target)
{
    m_ignored = target;
}

QList<HttpRequest> HttpServer::requests(const char *target) const
{
    QList<HttpRequest> result;
    for (int i = 0; i < m_requests.size(); ++i) {
        if (m_requests.at(i).target == target)
            result.append(m_requests.at(i));
    }
    return result;
}

bool HttpServer::awaitRequests(const char *target, int count) const
{
    QElapsedTimer time;
    time.start();
    while (requests(target).size() < count && time.elapsed() < 60000)
        QTest::qWait(10);
    return requests(target).size() >= count;
}

QStringList HttpServer::clients(const char *target) const
{
    QStringList result;
    const QList<HttpRequest> sent = requests(target);
    for (int i = 0; i < sent.size(); ++i)
        result.append(sent.at(i).client);
    return result;
}

void HttpServer::incomingConnection(ToolkitDifferences::SocketDescriptor descriptor)
{
    QTcpSocket *socket = makeSocket();
    connect(socket, SIGNAL(readyRead()), SLOT(read()));
    connect(socket, SIGNAL(disconnected()), socket, SLOT(deleteLater()));
    socket->setSocketDescriptor(descriptor);
    begin(socket);
}

QTcpSocket *HttpServer::makeSocket()
{
    return new QTcpSocket(this);
}

// A request of a browser fits in what is buffered; only its head is of interest.
void HttpServer::read()
{
    QTcpSocket *socket = qobject_cast<QTcpSocket *>(sender());
    const QByteArray head = socket->peek(65536);
    if (!head.contains("\r\n\r\n"))
        return;
    socket->readAll();
    HttpRequest request = parse(head);
    request.client = clientOf(socket);
    m_requests.append(request);
    answer(socket, request);
}

void HttpServer::answer(QTcpSocket *socket, const HttpRequest &request)
{
    if (request.target == m_ignored) {
        socket->setProperty(ignoredTarget, request.target);
        connect(socket, SIGNAL(disconnected()), SLOT(noteDeparture()));
        return;
    }
    QByteArray bytes =
        m_answers.value(request.target, response("404 Not Found", QByteArray(), "none"));
    if (request.headers.value("proxy-authorization") != m_authorization)
        bytes = response("407 Proxy Authentication Required",
                         "Proxy-Authenticate: Basic realm=\"tests\"\r\n", QByteArray());
    socket->write(bytes);
    socket->disconnectFromHost();
}

void HttpServer::noteDeparture()
{
    m_departures.append(sender()->property(ignoredTarget).toByteArray());
}
