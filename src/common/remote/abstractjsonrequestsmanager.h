#pragma once

#include <QObject>
#include <QString>

/// Sends JSON texts to the peer and receives the peer's. A text is a request or the answer
/// ("response") to one; an answer has the id of its request.
class AbstractJsonRequestsManager : public QObject {
    Q_OBJECT
public:
    explicit AbstractJsonRequestsManager(QObject *parent = nullptr) : QObject(parent) { }

    /// A fresh id for a request. Any thread.
    virtual qint64 nextId() = 0;
    /// The text is sent unchanged. Any thread.
    virtual void send(qint64 id, const QString &json, bool isRequest) = 0;

Q_SIGNALS:
    void received(qint64 id, const QString &json, bool isRequest);
    /// A text given to send() was not delivered.
    void sendFailed(qint64 id, const QString &json, bool isRequest);
};
