#ifndef HOST_DBHOST_HOST_LINK_T_H
#define HOST_DBHOST_HOST_LINK_T_H

#include <QJsonObject>
#include <QObject>
#include <QString>

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

    /// Starts reading; called once, when the session starts.
    virtual void start() = 0;
    /// Leaves in order (the databases are already saved).
    virtual void stop() {}

    /// A request raised in this process, by its engines or by its own users.
    virtual void forwardRequest(QJsonObject const& packet) = 0;
    /// A change of a database of this process ("persistent", "realtime",
    /// "presencesimulation"); key is null on routes that carry none.
    virtual void reportChange(QString const& database, QString const& signal, QString const& key,
                              QJsonObject const& packet) = 0;
    /// A packet that was refused or not applied: the event is "refused",
    /// "not_exist" or "error", with the library's message for the last.
    virtual void reportProblem(QString const& event, QJsonObject const& packet, QString const& message) = 0;

Q_SIGNALS:
    /// A packet for the engines of this process; origin names it in messages.
    void packetArrived(QJsonObject packet, QString origin);
    /// A request made by a user of this process, to be forwarded like the
    /// requests the engines raise.
    void requestMade(QJsonObject packet);
    /// Nothing more will come: the session ends.
    void ended();
};

#endif // HOST_DBHOST_HOST_LINK_T_H
