#ifndef DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_MUSIC_H
#define DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_MUSIC_H

#include <QObject>
#include <QString>

#include "database/persistent/objects/elements/psoe_family_t.h"
#include "database/persistent/ps_request.h"

#include "database/database_export.h"

namespace database {
namespace persistent {
namespace objects {

/// A music player: play, pause, tracks and volume.
class DATABASE_EXPORT psoe_music : public psoe_family_t<psoe_music, ps_object_element_t::ELEMENT_TYPE_MUSIC>
{
    Q_OBJECT

public:
    enum MusicFlag {
        MUSIC_FLAG_PLAYPAUSE_INVERT = 0x80000000,
        MUSIC_FLAG_PREV_VALUE = 0x40000000,
        MUSIC_FLAG_NEXT_VALUE = 0x20000000,
        MUSIC_FLAG_ENABLE_VOLUME = 0x10000000,
        MUSIC_FLAG_ENABLE_NEXT_PREV = 0x08000000,
        MUSIC_FLAG_ENABLE_TRACK_DETAILS = 0x04000000
    };
    Q_ENUM(MusicFlag)

    Q_INVOKABLE explicit psoe_music(QObject* parent = nullptr);
    psoe_music(QString const& topic, QObject* parent);
    psoe_music(QString const& id, QString const& name, QString const& description, QVariantMap const& function_map,
               QVariantMap const& auth, QStringList const& rooms, int flags, QVariantMap const& runoptions,
               QVariantMap const& lock_ui_map, QObject* parent);
    psoe_music(psoe_music const& other);

    /// Asks that play and pause swap; the answer lands in the flags.
    void requestSetInvert_playpause(bool value) { requestField(this, QStringLiteral("invert_playpause"), value); }
};

} // namespace objects
} // namespace persistent
} // namespace database

#endif // DATABASE_PERSISTENT_OBJECTS_ELEMENTS_PSOE_MUSIC_H
