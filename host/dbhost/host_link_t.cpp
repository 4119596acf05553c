#include "host_link_t.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <utility>

host_link_t::~host_link_t() = default;

host_link_t::change_t::change_t(QString _database, QString _signal, QString _key, QJsonObject _packet)
    : database(std::move(_database))
    , signal(std::move(_signal))
    , key(std::move(_key))
    , packet(std::move(_packet))
{
}

QByteArray const& host_link_t::change_t::line() const
{
    if (text.isEmpty()) {
        QJsonObject line{{QStringLiteral("event"), QStringLiteral("change")},
                         {QStringLiteral("signal"), signal},
                         {QStringLiteral("packet"), packet}};
        if (!key.isNull())
            line.insert(QStringLiteral("key"), key);
        text = QJsonDocument(line).toJson(QJsonDocument::Compact);
    }
    return text;
}

QJsonObject host_link_t::acceptRequest(QJsonObject const&)
{
    return QJsonObject();
}

void host_link_t::restoreRecord(QJsonObject const&) {}

QList<QJsonObject> host_link_t::carriedRecords() const
{
    return {};
}

void host_link_t::holdInput(bool) {}

void host_link_t::whenDurable(std::function<void()> work) const
{
    if (durability)
        durability(std::move(work));
    else
        work();
}

void host_link_t::settleLibrary()
{
    // A packet's road through the library is a few queued hops.
    for (int round = 0; round < 16; ++round)
        QCoreApplication::sendPostedEvents();
}
