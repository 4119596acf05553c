#ifndef TESTS_SUPPORT_SIGNAL_LOG_H
#define TESTS_SUPPORT_SIGNAL_LOG_H

#include <QJsonObject>
#include <QMetaMethod>
#include <QObject>
#include <QString>
#include <QStringList>

/// Records every signal that a router declares itself, in order, with its key
/// (empty for signals without one).
class signal_log_t : public QObject
{
    Q_OBJECT
public:
    QStringList signalNames;
    QStringList keys;

    explicit signal_log_t(QObject* router)
    {
        QMetaObject const* meta = router->metaObject();
        QMetaMethod const one = metaObject()->method(metaObject()->indexOfSlot("record(QJsonObject)"));
        QMetaMethod const two = metaObject()->method(metaObject()->indexOfSlot("recordKey(QJsonObject,QString)"));
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            QMetaMethod const signal = meta->method(i);
            if (signal.methodType() == QMetaMethod::Signal)
                connect(router, signal, this, signal.parameterCount() == 2 ? two : one);
        }
    }

    void clear()
    {
        signalNames.clear();
        keys.clear();
    }

public Q_SLOTS:
    void record(QJsonObject) { recordKey({}, QString()); }
    void recordKey(QJsonObject, QString key)
    {
        signalNames.append(QString::fromLatin1(sender()->metaObject()->method(senderSignalIndex()).name()));
        keys.append(key);
    }
};

#endif // TESTS_SUPPORT_SIGNAL_LOG_H
