#ifndef DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_ITEM_T_H
#define DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_ITEM_T_H

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/**
 * One data point of the installation: a value on a bus or a virtual value,
 * served by a driver. Elements, schedules, scenarios, rules and thermostats
 * refer to it by its key in the items section.
 */
class DATABASE_EXPORT ps_object_item_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString id_driver READ getIdDriver WRITE setIdDriver NOTIFY id_driverChanged)
    Q_PROPERTY(QString name READ getName WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString description READ getDescription WRITE setDescription NOTIFY descriptionChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QString status READ getStatus WRITE setStatus NOTIFY statusChanged)
    Q_PROPERTY(QString command READ getCommand WRITE setCommand NOTIFY commandChanged)
    Q_PROPERTY(QString feedback READ getFeedback WRITE setFeedback NOTIFY feedbackChanged)
    Q_PROPERTY(QString type READ getType WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QString typeformat READ getTypeFormat WRITE setTypeFormat NOTIFY typeformatChanged)
    Q_PROPERTY(QString interpreter READ getInterpreter WRITE setInterpreter NOTIFY interpreterChanged)
    Q_PROPERTY(bool tracking READ getTracking WRITE setTracking NOTIFY trackingChanged)
    Q_PROPERTY(int flags READ getFlags WRITE setFlags NOTIFY flagsChanged)
    // The elements that use this item: kept in memory only.
    Q_PROPERTY(QVariantMap id_element READ getIdElement WRITE setIdElement NOTIFY id_elementChanged STORED false)

public:
    enum ItemFlag {
        ITEM_FLAG_RECORDING_PRESENCE_SIMULATION = 1,
        ITEM_FLAG_PLAY_PRESENCE_SIMULATION = 2,
        ITEM_FLAG_GROUP_OBJECT_COMMAND_COMMUNICATION = 4,
        ITEM_FLAG_GROUP_OBJECT_STATUS_COMMUNICATION = 8,
        ITEM_FLAG_GROUP_OBJECT_COMMAND_TRANSMISSION = 16,
        ITEM_FLAG_GROUP_OBJECT_STATUS_TRANSMISSION = 32,
        ITEM_FLAG_GROUP_OBJECT_COMMAND_UPDATE = 64,
        ITEM_FLAG_GROUP_OBJECT_STATUS_UPDATE = 128,
        ITEM_FLAG_GROUP_OBJECT_COMMAND_READ = 256,
        ITEM_FLAG_GROUP_OBJECT_STATUS_READ = 512,
        ITEM_FLAG_GROUP_OBJECT_COMMAND_WRITE = 1024,
        ITEM_FLAG_GROUP_OBJECT_STATUS_WRITE = 2048,
        ITEM_FLAG_GROUP_OBJECT_COMMAND_INITIALIZE = 4096,
        ITEM_FLAG_GROUP_OBJECT_STATUS_INITIALIZE = 8192
    };
    Q_ENUM(ItemFlag)

    Q_INVOKABLE explicit ps_object_item_t(QObject* parent = nullptr);
    ps_object_item_t(QString const& topic, QObject* parent);
    ps_object_item_t(QString const& id_driver, QString const& name, QString const& description, bool enabled,
                     QString const& status, QString const& command, QString const& feedback, QString const& type,
                     QString const& typeformat, QString const& interpreter, bool tracking,
                     QVariantMap const& id_element, int flags, QObject* parent);
    ps_object_item_t(ps_object_item_t const& other);

    QString getIdDriver() const { return id_driver; }
    QString getName() const { return name; }
    QString getDescription() const { return description; }
    bool getEnabled() const { return enabled; }
    QString getStatus() const { return status; }
    QString getCommand() const { return command; }
    QString getFeedback() const { return feedback; }
    QString getType() const { return type; }
    QString getTypeFormat() const { return typeformat; }
    QString getInterpreter() const { return interpreter; }
    bool getTracking() const { return tracking; }
    int getFlags() const { return flags; }
    QVariantMap getIdElement() const { return id_element; }

    void setIdDriver(QString const& value);
    void setName(QString const& value);
    void setDescription(QString const& value);
    void setEnabled(bool value);
    void setStatus(QString const& value);
    void setCommand(QString const& value);
    void setFeedback(QString const& value);
    void setType(QString const& value);
    void setTypeFormat(QString const& value);
    void setInterpreter(QString const& value);
    void setTracking(bool value);
    void setFlags(int value);
    void setIdElement(QVariantMap const& value);

    /// True when any of the given bits is set.
    bool getFlag(int _itemFlag) const;

    void update_status(QString const& value, bool _notify);
    void update_command(QString const& value, bool _notify);
    void update_feedback(QString const& value, bool _notify);
    /// Takes every property of other, id_element too, but not the topic.
    void update(ps_object_item_t const* other, bool _notify);
    /// True when all thirteen properties are equal; the topic doesn't count.
    bool compare(ps_object_item_t const* other) const;

    void requestSetValue(QString const& value);
    void send_update();
    void initRequestSignals(QObject* receiver, bool connect);

Q_SIGNALS:
    void id_driverChanged(QString);
    void nameChanged(QString);
    void descriptionChanged(QString);
    void enabledChanged(QString);
    void statusChanged(QString);
    void commandChanged(QString);
    void feedbackChanged(QString);
    void typeChanged(QString);
    void typeformatChanged(QString);
    void interpreterChanged(QString);
    void trackingChanged(QString);
    void id_elementChanged(QVariantMap);
    void flagsChanged(int);

private:
    QString id_driver;
    QString name;
    QString description;
    bool enabled = true;
    QString status;
    QString command;
    QString feedback;
    QString type;
    QString typeformat;
    QString interpreter;
    bool tracking = false;
    int flags = 0;
    QVariantMap id_element;
};

} // namespace objects

typedef QMap<QString, objects::ps_object_item_t*> ps_items_map;

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_PS_OBJECT_ITEM_T_H
