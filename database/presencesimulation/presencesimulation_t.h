#ifndef DATABASE_PRESENCESIMULATION_PRESENCESIMULATION_T_H
#define DATABASE_PRESENCESIMULATION_PRESENCESIMULATION_T_H

#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include "database/base/json_image_t.h"
#include "database/definition/service_t.h"
#include "database/presencesimulation/define/psi_type_database_field_t.h"
#include "database/presencesimulation/psi_data_t.h"
#include "database/presencesimulation/psi_handler_topic_t.h"
#include "platform/logs/classlogs.h"

#include "database/database_export.h"

namespace database {
namespace presencesimulation {

/**
 * The presence simulation engine: it owns the recorded week, its JSON image
 * and the image's hashes, and the topic router. Packets from the host enter
 * by update(); packets raised by the week leave by its signals. It keeps the
 * role it was built with. The host reaches it through the façade; the
 * presence simulation handlers change the week under its access mutex.
 */
class DATABASE_EXPORT presencesimulation_t : public QObject
{
    Q_OBJECT
    Q_PROPERTY(database::presencesimulation::psi_data_t* data READ getData NOTIFY onPresencesimulationDataChanged)

public:
    explicit presencesimulation_t(::database::definition::service_t const& service);
    ~presencesimulation_t() override;

    ::database::definition::service_t getService() const { return service; }
    void setService(::database::definition::service_t const& _service) { service = _service; }
    QString getName() const { return name; }
    void setName(QString const& _name) { name = _name; }

    psi_data_t* getData() const { return data; }
    psi_handler_topic_t* getHandlerTopic() const { return handler_topic; }
    QMutex* getAccessMutex() const { return access_mutex; }
    int getUpdateCount() const { return image.updates(); }
    bool isJdataValid() const { return image.isFresh(); }

    /// Entry of every packet from the host; false when no route takes it.
    bool update(QJsonObject const& packet);
    void updateError(QJsonObject packet, QString const& message);

    /// A new empty week for the caller to fill, and to own.
    psi_data_t* createdata() const;
    /// Asks that tree replace the whole database.
    void requestSetDB(psi_data_t* tree);
    QJsonObject getPacketSetDB(psi_data_t* tree) const;
    void update_database(QJsonObject json, bool send);
    void send_update_database(QList<QString> changes);
    QJsonObject getStatusDatabasePacket();

    QJsonObject serialize(bool force);
    /// Keeps the tree in place when json doesn't read as a week.
    void deserialize(QJsonObject const& json);
    void initSerializer();

    QString getHash();
    /// The image's stamp, once the image is up to date: equal stamps, equal
    /// images, without the digests a changed image would need.
    quint64 getImageStamp();
    QMap<QString, QString> getHashList();
    /// -1 unknown section, 0 same digest, 1 different (and with send, the section is replayed).
    int checkHash(QString const& section, QString const& hash, bool send = false);
    void calculateHash();

    QJsonObject getJdata();
    QJsonObject getJdata(definition::psi_type_database_field_t const& field);
    QJsonValue getJsonValue(QString const& path);

    void print();
    void initRequestGeneralSignals(bool connect);

    // Files: the host chooses the paths; the persistent document's major
    // version decides the migration.
    QJsonObject loadFromFile(QString const& path, int storedMajor, int& result);
    QJsonObject loadFromJson(QJsonObject& json, int storedMajor, int& result);
    QJsonObject readFromFile(QString const& path);
    bool saveToFile(QString const& path, bool force);

Q_SIGNALS:
    void eventOfflineRequest(QJsonObject _packet);
    void onPresencesimulationRequest(QJsonObject _packet);
    void onPresencesimulationObjectNotExist(QJsonObject _packet);
    void onPresencesimulationObjectError(QJsonObject _packet, QString _message);
    void onSaveRequest();
    void onPresencesimulationErrorUpdateChangeDatabase(QString _topic, QString _message);
    void onPresencesimulationDataChanged(database::presencesimulation::psi_data_t* data);
    void start_timer_serializer();
    void stop_timer_serializer();

private Q_SLOTS:
    void timer_serializer_elepsed();
    void _onUpdated(QJsonObject _packet);
    void _onRequest(QJsonObject _packet);
    void _onObjectNotExist(QJsonObject _packet);
    void _onObjectError(QJsonObject _packet, QString _message);

private:
    void dropTree();
    /// Takes tree as the week, with a fresh image and its connections.
    void adopt(psi_data_t* tree);
    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

    QTimer timer_serializer;
    base::json_image_t image;
    int counter = 0;
    ::database::definition::service_t service;
    QString name;
    QMutex* access_mutex = nullptr;
    QMutex* save_mutex = nullptr;
    psi_handler_topic_t* handler_topic = nullptr;
    QPointer<psi_data_t> data;
};

} // namespace presencesimulation
} // namespace database

#endif // DATABASE_PRESENCESIMULATION_PRESENCESIMULATION_T_H
