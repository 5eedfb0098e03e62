#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

/// One conversation over the link: takes the messages that are meant for it and asks for its own to
/// be sent. Belongs to the link's thread.
class QtAbstractVhIpcPart : public QObject {
    Q_OBJECT
public:
    explicit QtAbstractVhIpcPart(QObject *parent = nullptr);

    /// A message arrived. One that could not be decoded comes as an empty map.
    virtual void processVh(const QHash<QString, QVariant> &map) = 0;
    /// The link is up or down. An override calls this one, which keeps the value.
    virtual void onConnectChanged(bool connected);

    /// Whether the part has all that the rest of the program wants of it; true at first.
    bool isReady() const { return m_ready; }
    void setReady(bool ready);
    /// Whether the part has work for which the server must run; false at first.
    bool isRequiringServer() const { return m_requiringServer; }
    void setRequiringServer(bool requiring);
    bool isConnected() const { return m_connected; }

    /// Tells who takes this part's messages, and whether he minds lists that are encoded already.
    void setTaker(std::function<bool()> mayBeEncoded);
    /// Whether a QtEncodedVariantList may stand in a message for the list itself: nobody sees the
    /// message but the taker, and he writes it as a data stream. Found out once for a connection,
    /// with the first message.
    bool maySendEncoded();

Q_SIGNALS:
    /// A message to send. It carries the part's own name under the key "name".
    void sendVh(const QHash<QString, QVariant> &map);
    void readyStateChanged(bool ready);
    void requiringServerChanged(bool requiring);

private:
    std::function<bool()> m_mayBeEncoded;
    std::optional<bool> m_maySendEncoded;
    bool m_ready = true;
    bool m_requiringServer = false;
    bool m_connected = false;
};
