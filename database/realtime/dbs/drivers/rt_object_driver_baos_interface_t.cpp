#include "database/realtime/dbs/drivers/rt_object_driver_baos_interface_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

rt_object_driver_baos_interface_t::rt_object_driver_baos_interface_t(QObject* parent)
    : rt_object_driver_interface_t(parent)
{
}

rt_object_driver_baos_interface_t::rt_object_driver_baos_interface_t(QString const& topic, QObject* parent)
    : rt_object_driver_interface_t(topic, parent)
{
}

rt_object_driver_baos_interface_t::rt_object_driver_baos_interface_t(
    rt_object_driver_baos_interface_t const& other)
    : rt_object_driver_interface_t(other)
{
    copyValues(&other);
}

void rt_object_driver_baos_interface_t::requestSetProgrammingMode(BAOS_PROGRAMING_MODE mode)
{
    QJsonObject const packet = getPacketRequest(requestTopic(topic + QStringLiteral("/programming")), int(mode));
    if (int(mode) > BAOS_PROGRAMING_MODE_TOGLE) {
        Q_EMIT onObjectError(packet, QStringLiteral("Value not allowed"));
        return;
    }
    Q_EMIT onRequest(packet);
}

void rt_object_driver_baos_interface_t::requestSetResetUserConfig()
{
    requestSuffix(this, QStringLiteral("/reset"));
}

void rt_object_driver_baos_interface_t::requestSetWriteOnDevice()
{
    requestSuffix(this, QStringLiteral("/writeondevice"));
}

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database
