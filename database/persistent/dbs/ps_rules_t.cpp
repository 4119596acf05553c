#include "database/persistent/dbs/ps_rules_t.h"

#include <QRegularExpression>

#include "database/base/literals.h"
#include "platform/logs/classlogs.h"

namespace database {
namespace persistent {
namespace dbs {

const QString ps_rules_t::pattern_item = QStringLiteral("(@item\\[[\\da-zA-Z]*\\])");
const QString ps_rules_t::pattern_scenary = QStringLiteral("(@scenary\\[[\\da-zA-Z]*\\])");
const QString ps_rules_t::pattern_rule = QStringLiteral("(@rule\\[[\\da-zA-Z]*\\])");

ps_rules_t::ps_rules_t(QObject* parent)
    : ps_map_section_t(literals::key_rules, parent)
{
}

ps_rules_t::ps_rules_t(ps_rules_map const& map, QObject* parent)
    : ps_map_section_t(literals::key_rules, parent)
{
    objects.adopt(map);
}

ps_rules_t::ps_rules_t(ps_rules_t const& other)
    : ps_map_section_t(other)
{
}

QStringList ps_rules_t::getMatch(QString const& text, QString const& pattern)
{
    QRegularExpression const expression(pattern);
    if (!expression.isValid()) {
        CLASSLOGS_LOG(QStringLiteral("Invalid regex pattern: ") + pattern, ::utility::logs::error,
                      QStringLiteral("getMatch"));
        return {};
    }
    int const groups = expression.captureCount();
    QStringList found;
    for (int group = groups > 0 ? 1 : 0; group <= groups; ++group) {
        QRegularExpressionMatchIterator it = expression.globalMatch(text);
        while (it.hasNext()) {
            QString const captured = it.next().captured(group);
            if (!captured.isEmpty())
                found.append(captured);
        }
    }
    return found;
}

void ps_rules_t::getDependency(::database::definition::type_object_t const& type, QString const& id,
                               QStringList& when, QStringList& then, QStringList& _else) const
{
    QString const word = type.ToString();
    QString const wanted = (word + QLatin1Char('[') + id + QLatin1Char(']')).trimmed();
    QString const pattern = QLatin1Char('(') + word + QStringLiteral("\\[[\\da-zA-Z]*\\])");
    ps_rules_map const& rules = objects.get();
    for (auto it = rules.begin(); it != rules.end(); ++it) {
        objects::ps_object_rules_t const* rule = it.value();
        if (!rule)
            continue;
        if (getMatch(rule->getWhen(), pattern).contains(wanted))
            when.append(it.key());
        if (getMatch(rule->getThen(), pattern).contains(wanted))
            then.append(it.key());
        if (getMatch(rule->getElse(), pattern).contains(wanted))
            _else.append(it.key());
    }
}

} // namespace dbs
} // namespace persistent
} // namespace database
