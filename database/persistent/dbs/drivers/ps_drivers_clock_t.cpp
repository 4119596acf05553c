#include "database/persistent/dbs/drivers/ps_drivers_clock_t.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

ps_drivers_clock_t::ps_drivers_clock_t(QObject* parent)
    : topicbase_t(parent)
{
}

ps_drivers_clock_t::ps_drivers_clock_t(QString const& topic, QObject* parent)
    : topicbase_t(topic, parent)
{
}

ps_drivers_clock_t::ps_drivers_clock_t(ps_drivers_clock_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_drivers_clock_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

void ps_drivers_clock_t::setInitRead(int value)
{
    assign(init_read, value, [this] { Q_EMIT init_readChanged(init_read); });
}

void ps_drivers_clock_t::setMode(int value)
{
    assign(mode, value, [this] { Q_EMIT modeChanged(mode); });
}

void ps_drivers_clock_t::setIdItemDate(QString const& value)
{
    assign(id_item_date, value, [this] { Q_EMIT id_item_dateChanged(id_item_date); });
}

void ps_drivers_clock_t::setIdItemTime(QString const& value)
{
    assign(id_item_time, value, [this] { Q_EMIT id_item_timeChanged(id_item_time); });
}

void ps_drivers_clock_t::setIdItemDatetime(QString const& value)
{
    assign(id_item_datetime, value, [this] { Q_EMIT id_item_datetimeChanged(id_item_datetime); });
}

void ps_drivers_clock_t::setTimeToWrite(int value)
{
    assign(time_to_write, value, [this] { Q_EMIT time_to_writeChanged(time_to_write); });
}

void ps_drivers_clock_t::setDateToWrite(int value)
{
    assign(date_to_write, value, [this] { Q_EMIT date_to_writeChanged(date_to_write); });
}

void ps_drivers_clock_t::setDatetimeToWrite(int value)
{
    assign(datetime_to_write, value, [this] { Q_EMIT datetime_to_writeChanged(datetime_to_write); });
}

void ps_drivers_clock_t::update_enabled(bool value, bool _notify)
{
    setEnabled(value);
    if (_notify)
        // The routers have a change route of its own for the flag.
        publishField(QStringLiteral("enabled"), value);
}

void ps_drivers_clock_t::update_item_date(QString const& value, bool _notify)
{
    setIdItemDate(value);
    if (_notify)
        send_update();
}

void ps_drivers_clock_t::update_item_time(QString const& value, bool _notify)
{
    setIdItemTime(value);
    if (_notify)
        send_update();
}

void ps_drivers_clock_t::update_item_datetime(QString const& value, bool _notify)
{
    setIdItemDatetime(value);
    if (_notify)
        send_update();
}

void ps_drivers_clock_t::update(ps_drivers_clock_t const* other, bool _notify)
{
    updateValues(other, _notify);
}

void ps_drivers_clock_t::send_update()
{
    publishSelf();
}

void ps_drivers_clock_t::initRequestSignals(QObject* receiver, bool connect)
{
    connectRequestSignals(receiver, connect);
}

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database
