#ifndef DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_STATUS_T_H
#define DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_STATUS_T_H

#include <QObject>
#include <QPointer>
#include <QString>

#include "database/base/topicbase_t.h"

namespace database {
namespace realtime {
namespace objects {
namespace drivers {

/**
 * The status of one bus loop of the KNX or the BAOS driver: whether it runs,
 * and its details as a child at this object's topic and "/info", which an
 * update never replaces. Derived declares the properties loop_execution and
 * info with their signals; Detail is the class of the details.
 */
template<class Derived, class Detail>
class rt_object_driver_status_t : public base::topicbase_t
{
public:
    bool getLoopExecution() const { return loop_execution; }
    Detail* getInfo() const { return info; }
    /// Adopts value in place of the present details, which are deleted; null
    /// stands for empty details. Meant for deserialization.
    void setInfo(Detail* value)
    {
        if (placeChild(info, value, infoTopic(), receiver))
            Q_EMIT static_cast<Derived*>(this)->infoChanged(info);
    }

    /// Also moves the details along.
    void setTopic(QString const& value)
    {
        topicbase_t::setTopic(value);
        info->setTopic(infoTopic());
    }

    void update_loop_execution(bool value, bool _notify) { updateField("loop_execution", value, _notify); }
    /// The loop stops; the details stay as they are.
    void update_reset_status(bool _notify) { update_loop_execution(false, _notify); }
    /// Takes the switch and the details' content of other; null is refused
    /// with "Not permitted nullptr".
    void update(Derived const* other, bool _notify)
    {
        if (!other) {
            refuseNull();
            return;
        }
        update_loop_execution(other->loop_execution, false);
        info->update(other->info, false);
        if (_notify)
            send_update();
    }

    void send_update() { publishSelf(); }

    void initRequestSignals(QObject* _receiver, bool connect)
    {
        if (_receiver)
            receiver = _receiver;
        connectRequestSignals(_receiver, connect);
        wireChild(info, infoTopic(), _receiver, connect);
    }

    /// Same switch and details object.
    bool operator==(Derived const& other) const
    {
        return loop_execution == other.loop_execution && info == other.info;
    }

protected:
    rt_object_driver_status_t(QString const& topic, QObject* parent)
        : topicbase_t(topic, parent)
    {
        info = new Detail(infoTopic(), this);
    }

    /// Deep: the details are copied too; no parent, no receiver.
    rt_object_driver_status_t(rt_object_driver_status_t const& other)
        : topicbase_t(other)
        , loop_execution(other.loop_execution)
        , info(new Detail(*other.info))
    {
        info->setParent(this);
    }

    bool loop_execution = false;

private:
    QString infoTopic() const { return topic + QStringLiteral("/info"); }

    Detail* info = nullptr;
    QPointer<QObject> receiver;
};

} // namespace drivers
} // namespace objects
} // namespace realtime
} // namespace database

#endif // DATABASE_REALTIME_DBS_DRIVERS_RT_OBJECT_DRIVER_STATUS_T_H
