// SPDX-License-Identifier: MIT
#ifndef HTTPSERVER_H
#define HTTPSERVER_H

#include "tests/support/toolkitdifferences.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

/// A request as it came.
struct HttpRequest {
    QByteArray method;
    QByteArray target; ///< a path, an address for a proxy, or a host for it to connect to
    QMap<QByteArray, QByteArray> headers; ///< by their names in lower case
    QString client; ///< the name in the client's certificate; empty without one
};

/// A server on a free port of the loopback interface. It answers what it was told to, and keeps the
/// requests. It works while its thread's event loop does.
class HttpServer : public QTcpServer
{
    Q_OBJECT

public:
    HttpServer();

    /// "http://127.0.0.1:PORT" with the path after it.
    virtual QString address(const char *path = "/") const;

    /// Answers a target with a page; `headers` are whole lines.
    void serve(const char *target, const QByteArray &body,
               const QByteArray &headers = QByteArray());

    /// Answers a target with these very bytes, after which the server closes.
    void serveBytes(const QByteArray &target, const QByteArray &bytes);

    /// Never answers a target, and never closes.
    void ignore(const QByteArray &target);

    /// How many clients have closed while they waited for the answer to a target that is ignored.
    int departures(const char *target) const { return m_departures.count(target); }

    /// With this, whatever has no "Proxy-Authorization: VALUE" is told to come with one.
    void demandProxyAuthorization(const QByteArray &value) { m_authorization = value; }

    QList<HttpRequest> requests() const { return m_requests; }
    QList<HttpRequest> requests(const char *target) const;

    /// Works until it was asked for a target so often; false when that takes more than a minute.
    bool awaitRequests(const char *target, int count = 1) const;

    /// Who sent the requests for a target.
    QStringList clients(const char *target) const;

    void forget() { m_requests.clear(); }

protected:
    void incomingConnection(ToolkitDifferences::SocketDescriptor descriptor) override;

    /// The socket for a connection that arrived, which belongs to the server.
    virtual QTcpSocket *makeSocket();
    virtual void begin(QTcpSocket *) {}
    virtual QString clientOf(QTcpSocket *) const { return QString(); }

private Q_SLOTS:
    void read();
    void noteDeparture();

private:
    void answer(QTcpSocket *socket, const HttpRequest &request);

    QMap<QByteArray, QByteArray> m_answers;
    QList<HttpRequest> m_requests;
    QByteArray m_authorization;
    QByteArray m_ignored;
    QList<QByteArray> m_departures; ///< targets
};

#endif // HTTPSERVER_H
