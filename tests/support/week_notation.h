#ifndef TESTS_SUPPORT_WEEK_NOTATION_H
#define TESTS_SUPPORT_WEEK_NOTATION_H

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// A presence simulation document written short: entries "day/hour/minute
/// item=value ..." separated by ";"; the empty text is the empty week.
inline QJsonObject weekDocument(QString const& notation)
{
    QJsonObject days;
    for (QString const& entry : notation.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        QStringList const words = entry.simplified().split(QLatin1Char(' '));
        QStringList const at = words.first().split(QLatin1Char('/'));
        QJsonObject actions;
        for (QString const& action : words.mid(1))
            actions.insert(action.section(QLatin1Char('='), 0, 0), action.section(QLatin1Char('='), 1));
        QJsonObject day = days.value(at.value(0)).toObject();
        QJsonObject hours = day.value("hours").toObject();
        QJsonObject hour = hours.value(at.value(1)).toObject();
        QJsonObject minutes = hour.value("minutes").toObject();
        minutes.insert(at.value(2), QJsonObject{{"actions", actions}});
        hour.insert("minutes", minutes);
        hours.insert(at.value(1), hour);
        day.insert("hours", hours);
        days.insert(at.value(0), day);
    }
    return QJsonObject{{"week", QJsonObject{{"days", days}}}};
}

#endif // TESTS_SUPPORT_WEEK_NOTATION_H
