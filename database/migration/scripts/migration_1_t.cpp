#include "database/migration/scripts/migration_1_t.h"

#include <QStringList>

#include "database/default/persistent/ps_default_t.h"

namespace database {
namespace migration {

using ::database::definition::type_brand_t;

namespace {

QString const kCredentials = QStringLiteral("credentials");
QString const kObjects = QStringLiteral("objects_list");

QString trimmedValue(QJsonObject const& credentials, QString const& key)
{
    return credentials.value(key).toString().trimmed();
}

} // namespace

migration_1_t::migration_1_t(QObject* parent)
    : migration_base_t(migration_version, parent)
{
}

void migration_1_t::migrate_persistent(type_brand_t const& brand, QJsonObject& document, int& error)
{
    error = NoError;
    migratingPersistent(document, [&](QJsonObject& changed) {
        changed = migrateUsers(brand, changed, migration_version);
        changed = migrateAuthInElements(brand, changed, migration_version);
    });
}

bool migration_1_t::checkExistElementsCredentials(QJsonObject const& document)
{
    QJsonValue const elements = document.value(QStringLiteral("elements"));
    return elements.isObject() && elements.toObject().value(kCredentials).isObject();
}

QJsonObject migration_1_t::migrateUsers(type_brand_t const& brand, QJsonObject document, int version) const
{
    if (!checkExistElementsCredentials(document))
        return document;
    writeAt(document, QStringLiteral("users"), createObjectUsers(brand, document, version));
    QJsonObject elements = document.value(QStringLiteral("elements")).toObject();
    elements.remove(kCredentials);
    document.insert(QStringLiteral("elements"), elements);
    return document;
}

QJsonObject migration_1_t::createObjectUsers(type_brand_t const& brand, QJsonObject const& document, int) const
{
    QJsonObject credentials = valueAt(document, QStringLiteral("elements/credentials")).toObject();
    QString const factoryPin = persistent::ps_default_t::getInstance()->getAdminPin(brand);
    QJsonObject users;
    if (brand == type_brand_t::HALDO) {
        if (!credentials.contains(QStringLiteral("admin")))
            credentials.insert(QStringLiteral("admin"), factoryPin);
        createAdmin(users, credentials);
        createManager(users, credentials);
    } else if (brand == type_brand_t::VESTRA) {
        // Its old manager was the installation's administrator.
        if (!trimmedValue(credentials, QStringLiteral("manager")).isEmpty())
            createAdminBaos(users, credentials);
        else
            createDefaultAdmin(users, factoryPin);
    }
    createUser(users, credentials);
    createOperator(users, credentials);
    createPowerUser(users, credentials);
    return users;
}

QJsonObject migration_1_t::createObjectUser(QString const& name, int perm, QString const& pin)
{
    return QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("perm"), perm}, {QStringLiteral("pin"), pin}};
}

void migration_1_t::updateObjectUser(QJsonObject& users, QString const& id, QJsonObject const& user)
{
    writeAt(users, kObjects + QLatin1Char('/') + id, user);
}

void migration_1_t::createAdmin(QJsonObject& users, QJsonObject const& credentials)
{
    if (credentials.contains(QStringLiteral("admin")))
        updateObjectUser(
            users, QStringLiteral("99"),
            createObjectUser(QStringLiteral("admin"), -1, credentials.value(QStringLiteral("admin")).toString()));
}

void migration_1_t::createAdminBaos(QJsonObject& users, QJsonObject const& credentials)
{
    updateObjectUser(
        users, QStringLiteral("99"),
        createObjectUser(QStringLiteral("admin"), -1, credentials.value(QStringLiteral("manager")).toString()));
}

void migration_1_t::createDefaultAdmin(QJsonObject& users, QString const& pin)
{
    updateObjectUser(users, QStringLiteral("99"), createObjectUser(QStringLiteral("admin"), -1, pin));
}

void migration_1_t::createManager(QJsonObject& users, QJsonObject const& credentials)
{
    QString const pin = trimmedValue(credentials, QStringLiteral("manager"));
    if (!pin.isEmpty())
        updateObjectUser(users, QStringLiteral("3"), createObjectUser(QStringLiteral("manager"), 63, pin));
}

void migration_1_t::createUser(QJsonObject& users, QJsonObject const& credentials)
{
    // The plain user gets what no password-holding role below it had.
    QString const user = trimmedValue(credentials, QStringLiteral("user"));
    QString const op = trimmedValue(credentials, QStringLiteral("operator"));
    int perm = 63;
    if (!user.isEmpty() && credentials.contains(QStringLiteral("operator")))
        perm = 1;
    else if (!op.isEmpty() && credentials.contains(QStringLiteral("user")))
        perm = 3;
    updateObjectUser(users, QStringLiteral("0"), createObjectUser(QStringLiteral("user"), perm, QString()));
}

void migration_1_t::createOperator(QJsonObject& users, QJsonObject const& credentials)
{
    QString const pin = trimmedValue(credentials, QStringLiteral("operator"));
    if (pin.isEmpty())
        return;
    int perm = 63;
    if (!trimmedValue(credentials, QStringLiteral("user")).isEmpty() && credentials.contains(QStringLiteral("user")))
        perm = 3;
    updateObjectUser(users, QStringLiteral("1"), createObjectUser(QStringLiteral("operator"), perm, pin));
}

void migration_1_t::createPowerUser(QJsonObject& users, QJsonObject const& credentials)
{
    QString const pin = trimmedValue(credentials, QStringLiteral("user"));
    if (!pin.isEmpty())
        updateObjectUser(users, QStringLiteral("2"), createObjectUser(QStringLiteral("power user"), 63, pin));
}

QString migration_1_t::getKeyOfUsers(QJsonObject const& document, QString const& name)
{
    QJsonObject const users = valueAt(document, QStringLiteral("users/objects_list")).toObject();
    for (auto it = users.begin(); it != users.end(); ++it) {
        if (it.value().toObject().value(QStringLiteral("name")).toString() == name)
            return it.key();
    }
    return QString();
}

QJsonObject migration_1_t::migrateAuthInElements(type_brand_t const&, QJsonObject document, int) const
{
    QString const op = getKeyOfUsers(document, QStringLiteral("operator"));
    QString const manager = getKeyOfUsers(document, QStringLiteral("manager"));
    QString const power = getKeyOfUsers(document, QStringLiteral("power user"));
    // An old role becomes the users who hold it or a higher one; "1" stands in every set.
    auto usersOf = [](QString const& text, QString const& op, QString const& power, QString const& manager) {
        QStringList ids;
        if (text == QLatin1String("manager"))
            ids = {QStringLiteral("1"), op, power, manager};
        else if (text == QLatin1String("operator") && !op.isEmpty())
            ids = {QStringLiteral("1"), op, power, manager};
        else if (text == QLatin1String("user") && !power.isEmpty())
            ids = {QStringLiteral("1"), power, op, manager};
        QJsonObject auth;
        for (QString const& id : std::as_const(ids)) {
            if (!id.isEmpty())
                auth.insert(id, 1);
        }
        return auth;
    };
    QJsonObject const elements = valueAt(document, QStringLiteral("elements/objects_list")).toObject();
    for (auto it = elements.begin(); it != elements.end(); ++it) {
        QJsonValue const auth = it.value().toObject().value(QStringLiteral("auth"));
        if (!auth.isString())
            continue;
        writeAt(document, QStringLiteral("elements/objects_list/") + it.key() + QStringLiteral("/auth"),
                usersOf(auth.toString().trimmed(), op, power, manager));
    }
    return document;
}

} // namespace migration
} // namespace database
