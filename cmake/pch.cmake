# Qt headers that nearly every translation unit of the project includes.
set(DATABASE_PCH_HEADERS
    <QObject> <QString> <QStringList> <QVariant> <QMap> <QList> <QHash>
    <QJsonObject> <QJsonArray> <QJsonValue> <QJsonDocument>
    <QMetaType> <QMetaObject> <QMetaProperty> <QMutex> <QPointer>)

# database_use_pch(<target> [<extra headers>...])
function(database_use_pch target)
    if(DATABASE_USE_PCH)
        target_precompile_headers(${target} PRIVATE ${DATABASE_PCH_HEADERS} ${ARGN})
    endif()
endfunction()
