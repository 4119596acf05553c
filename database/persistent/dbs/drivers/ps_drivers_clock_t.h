#ifndef DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_CLOCK_T_H
#define DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_CLOCK_T_H

#include <QObject>
#include <QString>
#include <QStringList>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {
namespace drivers {

/**
 * The clock driver: which items carry the date and the time of the
 * installation, and how the driver service reads and writes them. The
 * numbers belong to that service; the database only keeps them.
 */
class DATABASE_EXPORT ps_drivers_clock_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(int init_read READ getInitRead WRITE setInitRead NOTIFY init_readChanged)
    Q_PROPERTY(int mode READ getMode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(QString id_item_date READ getIdItemDate WRITE setIdItemDate NOTIFY id_item_dateChanged)
    Q_PROPERTY(QString id_item_time READ getIdItemTime WRITE setIdItemTime NOTIFY id_item_timeChanged)
    Q_PROPERTY(QString id_item_datetime READ getIdItemDatetime WRITE setIdItemDatetime NOTIFY id_item_datetimeChanged)
    Q_PROPERTY(int time_to_write READ getTimeToWrite WRITE setTimeToWrite NOTIFY time_to_writeChanged)
    Q_PROPERTY(int date_to_write READ getDateToWrite WRITE setDateToWrite NOTIFY date_to_writeChanged)
    Q_PROPERTY(int datetime_to_write READ getDatetimeToWrite WRITE setDatetimeToWrite NOTIFY datetime_to_writeChanged)

public:
    Q_INVOKABLE explicit ps_drivers_clock_t(QObject* parent = nullptr);
    ps_drivers_clock_t(QString const& topic, QObject* parent);
    ps_drivers_clock_t(ps_drivers_clock_t const& other);

    bool getEnabled() const { return enabled; }
    int getInitRead() const { return init_read; }
    int getMode() const { return mode; }
    QString getIdItemDate() const { return id_item_date; }
    QString getIdItemTime() const { return id_item_time; }
    QString getIdItemDatetime() const { return id_item_datetime; }
    int getTimeToWrite() const { return time_to_write; }
    int getDateToWrite() const { return date_to_write; }
    int getDatetimeToWrite() const { return datetime_to_write; }

    void setEnabled(bool value);
    void setInitRead(int value);
    void setMode(int value);
    void setIdItemDate(QString const& value);
    void setIdItemTime(QString const& value);
    void setIdItemDatetime(QString const& value);
    void setTimeToWrite(int value);
    void setDateToWrite(int value);
    void setDatetimeToWrite(int value);

    void update_enabled(bool value, bool _notify);
    void update_item_date(QString const& value, bool _notify);
    void update_item_time(QString const& value, bool _notify);
    void update_item_datetime(QString const& value, bool _notify);
    /// Takes every value of other; the topic stays.
    void update(ps_drivers_clock_t const* other, bool _notify);

    /// The one id by which items name this driver: its topic.
    QStringList getDriverIds() const { return {topic}; }

    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void enabledChanged(bool);
    void init_readChanged(int);
    void modeChanged(int);
    void id_item_dateChanged(QString);
    void id_item_timeChanged(QString);
    void id_item_datetimeChanged(QString);
    void time_to_writeChanged(int);
    void date_to_writeChanged(int);
    void datetime_to_writeChanged(int);

private:
    bool enabled = false;
    int init_read = 0;
    int mode = 0;
    QString id_item_date;
    QString id_item_time;
    QString id_item_datetime;
    int time_to_write = 0;
    int date_to_write = 0;
    int datetime_to_write = 0;
};

} // namespace drivers
} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_DRIVERS_PS_DRIVERS_CLOCK_T_H
