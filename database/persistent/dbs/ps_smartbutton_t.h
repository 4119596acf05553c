#ifndef DATABASE_PERSISTENT_DBS_PS_SMARTBUTTON_T_H
#define DATABASE_PERSISTENT_DBS_PS_SMARTBUTTON_T_H

#include <QObject>
#include <QString>

#include "database/base/topicbase_t.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace dbs {

/**
 * The smart button: a colour it shows, the item that takes that colour, and
 * the item that listens to the index it records.
 */
class DATABASE_EXPORT ps_smartbutton_t : public base::topicbase_t
{
    Q_OBJECT
    Q_PROPERTY(QString id_item_listen_index READ getIdItemListenIndex WRITE setIdItemListenIndex
                   NOTIFY id_item_listen_indexChanged)
    Q_PROPERTY(QString value_item_rgb READ getValueItemRgb WRITE setValueItemRgb NOTIFY value_item_rgbChanged)
    Q_PROPERTY(QString id_item_rgb READ getIdItemRgb WRITE setIdItemRgb NOTIFY id_item_rgbChanged)
    Q_PROPERTY(int timeout READ getTimeout WRITE setTimeout NOTIFY timeoutChanged)
    Q_PROPERTY(bool enabled READ getEnabled WRITE setEnabled NOTIFY enabledChanged)

public:
    Q_INVOKABLE explicit ps_smartbutton_t(QObject* parent = nullptr);
    ps_smartbutton_t(ps_smartbutton_t const& other);

    QString getIdItemListenIndex() const { return id_item_listen_index; }
    QString getValueItemRgb() const { return value_item_rgb; }
    QString getIdItemRgb() const { return id_item_rgb; }
    int getTimeout() const { return timeout; }
    bool getEnabled() const { return enabled; }

    void setIdItemListenIndex(QString const& value);
    void setValueItemRgb(QString const& value);
    void setIdItemRgb(QString const& value);
    void setTimeout(int value);
    void setEnabled(bool value);

    /// A database colour of three hexadecimal parts, a trailing ";" allowed;
    /// a refusal is logged.
    static bool checkRGB(QString const& value);

    void requestSetEnabled(bool value);
    /// Asks for the whole record; refused with "Invalid RGB value" when
    /// _value_item_rgb fails checkRGB.
    void requestSetSmartButton(bool _enabled, QString const& _id_item_listen_index,
                               QString const& _value_item_rgb, QString const& _id_item_rgb, int _timeout);

    void update_enabled(bool value, bool _notify);
    void update_id_item_rgb(QString const& value, bool _notify);
    void update_id_item_listen_index(QString const& value, bool _notify);
    void update_ids(QString const& _id_item_listen_index, QString const& _id_item_rgb, bool _notify);
    void update_value_rgb(QString const& value, bool _notify);
    void update(ps_smartbutton_t const* other, bool _notify) { updateValues(other, _notify); }
    /// Same values; the topic doesn't count.
    bool compare(ps_smartbutton_t const* other) const { return sameValues(other); }
    bool operator==(ps_smartbutton_t const& other) const { return sameValues(&other); }

    void send_update() { publishSelf(); }
    void initRequestSignals(QObject* receiver, bool connect) { connectRequestSignals(receiver, connect); }

Q_SIGNALS:
    void id_item_listen_indexChanged(QString);
    void value_item_rgbChanged(QString);
    void id_item_rgbChanged(QString);
    void timeoutChanged(int);
    void enabledChanged(bool);

private:
    QString id_item_listen_index;
    QString value_item_rgb = QStringLiteral("FF;FF;FF;");
    QString id_item_rgb;
    int timeout = 120;
    bool enabled = false;
};

} // namespace dbs
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_DBS_PS_SMARTBUTTON_T_H
