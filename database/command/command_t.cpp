#include "database/command/command_t.h"

#include "database/base/json_image_t.h"
#include "database/database_t.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace command {

command_t::command_t(database_t* database)
{
    CLASSLOGS_LOG(QStringLiteral("Starting command database engine ..."), ::utility::logs::trace,
                  QStringLiteral("command_t"));
    handler_topic = new cmd_handler_topic_t(database, this);
    if (database)
        setService(database->getService());
    initSerializer();
}

command_t::command_t(command_t const& other)
    : QObject(nullptr)
{
    handler_topic = new cmd_handler_topic_t(other.handler_topic->getDatabase(), this);
    setService(other.service);
    initSerializer();
}

void command_t::setService(::database::definition::service_t const& _service)
{
    if (_service == service)
        return;
    service = _service;
    handler_topic->initInternalEvent(service == ::database::definition::service_t::offline);
}

void command_t::initSerializer()
{
    if (data) {
        data->initRequestSignals(this, false);
        delete data;
    }
    data = new cmd_data_t(this);
    data->initRequestSignals(this, true);
}

void command_t::initRequestGeneralSignals(bool connect)
{
    if (data)
        data->initRequestSignals(this, connect);
}

void command_t::_onUpdated(QJsonObject _packet)
{
    // Nothing of the channel changes: the call is all a pairing code does here.
    handler_topic->whoIsChange(_packet, true);
}

void command_t::_onRequest(QJsonObject _packet)
{
    if (service == ::database::definition::service_t::offline) {
        handler_topic->whoIsRequest(_packet, true);
        return;
    }
    Q_EMIT onCommandRequest(_packet);
}

void command_t::_onObjectNotExist(QJsonObject _packet)
{
    base::json_image_t::logNotExist(data ? data->getPrefix() : QString(), _packet);
    Q_EMIT onCommandObjectNotExist(_packet);
}

void command_t::_onObjectError(QJsonObject _packet, QString _message)
{
    base::json_image_t::logObjectError(data ? data->getPrefix() : QString(), _packet, _message);
    Q_EMIT onCommandObjectError(_packet, _message);
}

} // namespace command
} // namespace database
