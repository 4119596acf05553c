#include "host_link_t.h"

#include <QCoreApplication>

host_link_t::~host_link_t() = default;

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
