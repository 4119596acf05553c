#ifndef DATABASE_REALTIME_REALTIME_T_H
#define DATABASE_REALTIME_REALTIME_T_H

#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include "database/base/json_image_t.h"
#include "database/definition/service_t.h"
#include "database/realtime/define/rt_type_database_field_t.h"
#include "database/realtime/rt_data_t.h"
#include "database/realtime/rt_handler_topic_t.h"

#include "database/database_export.h"

namespace database {
namespace realtime {

/**
 * The realtime engine: it owns the live tree (last values, thermostat
 * figures, driver status, ...), its JSON image with per-section hashes, and
 * the realtime topic router. Status packets from the host enter by update();
 * the tree's changes leave by the router's change signals. The host reaches
 * it through database_t::getRealtime().
 */
class DATABASE_EXPORT realtime_t : public QObject
{
    Q_OBJECT
    Q_PROPERTY(database::realtime::rt_data_t* data READ getData NOTIFY onRealtimeDataChanged)

public:
    explicit realtime_t(::database::definition::service_t const& service);
    /// A second engine on a copy of other's image, with its own router and timer.
    realtime_t(realtime_t& other);
    ~realtime_t() override;

    ::database::definition::service_t getService() const { return service; }
    void setService(::database::definition::service_t const& _service) { service = _service; }
    QString getName() const { return name; }
    void setName(QString const& _name) { name = _name; }

    rt_data_t* getData() const { return data; }
    rt_handler_topic_t* getHandlerTopic() const { return handler_topic; }
    /// Held by the status slots while they change the tree.
    QMutex* getAccessMutex() const { return access_mutex; }
    int getUpdateCount() const { return image.updates(); }
    bool isJdataValid() const { return image.isFresh(); }

    /// The way in for a status packet; false when no route takes it.
    bool update(QJsonObject const& packet);
    void updateError(QJsonObject const& packet, QString const& message);
    /// Stamps the current time into path + "/updated" of doc.
    bool updateDateTime(QJsonDocument& doc, QString const& path);

    void requestSetDB(rt_data_t* data);
    void update_database(QJsonObject data, bool notify);
    void send_update_database(QList<QString> change_list);
    QJsonObject getStatusDatabasePacket();

    QJsonObject serialize(bool force);
    void deserialize(QJsonObject const& data);
    void initSerializer();
    void initRequestGeneralSignals(bool connect);

    QJsonObject getJdata();
    QJsonObject getJdata(definition::rt_type_database_field_t const& field);
    QString getHash();
    /// The image's stamp, once the image is up to date: equal stamps, equal
    /// images, without the digests a changed image would need.
    quint64 getImageStamp();
    QMap<QString, QString> getHashList(bool refresh);
    QMap<QString, QString> calculateHash();
    /// -1 unknown section, 0 same hash, 1 different (and the section is replayed as status).
    int checkHash(QString const& path, QString const& hash);

    // Files: the host chooses the paths.
    bool saveToFile(QString const& path, bool force);
    QJsonObject loadFromFile(QString const& path, int version, int& result);
    QJsonObject loadFromJson(QJsonObject& data, int version, int& result);
    QJsonObject readFromFile(QString const& path);

Q_SIGNALS:
    void eventOfflineRequest(QJsonObject _packet);
    void onRealtimeRequest(QJsonObject _packet);
    void onRealtimeObjectNotExist(QJsonObject _packet);
    void onRealtimeObjectError(QJsonObject _packet, QString _message);
    void start_timer_serializer();
    void stop_timer_serializer();
    void onSaveRequest();
    void onRealtimeErrorUpdateChangeDatabase(QString _topic, QString _message);
    void onRealtimeDataChanged(database::realtime::rt_data_t* data);

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
    void initTimer();
    void dropTree();
    void adopt(rt_data_t* tree);
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    QTimer timer_serializer;
    base::json_image_t image;
    ::database::definition::service_t service;
    QString name;
    QMutex* access_mutex = nullptr;
    QMutex* save_mutex = nullptr;
    rt_handler_topic_t* handler_topic = nullptr;
    QPointer<rt_data_t> data;
};

} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_REALTIME_T_H
