#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

/// One of the protocols on the link: handles its incoming messages, and emits those to send.
/// Belongs to the link's thread.
class QtAbstractVhIpcPart : public QObject {
    Q_OBJECT
public:
    explicit QtAbstractVhIpcPart(QObject *parent = nullptr);

    /// A message arrived. One that could not be decoded is an empty map.
    virtual void processVh(const QHash<QString, QVariant> &map) = 0;
    /// The link is up or down. An override must call this one, which stores the value.
    virtual void onConnectChanged(bool connected);

    /// Whether the part has everything that the program needs from it; initially true.
    bool isReady() const { return m_ready; }
    void setReady(bool ready);
    /// Whether the part has work that requires the server to run; initially false.
    bool isRequiringServer() const { return m_requiringServer; }
    void setRequiringServer(bool requiring);
    bool isConnected() const { return m_connected; }

    /// Sets the function that says whether the receiver of sendVh() accepts lists that are already
    /// encoded.
    void setAcceptsEncoded(std::function<bool()> mayBeEncoded);
    /// Whether a message may contain a QtEncodedVariantList instead of the list itself: only if its
    /// sole receiver writes it as a data stream. Determined once per connection, with the first
    /// message.
    bool maySendEncoded();

Q_SIGNALS:
    /// A message to send. It has the part's own name under the key "name".
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
