#include "host_sync_t.h"

#include <QJsonValue>

#include "database/database_t.h"
#include "database/persistent/persistent_t.h"
#include "database/presencesimulation/presencesimulation_t.h"
#include "database/realtime/realtime_t.h"

QStringList const& host_sync_t::databaseNames()
{
    static QStringList const names{QStringLiteral("persistent"), QStringLiteral("realtime"),
                                   QStringLiteral("presencesimulation")};
    return names;
}

host_sync_t::host_sync_t(database::database_t* _database)
    : database(_database)
{
}

QMap<QString, QString> host_sync_t::hashList(QString const& name) const
{
    // Each reader rebuilds a stale image first: the hashes are those of now.
    if (name == QLatin1String("realtime"))
        return database->getRealtime()->getHashList(true);
    if (name == QLatin1String("presencesimulation"))
        return database->getPresenceSimulation()->getHashList();
    return database->getPersistent()->getHashList();
}

QJsonObject host_sync_t::image(QString const& name) const
{
    if (name == QLatin1String("realtime"))
        return database->getRealtime()->getJdata();
    if (name == QLatin1String("presencesimulation"))
        return database->getPresenceSimulation()->getJdata();
    return database->getPersistent()->getJdata();
}

QJsonObject host_sync_t::hashes() const
{
    QJsonObject all;
    for (QString const& name : databaseNames()) {
        QJsonObject sections;
        QMap<QString, QString> const list = hashList(name);
        for (auto it = list.begin(); it != list.end(); ++it)
            sections.insert(it.key(), it.value());
        all.insert(name, sections);
    }
    return all;
}

QJsonObject host_sync_t::answer(QJsonObject const& clientHashes) const
{
    QJsonObject all;
    for (QString const& name : databaseNames()) {
        QJsonObject const theirs = clientHashes.value(name).toObject();
        QMap<QString, QString> const ours = hashList(name);
        QJsonObject sections;
        QJsonObject content;
        for (auto it = ours.begin(); it != ours.end(); ++it) {
            if (theirs.value(it.key()).toString() == it.value())
                continue;
            if (content.isEmpty())
                content = image(name);
            sections.insert(it.key(), content.value(it.key()));
        }
        for (auto it = theirs.begin(); it != theirs.end(); ++it) {
            if (!ours.contains(it.key()))
                sections.insert(it.key(), QJsonValue::Null);
        }
        all.insert(name, sections);
    }
    return all;
}

QList<QJsonObject> host_sync_t::takeOver(QJsonObject const& answer, QStringList& names) const
{
    QList<QJsonObject> packets;
    for (QString const& name : databaseNames()) {
        QJsonObject const sections = answer.value(name).toObject();
        if (sections.isEmpty())
            continue;
        // The database status replaces the whole tree at once, whatever the
        // section: objects the server removed go too, which a status of the
        // section alone would leave in some sections.
        QJsonObject whole = image(name);
        for (auto it = sections.begin(); it != sections.end(); ++it) {
            if (it.value().isNull())
                whole.remove(it.key());
            else
                whole.insert(it.key(), it.value());
            names.append(name + QLatin1Char('/') + it.key());
        }
        packets.append({{QStringLiteral("topic"), QStringLiteral("status/DB/") + name + QStringLiteral("/DB")},
                        {QStringLiteral("payload"), whole}});
    }
    return packets;
}
