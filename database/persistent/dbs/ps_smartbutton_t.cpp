#include "database/persistent/dbs/ps_smartbutton_t.h"

#include <QStringList>

#include "database/base/literals.h"
#include "database/persistent/ps_request.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace dbs {

ps_smartbutton_t::ps_smartbutton_t(QObject* parent)
    : topicbase_t(literals::key_smartbutton, parent)
{
}

ps_smartbutton_t::ps_smartbutton_t(ps_smartbutton_t const& other)
    : topicbase_t(other)
{
    copyValues(&other);
}

void ps_smartbutton_t::setIdItemListenIndex(QString const& value)
{
    assign(id_item_listen_index, value, [this] { Q_EMIT id_item_listen_indexChanged(id_item_listen_index); });
}

void ps_smartbutton_t::setValueItemRgb(QString const& value)
{
    assign(value_item_rgb, value, [this] { Q_EMIT value_item_rgbChanged(value_item_rgb); });
}

void ps_smartbutton_t::setIdItemRgb(QString const& value)
{
    assign(id_item_rgb, value, [this] { Q_EMIT id_item_rgbChanged(id_item_rgb); });
}

void ps_smartbutton_t::setTimeout(int value)
{
    assign(timeout, value, [this] { Q_EMIT timeoutChanged(timeout); });
}

void ps_smartbutton_t::setEnabled(bool value)
{
    assign(enabled, value, [this] { Q_EMIT enabledChanged(enabled); });
}

bool ps_smartbutton_t::checkRGB(QString const& value)
{
    QString text = value;
    if (text.endsWith(QLatin1Char(';')))
        text.chop(1);
    QStringList const parts = text.split(QLatin1Char(';'));
    if (parts.size() != 3) {
        CLASSLOGS_LOG(QStringLiteral("Error to set smart button packet in value rgb - incorrect format"),
                      ::utility::logs::error, QStringLiteral("checkRGB"));
        return false;
    }
    for (QString const& part : parts) {
        bool ok = false;
        part.toInt(&ok, 16);
        if (!ok) {
            CLASSLOGS_LOG(QStringLiteral("Error to set smart button packet in value rgb - out of range"),
                          ::utility::logs::error, QStringLiteral("checkRGB"));
            return false;
        }
    }
    return true;
}

void ps_smartbutton_t::requestSetEnabled(bool value)
{
    requestField(this, QStringLiteral("enabled"), value);
}

void ps_smartbutton_t::requestSetSmartButton(bool _enabled, QString const& _id_item_listen_index,
                                             QString const& _value_item_rgb, QString const& _id_item_rgb,
                                             int _timeout)
{
    ps_smartbutton_t copy(*this);
    copy.setEnabled(_enabled);
    copy.setIdItemListenIndex(_id_item_listen_index);
    copy.setValueItemRgb(_value_item_rgb);
    copy.setIdItemRgb(_id_item_rgb);
    copy.setTimeout(_timeout);
    QJsonObject const packet = getPacketRequest(requestTopic(topic), copy.toJson());
    if (!checkRGB(_value_item_rgb)) {
        Q_EMIT onObjectError(packet, QStringLiteral("Invalid RGB value"));
        return;
    }
    Q_EMIT onRequest(packet);
}

void ps_smartbutton_t::update_enabled(bool value, bool _notify)
{
    setEnabled(value);
    if (_notify)
        send_update();
}

void ps_smartbutton_t::update_id_item_rgb(QString const& value, bool _notify)
{
    setIdItemRgb(value);
    if (_notify)
        send_update();
}

void ps_smartbutton_t::update_id_item_listen_index(QString const& value, bool _notify)
{
    setIdItemListenIndex(value);
    if (_notify)
        send_update();
}

void ps_smartbutton_t::update_ids(QString const& _id_item_listen_index, QString const& _id_item_rgb, bool _notify)
{
    setIdItemListenIndex(_id_item_listen_index);
    setIdItemRgb(_id_item_rgb);
    if (_notify)
        send_update();
}

void ps_smartbutton_t::update_value_rgb(QString const& value, bool _notify)
{
    setValueItemRgb(value);
    if (_notify)
        send_update();
}

} // namespace dbs
} // namespace persistent
} // namespace database
