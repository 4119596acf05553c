#ifndef HOST_DBHOST_HOST_LINK_T_H
#define HOST_DBHOST_HOST_LINK_T_H

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>

/**
 * Where the packets of a host come from and where what the library gives the
 * host goes: standard input and output, or a broker. The session knows only
 * this face, so that a transport can be added without touching it.
 */
class host_link_t : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~host_link_t() override;

    /// A packet with its texts, each made once by the first link that asks
    /// and then shared by the journal and every link.
    class packet_t
    {
    public:
        explicit packet_t(QJsonObject _packet);

        QJsonObject packet;

        /// The payload as compact JSON ("null" for a removal), as the broker carries it.
        QByteArray const& payloadText() const;
        /// The whole packet as compact JSON.
        QByteArray const& packetText() const;
        /// Takes text as the payload's, when the payload's text is known
        /// already: the text it came as, checked to be the one it would get.
        void setPayloadText(QByteArray const& text) { payload = text; }

    protected:
        /// A packet of a topic and a payload only: its text is made of the payload's.
        bool plain() const;

    private:
        mutable QByteArray payload;
        mutable QByteArray packetJson;
        mutable signed char plainness = -1;
    };

    /// A change of a database of this process as every link gets it: the
    /// database ("persistent", "realtime", "presencesimulation"), the signal,
    /// the key (null on routes that carry none) and the packet.
    class change_t : public packet_t
    {
    public:
        change_t(QString _database, QString _signal, QString _key, QJsonObject _packet);

        QString database;
        QString signal;
        QString key;

        /// The change as one line of JSON (no newline): the same text on
        /// standard output and on the inspector's feed, made once by the
        /// first link that asks.
        QByteArray const& line() const;
        /// The change as the status it is journaled as ("status/DB/<database>/<topic>"), one line of JSON.
        QByteArray journalEntry() const;

    private:
        mutable QByteArray text;
    };

    /// Starts reading; called once, when the session starts.
    virtual void start() = 0;
    /// Leaves in order (the databases are already saved).
    virtual void stop() {}

    /// A request raised in this process, by its engines or by its own users.
    virtual void forwardRequest(packet_t const& request) = 0;

    /// A change of a database of this process.
    virtual void reportChange(change_t const& change) = 0;
    /// A packet that was refused or not applied: the event is "refused",
    /// "not_exist" or "error", with the library's message for the last.
    virtual void reportProblem(QString const& event, QJsonObject const& packet, QString const& message) = 0;
    /// After a batch of reports: what was written may go out now.
    virtual void flushOutput() {}

    /// A request of this process is accepted, before it is reported and
    /// forwarded: a link that must find it again after a crash returns the
    /// record's text to journal with it (empty: nothing to keep).
    virtual QByteArray acceptRequest(packet_t const& request);
    /// A record of this link's found in the journal at start, in order.
    virtual void restoreRecord(QJsonObject const& record);
    /// What this link must find again once the journal is started anew.
    virtual QList<QJsonObject> carriedRecords() const;
    /// Stops taking packets, or takes them again (the journal can't be written).
    virtual void holdInput(bool hold);

    /// Runs work once everything reported so far is durable; set by the
    /// session (without one, at once).
    void whenDurable(std::function<void()> work) const;
    void setDurability(std::function<void(std::function<void()>)> gate) { durability = std::move(gate); }

protected:
    /// Carries what the library was handed through its queued hops at once,
    /// so that the changes of a packet are journaled before what follows it.
    static void settleLibrary();

Q_SIGNALS:
    /// A packet for the engines of this process; origin names it in messages.
    /// payloadText is the text the payload came as where it is the one the
    /// host would write (host_json_t::isCompactText), else empty.
    void packetArrived(QJsonObject packet, QString origin, QByteArray payloadText = QByteArray());
    /// A request made by a user of this process, to be forwarded like the
    /// requests the engines raise; payloadText as for packetArrived().
    void requestMade(QJsonObject packet, QByteArray payloadText);
    /// Nothing more will come: the session ends.
    void ended();
    /// A record of this link's own, journaled with the next commit.
    void recordMade(QJsonObject record);
    /// True while the link can't take more requests; the session holds input.
    void congested(bool full);

private:
    std::function<void(std::function<void()>)> durability;
};

#endif // HOST_DBHOST_HOST_LINK_T_H
