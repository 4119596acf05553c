#ifndef DATABASE_COMMAND_COMMAND_T_H
#define DATABASE_COMMAND_COMMAND_T_H

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QString>

#include "database/command/cmd_data_t.h"
#include "database/command/cmd_handler_topic_t.h"
#include "database/definition/service_t.h"

#include "database/database_export.h"

namespace database {

class database_t;

namespace command {

/**
 * The command channel: orders to the store as a whole. It has the outward
 * shape of an engine (a data object that raises requests, a topic router)
 * but holds no data and writes no file. An offline process carries out
 * reset and load itself; in the other roles every command goes to the host
 * by onCommandRequest, the server's included.
 */
class DATABASE_EXPORT command_t : public QObject
{
    Q_OBJECT
    Q_PROPERTY(database::command::cmd_data_t* data READ getData NOTIFY onCommandDataChanged)

public:
    /// Takes the role of database and acts on its engines.
    explicit command_t(database_t* database);
    /// A second channel on the same façade, with the same role.
    command_t(command_t const& other);

    ::database::definition::service_t getService() const { return service; }
    /// Only the offline role carries orders out itself.
    void setService(::database::definition::service_t const& service);

    cmd_data_t* getData() const { return data; }
    cmd_handler_topic_t* getHandlerTopic() const { return handler_topic; }

    void initSerializer();
    void initRequestGeneralSignals(bool connect);

Q_SIGNALS:
    // Declared for hosts; this library raises neither eventOfflineRequest,
    // oncommandErrorUpdateChangeDatabase nor onCommandDataChanged.
    void eventOfflineRequest(QJsonObject _packet);
    void onCommandRequest(QJsonObject _packet);
    void onCommandObjectNotExist(QJsonObject _packet);
    void onCommandObjectError(QJsonObject _packet, QString _message);
    void oncommandErrorUpdateChangeDatabase(QString _topic, QString _message);
    void onCommandDataChanged(database::command::cmd_data_t* data);

private Q_SLOTS:
    void _onUpdated(QJsonObject _packet);
    void _onRequest(QJsonObject _packet);
    void _onObjectNotExist(QJsonObject _packet);
    void _onObjectError(QJsonObject _packet, QString _message);

private:
    ::database::definition::service_t service;
    cmd_handler_topic_t* handler_topic = nullptr;
    QPointer<cmd_data_t> data;
};

} // namespace command
} // namespace database

#endif // DATABASE_COMMAND_COMMAND_T_H
