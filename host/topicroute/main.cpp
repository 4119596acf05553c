// topicroute: reads packets as JSON lines on standard input and prints, for
// each, the signal of the persistent topic router that it reaches and its key.
// Handy when writing topics for the database by hand.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QTextStream>

#include <cstdio>
#include <iostream>
#include <string>

#include "database/persistent/ps_handler_topic_t.h"

namespace {

/// Remembers which router signal fired last, and with which key.
class route_recorder_t : public QObject
{
    Q_OBJECT
public:
    QString signal;
    QString key;

public Q_SLOTS:
    void onPacket(QJsonObject)
    {
        record(QString());
    }
    void onPacketKey(QJsonObject, QString _key)
    {
        record(_key);
    }

private:
    void record(QString const& _key)
    {
        signal = QString::fromLatin1(sender()->metaObject()->method(senderSignalIndex()).name());
        key = _key;
    }
};

void connectAllRoutes(database::persistent::ps_handler_topic_t* router, route_recorder_t* recorder)
{
    QMetaObject const* routerMeta = router->metaObject();
    QMetaObject const* recorderMeta = recorder->metaObject();
    QMetaMethod const onPacket = recorderMeta->method(recorderMeta->indexOfSlot("onPacket(QJsonObject)"));
    QMetaMethod const onPacketKey =
        recorderMeta->method(recorderMeta->indexOfSlot("onPacketKey(QJsonObject,QString)"));
    for (int i = routerMeta->methodOffset(); i < routerMeta->methodCount(); ++i) {
        QMetaMethod const method = routerMeta->method(i);
        if (method.methodType() != QMetaMethod::Signal || method.name() == "onPersistentUpdatedSomething")
            continue;
        QObject::connect(router, method, recorder, method.parameterCount() == 2 ? onPacketKey : onPacket);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("topicroute"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Reads packets ({\"topic\": ..., \"payload\": ...}) as JSON lines on standard input and\n"
        "prints, for each, the persistent router signal it reaches and its key, as a JSON line."));
    parser.addHelpOption();
    parser.process(app);

    database::persistent::ps_handler_topic_t router;
    route_recorder_t recorder;
    connectAllRoutes(&router, &recorder);

    QTextStream out(stdout);
    int lineNumber = 0;
    int unrouted = 0;
    std::string line;
    while (std::getline(std::cin, line)) {
        ++lineNumber;
        QByteArray const bytes = QByteArray::fromStdString(line).trimmed();
        if (bytes.isEmpty())
            continue;
        QJsonParseError error;
        QJsonDocument const document = QJsonDocument::fromJson(bytes, &error);
        if (!document.isObject()) {
            std::fprintf(stderr, "line %d: not a JSON object: %s\n", lineNumber,
                         qPrintable(error.error == QJsonParseError::NoError ? QStringLiteral("wrong type")
                                                                             : error.errorString()));
            continue;
        }
        QJsonObject const packet = document.object();
        recorder.signal.clear();
        recorder.key.clear();
        QString family;
        if (router.whoIsRequest(packet))
            family = QStringLiteral("request");
        else if (router.whoIsStatus(packet))
            family = QStringLiteral("status");
        else if (router.whoIsChange(packet, true, false))
            family = QStringLiteral("change");

        QJsonObject result{{QStringLiteral("topic"), packet.value(QStringLiteral("topic"))}};
        if (family.isEmpty()) {
            ++unrouted;
            result.insert(QStringLiteral("signal"), QJsonValue::Null);
        } else {
            result.insert(QStringLiteral("family"), family);
            result.insert(QStringLiteral("signal"), recorder.signal);
            if (!recorder.key.isEmpty())
                result.insert(QStringLiteral("key"), recorder.key);
        }
        out << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    }
    if (unrouted > 0)
        std::fprintf(stderr, "%d packet(s) reached no route\n", unrouted);
    return 0;
}

#include "main.moc"
