#include "database/persistent/dbs/drivers/ps_object_driver_bus_detail_t.h"

#include "database/persistent/ps_request.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_object_driver_bus_detail_t::ps_object_driver_bus_detail_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_object_driver_bus_detail_t::ps_object_driver_bus_detail_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_object_driver_bus_detail_t::ps_object_driver_bus_detail_t(ps_object_driver_bus_detail_t const& other)
    : topicbase_t(other)
    , address(other.address)
{
}

void ps_object_driver_bus_detail_t::setAddress(QString const& value)
{
    assign(address, value, [this] { Q_EMIT addressChanged(address); });
}

void ps_object_driver_bus_detail_t::requestSetAddress(QString const& value)
{
    requestField(this, QStringLiteral("address"), value);
}

void ps_object_driver_bus_detail_t::requestSet(ps_object_driver_bus_detail_t* other)
{
    requestAt(this, topic, other ? other->toJson() : QJsonObject());
}

void ps_object_driver_bus_detail_t::update(ps_object_driver_bus_detail_t const* other, bool _notify)
{
    updateValues(other, _notify);
}

void ps_object_driver_bus_detail_t::send_update()
{
    publishSelf();
}

void ps_object_driver_bus_detail_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
