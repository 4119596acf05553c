#ifndef DATABASE_PERSISTENT_PERSISTENT_T_H
#define DATABASE_PERSISTENT_PERSISTENT_T_H

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include "database/base/json_image_t.h"
#include "database/definition/service_t.h"
#include "database/persistent/define/ps_type_database_field_t.h"
#include "database/persistent/ps_data_t.h"
#include "database/persistent/ps_handler_topic_t.h"
#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {
namespace persistent {

/**
 * The persistent engine: it owns the configuration tree, its JSON image and
 * the image's hashes, and the topic router. Packets from the host enter by
 * update(); packets raised by the model leave by its signals. The host reaches
 * it through database_t::getPersistent().
 */
class DATABASE_EXPORT persistent_t : public QObject
{
    Q_OBJECT
    Q_PROPERTY(database::persistent::ps_data_t* data READ getData NOTIFY onPersistentDataChanged)

public:
    explicit persistent_t(::database::definition::service_t const& service);
    persistent_t(persistent_t const& other);
    ~persistent_t() override;

    ::database::definition::service_t getService() const { return service; }
    void setService(::database::definition::service_t const& _service) { service = _service; }
    QString getName() const { return name; }
    void setName(QString const& _name) { name = _name; }

    ps_data_t* getData() const { return data; }
    ps_handler_topic_t* getHandlerTopic() const { return handler_topic; }
    QMutex* getAccessMutex() const { return access_mutex; }
    int getUpdateCount() const { return image.updates(); }
    bool isJdataValid() const { return image.isFresh(); }

    /// Entry of every packet from the host; false when no route takes it.
    bool update(QJsonObject const& packet);
    void updateError(QJsonObject packet, QString const& message);

    void requestSetDB(ps_data_t* data);
    void update_database(QJsonObject data, bool send);
    void send_update_database(QList<QString> changes);
    QJsonObject getStatusDatabasePacket();

    QJsonObject serialize(bool force);
    void deserialize(QJsonObject const& json);
    void initSerializer();

    QString getHash();
    /// The image's stamp, once the image is up to date: equal stamps, equal
    /// images, without the digests a changed image would need.
    quint64 getImageStamp();
    QMap<QString, QString> getHashList();
    /// -1 unknown section, 0 same digest, 1 different (and with send, the section is replayed).
    int checkHash(QString const& section, QString const& hash, bool send);
    void calculateHash();

    QJsonObject getJdata();
    QJsonObject getJdata(definition::ps_type_database_field_t const& field);
    QJsonValue getJsonValue(QString const& path);

    void setVersions(QString const& general, QString const& server, QString const& comunication);
    void print();
    void initRequestGeneralSignals(bool connect);

    // Files: the host chooses the paths.
    QJsonObject loadFromFile(QString const& path, int& result);
    QJsonObject loadFromJson(QJsonObject& json, int& result);
    QJsonObject readFromFile(QString const& path);
    bool saveToFile(QString const& path, bool force);

Q_SIGNALS:
    void resetDatabase();
    void consistency_check_async(QStringList _howCheck = QStringList(), bool _persistent = true,
                                 bool _realtime = true);
    void consistency_check_sync(QStringList _howCheck = QStringList(), bool _persistent = true,
                                bool _realtime = true);
    void eventOfflineRequest(QJsonObject _packet);
    void onPersistentRequest(QJsonObject _packet);
    void onPersistentObjectNotExist(QJsonObject _packet);
    void onPersistentObjectError(QJsonObject _packet, QString _message);
    void start_timer_serializer();
    void stop_timer_serializer();
    void onSaveRequest();
    void onPersistentErrorUpdateChangeDatabase(QString _topic, QString _message);
    void onPersistentDataChanged(database::persistent::ps_data_t* data);

private Q_SLOTS:
    void timer_serializer_elepsed();
    void _onUpdated(QJsonObject _packet);
    void _onRequest(QJsonObject _packet);
    void _onObjectNotExist(QJsonObject _packet);
    void _onObjectError(QJsonObject _packet, QString _message);

private:
    /// The image's own rebuild, made only while no other holder has the tree;
    /// false when it has to wait.
    bool serializeUnlessBusy(bool force);
    void dropTree();
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    QTimer timer_serializer;
    base::json_image_t image;
    int counter = 0;
    ::database::definition::service_t service;
    QString name;
    QMutex* access_mutex = nullptr;
    QMutex* save_mutex = nullptr;
    ps_handler_topic_t* handler_topic = nullptr;
    QPointer<ps_data_t> data;
};

} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_PERSISTENT_T_H
