#ifndef DATABASE_HANDLER_FRAME_T_H
#define DATABASE_HANDLER_FRAME_T_H

#include <QException>
#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QMutex>
#include <QMutexLocker>
#include <QObject>
#include <QString>

#include "database/utility/utility.h"
#include "platform/logs/classlogs.h"
#include "platform/qjsonserializer/qjsondeserializationexception.h"
#include "platform/qjsonserializer/qjsonserializer.h"

#include "database/database_export.h"

namespace database {

/**
 * What the request and status handlers of the engines share: the frame of a
 * slot (the engine's lock for the length of the slot, the trace line), the
 * reading of payloads into model objects, and the wiring of a router's signals
 * to the handler's slots of the same names.
 */
class DATABASE_EXPORT handler_frame_t
{
public:
    /// traceWord starts the trace line of every slot ("Slots request:" or "Slots status:").
    explicit handler_frame_t(QString name, QString traceWord = QStringLiteral("Slots request:"))
        : name(std::move(name))
        , traceWord(std::move(traceWord))
    {
    }

    QString const& getName() const { return name; }

    /// Runs body under mutex after the trace line; body tells whether the
    /// consistency check is due, which the caller raises once the lock is gone.
    /// A packet comes from another process and may be anything: nothing it
    /// throws may leave the slot, since the event loop would end the process.
    /// second and third, when given, are taken after mutex in this order: the
    /// lock order of the engines.
    template<class Body>
    bool run(QMutex* mutex, char const* slot, QJsonObject const& packet, Body body, QMutex* second = nullptr,
             QMutex* third = nullptr) const
    {
        QMutexLocker locker(mutex);
        QMutexLocker secondLocker(second);
        QMutexLocker thirdLocker(third);
        trace(slot, packet);
        try {
            return body();
        } catch (QJsonDeserializationException const& e) {
            refusePayload(packet, slot, QString::fromUtf8(e.what()));
        } catch (std::exception const& e) {
            logException(slot, QString::fromUtf8(e.what()));
        } catch (...) {
            logException(slot, QStringLiteral("unknown"));
        }
        return false;
    }

    /// The payload as a new object of class T, scheduled for deletion unless
    /// the model takes it over (release false); an empty object gives null,
    /// which means removal. False, with a log line, when the payload doesn't
    /// read as T, or isn't an object and strict is true; when strict is false
    /// a payload that isn't an object counts as an empty one.
    template<class T>
    bool payloadObject(QJsonObject const& packet, T*& object, char const* slot, bool release = true,
                       bool strict = true) const
    {
        object = nullptr;
        QJsonValue const payload = packet.value(QStringLiteral("payload"));
        if (!payload.isObject() && !strict)
            return true;
        if (!payload.isObject()) {
            refusePayload(packet, slot, QStringLiteral("payload is not an object"));
            return false;
        }
        if (payload.toObject().isEmpty())
            return true;
        try {
            object = utility::getInstance()->serializer()->deserialize<T*>(payload, nullptr);
        } catch (QException const& e) {
            refusePayload(packet, slot, QString::fromUtf8(e.what()));
            return false;
        }
        if (object && release)
            object->deleteLater();
        return true;
    }

    /// The payload as a map of new objects, each scheduled for deletion.
    template<class T>
    bool payloadMap(QJsonObject const& packet, QMap<QString, T*>& map, char const* slot, bool release = true) const
    {
        map.clear();
        QJsonValue const payload = packet.value(QStringLiteral("payload"));
        if (!payload.isObject()) {
            refusePayload(packet, slot, QStringLiteral("payload is not an object"));
            return false;
        }
        try {
            map = utility::getInstance()->serializer()->deserialize<QMap<QString, T*>>(payload, nullptr);
        } catch (QException const& e) {
            refusePayload(packet, slot, QString::fromUtf8(e.what()));
            return false;
        }
        for (T* object : std::as_const(map)) {
            if (object && release)
                object->deleteLater();
        }
        return true;
    }

    /// The payload when it has the wanted JSON type.
    bool payloadValue(QJsonObject const& packet, QJsonValue::Type type, QJsonValue& value, char const* slot) const;

    /// The part of the packet's topic after "<section>/": "objects_list/a" of
    /// ".../storage/objects_list/a"; empty when the topic ends at the section.
    static QString pathUnder(QJsonObject const& packet, QString const& section);

    /// True when the packet's topic ends at "<section>/objects_list/<key>":
    /// a whole object, not one of its fields or entries.
    static bool isObjectTopic(QJsonObject const& packet, QString const& section, QString const& key);

    /// Connects, or disconnects, every signal of router whose name starts with
    /// prefix to the handler's slot of the same signature, queued. renamed maps
    /// a signal name to a slot name that differs from it.
    static void connectByName(QObject* router, QObject* handler, QByteArray const& prefix, bool connect,
                              QMap<QByteArray, QByteArray> const& renamed = {},
                              Qt::ConnectionType type = Qt::QueuedConnection);

    void log(QString const& message, ::utility::logs::LogLevel level, char const* source) const;

private:
    void trace(char const* slot, QJsonObject const& packet) const;
    void refusePayload(QJsonObject const& packet, char const* slot, QString const& why) const;
    void logException(char const* slot, QString const& what) const;

    QString name;
    QString traceWord;
};

} // namespace database

#endif // DATABASE_HANDLER_FRAME_T_H
