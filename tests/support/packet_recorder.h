#ifndef TESTS_SUPPORT_PACKET_RECORDER_H
#define TESTS_SUPPORT_PACKET_RECORDER_H

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

/// Stands in for an engine: records what the models send to its underscore slots.
class packet_recorder_t : public QObject
{
    Q_OBJECT
public:
    QList<QJsonObject> updated;
    QList<QJsonObject> requests;
    QList<QJsonObject> notExist;
    QList<QPair<QJsonObject, QString>> errors;

    void clear()
    {
        updated.clear();
        requests.clear();
        notExist.clear();
        errors.clear();
    }

    int total() const { return updated.size() + requests.size() + notExist.size() + errors.size(); }

public Q_SLOTS:
    void _onUpdated(QJsonObject _packet) { updated.append(_packet); }
    void _onRequest(QJsonObject _packet) { requests.append(_packet); }
    void _onObjectNotExist(QJsonObject _packet) { notExist.append(_packet); }
    void _onObjectError(QJsonObject _packet, QString message) { errors.append({_packet, message}); }
};

#endif // TESTS_SUPPORT_PACKET_RECORDER_H
