#include "host_metrics_t.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QLocale>
#include <QMutexLocker>

#include <cmath>
#include <unistd.h>

namespace {

QByteArray number(double value)
{
    if (std::isnan(value))
        return QByteArrayLiteral("NaN");
    if (std::isinf(value))
        return value > 0 ? QByteArrayLiteral("+Inf") : QByteArrayLiteral("-Inf");
    // Counts stay integers on the page; durations keep every digit.
    if (value == std::floor(value) && std::fabs(value) < 1e15)
        return QByteArray::number(qint64(value));
    return QString::number(value, 'g', QLocale::FloatingPointShortest).toLatin1();
}

QByteArray labelText(host_metrics_t::labels_t const& labels)
{
    if (labels.isEmpty())
        return QByteArray();
    QByteArray text = "{";
    for (auto it = labels.begin(); it != labels.end(); ++it) {
        if (text.size() > 1)
            text += ',';
        text += it.key().toUtf8() + "=\"" + host_metrics_t::escapeLabel(it.value()).toUtf8() + '"';
    }
    return text + '}';
}

} // namespace

host_metrics_t& host_metrics_t::instance()
{
    // Never destroyed: a class recording on its way out finds it still there.
    static host_metrics_t* const metrics = new host_metrics_t;
    return *metrics;
}

host_metrics_t::host_metrics_t()
{
    describe(QStringLiteral("dbhost_changes_total"), QStringLiteral("counter"),
             QStringLiteral("Change signals of each database."));
    describe(QStringLiteral("dbhost_requests_total"), QStringLiteral("counter"),
             QStringLiteral("Requests raised in this process, by the database of their topic."));
    describe(QStringLiteral("dbhost_refusals_total"), QStringLiteral("counter"),
             QStringLiteral("Packets refused or not applied, by kind (refused, not_exist, error)."));
    describe(QStringLiteral("dbhost_saves_total"), QStringLiteral("counter"),
             QStringLiteral("Saves of a database file, done or failed."));
    describe(QStringLiteral("dbhost_save_duration_seconds"), QStringLiteral("summary"),
             QStringLiteral("Time spent writing, flushing and renaming a database file."));
    describe(QStringLiteral("dbhost_last_save_timestamp_seconds"), QStringLiteral("gauge"),
             QStringLiteral("Unix time of the last save of a database file that went through."));
    describe(QStringLiteral("dbhost_save_failing"), QStringLiteral("gauge"),
             QStringLiteral("1 while the saves of a database file fail."));
    describe(QStringLiteral("dbhost_journal_syncs_total"), QStringLiteral("counter"),
             QStringLiteral("Syncs of a database's journal to disk."));
    describe(QStringLiteral("dbhost_journal_sync_duration_seconds"), QStringLiteral("summary"),
             QStringLiteral("Time spent syncing a database's journal."));
    describe(QStringLiteral("dbhost_mqtt_connected"), QStringLiteral("gauge"),
             QStringLiteral("1 while the connection to the broker is up."));
    describe(QStringLiteral("dbhost_mqtt_reconnections_total"), QStringLiteral("counter"),
             QStringLiteral("Connections to the broker after the first."));
    describe(QStringLiteral("dbhost_mqtt_sync_comparisons_total"), QStringLiteral("counter"),
             QStringLiteral("Hash comparisons with the server answered, by result."));
    describe(QStringLiteral("dbhost_mqtt_sync_sections_taken_total"), QStringLiteral("counter"),
             QStringLiteral("Sections taken over from the server."));
    describe(QStringLiteral("dbhost_mqtt_sync_sections_sent_total"), QStringLiteral("counter"),
             QStringLiteral("Sections sent to clients whose hashes differed."));
    describe(QStringLiteral("dbhost_section_items"), QStringLiteral("gauge"),
             QStringLiteral("Entries of each section: its objects, or its top-level members."));
    describe(QStringLiteral("dbhost_http_feed_subscribers"), QStringLiteral("gauge"),
             QStringLiteral("Readers of the change feed."));
    describe(QStringLiteral("dbhost_http_feed_dropped_total"), QStringLiteral("counter"),
             QStringLiteral("Feed batches not sent to a reader that fell behind."));
    describe(QStringLiteral("dbhost_http_responses_total"), QStringLiteral("counter"),
             QStringLiteral("Answers of the inspector, by status code."));
    describe(QStringLiteral("process_resident_memory_bytes"), QStringLiteral("gauge"),
             QStringLiteral("Resident memory size in bytes."));
}

host_metrics_t::key_t host_metrics_t::keyOf(QString const& name, labels_t const& labels)
{
    return {name, labelText(labels)};
}

void host_metrics_t::describe(QString const& name, QString const& type, QString const& help)
{
    families.insert(name, {type, help});
}

host_metrics_t::cell_t& host_metrics_t::cell(QString const& name, labels_t const& labels)
{
    QMutexLocker lock(&mutex);
    key_t key = keyOf(name, labels);
    auto const found = cells.find(key);
    if (found != cells.end())
        return *found->second.cell;
    storage.emplace_back();
    cell_t* const created = &storage.back();
    cells.emplace(std::move(key), entry_t{labels, created});
    return *created;
}

void host_metrics_t::observe(QString const& name, labels_t const& labels, double seconds)
{
    QMutexLocker lock(&mutex);
    summary_t& summary = summaries[keyOf(name, labels)];
    summary.labels = labels;
    summary.count += 1;
    summary.sum += seconds;
}

double host_metrics_t::value(QString const& name, labels_t const& labels) const
{
    QMutexLocker lock(&mutex);
    auto const found = cells.find(keyOf(name, labels));
    return found == cells.end() ? 0.0 : found->second.cell->get();
}

QList<host_metrics_t::sample_t> host_metrics_t::series(QString const& name) const
{
    QMutexLocker lock(&mutex);
    QList<sample_t> found;
    for (auto it = cells.lower_bound(key_t{name, QByteArray()}); it != cells.end() && it->first.first == name; ++it)
        found.append({name, it->second.labels, it->second.cell->get()});
    return found;
}

bool host_metrics_t::recordSave(QString const& database, std::function<bool()> const& save)
{
    QElapsedTimer clock;
    clock.start();
    bool const done = save();
    double const seconds = double(clock.nsecsElapsed()) / 1e9;
    labels_t const labels{{QStringLiteral("database"), database}};
    add(QStringLiteral("dbhost_saves_total"),
        {{QStringLiteral("database"), database}, {QStringLiteral("result"), done ? QStringLiteral("done")
                                                                                   : QStringLiteral("failed")}});
    observe(QStringLiteral("dbhost_save_duration_seconds"), labels, seconds);
    set(QStringLiteral("dbhost_save_failing"), labels, done ? 0 : 1);
    if (done)
        set(QStringLiteral("dbhost_last_save_timestamp_seconds"), labels,
            double(QDateTime::currentMSecsSinceEpoch()) / 1000.0);
    return done;
}

int host_metrics_t::addCollector(collector_t collector)
{
    QMutexLocker lock(&mutex);
    int const id = nextCollector++;
    collectors.emplace(id, std::move(collector));
    return id;
}

void host_metrics_t::removeCollector(int id)
{
    QMutexLocker lock(&mutex);
    collectors.erase(id);
}

double host_metrics_t::residentBytes()
{
    // statm: size resident shared text lib data dt, in pages.
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    QList<QByteArray> const fields = statm.readAll().simplified().split(' ');
    bool ok = false;
    double const pages = fields.size() > 1 ? fields.at(1).toDouble(&ok) : 0;
    return ok ? pages * double(::sysconf(_SC_PAGESIZE)) : -1;
}

QString host_metrics_t::escapeLabel(QString const& value)
{
    QString escaped;
    escaped.reserve(value.size());
    for (QChar const c : value) {
        if (c == QLatin1Char('\\'))
            escaped += QLatin1String("\\\\");
        else if (c == QLatin1Char('"'))
            escaped += QLatin1String("\\\"");
        else if (c == QLatin1Char('\n'))
            escaped += QLatin1String("\\n");
        else
            escaped += c;
    }
    return escaped;
}

QByteArray host_metrics_t::render() const
{
    // Collectors may record or read themselves: they run without the lock.
    std::map<int, collector_t> asked;
    {
        QMutexLocker lock(&mutex);
        asked = collectors;
    }
    std::map<key_t, double> values;
    for (auto const& [id, collector] : asked) {
        for (sample_t const& sample : collector())
            values[keyOf(sample.name, sample.labels)] = sample.value;
    }
    if (double const resident = residentBytes(); resident >= 0)
        values[key_t{QStringLiteral("process_resident_memory_bytes"), QByteArray()}] = resident;

    QMutexLocker lock(&mutex);
    for (auto const& [key, entry] : cells)
        values.emplace(key, entry.cell->get());

    // Every sample of a name together, after its help and type, as the format wants.
    QMap<QString, bool> names;
    for (auto it = families.begin(); it != families.end(); ++it)
        names.insert(it.key(), true);
    for (auto const& entry : values)
        names.insert(entry.first.first, true);
    for (auto const& entry : summaries)
        names.insert(entry.first.first, true);

    QByteArray text;
    for (auto name = names.keyBegin(); name != names.keyEnd(); ++name) {
        family_t const family = families.value(*name);
        auto const firstValue = values.lower_bound(key_t{*name, QByteArray()});
        auto const firstSummary = summaries.lower_bound(key_t{*name, QByteArray()});
        bool const hasValues = firstValue != values.end() && firstValue->first.first == *name;
        bool const hasSummaries = firstSummary != summaries.end() && firstSummary->first.first == *name;
        QByteArray const bare = name->toUtf8();
        if (!family.help.isEmpty()) {
            QString help = family.help;
            help.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\n'), QLatin1String("\\n"));
            text += "# HELP " + bare + ' ' + help.toUtf8() + '\n';
        }
        QString type = family.type;
        if (type.isEmpty())
            type = hasSummaries ? QStringLiteral("summary") : QStringLiteral("untyped");
        text += "# TYPE " + bare + ' ' + type.toUtf8() + '\n';
        if (type == QLatin1String("summary")) {
            for (auto it = firstSummary; hasSummaries && it != summaries.end() && it->first.first == *name; ++it) {
                QByteArray const& labels = it->first.second;
                text += bare + "_sum" + labels + ' ' + number(it->second.sum) + '\n';
                text += bare + "_count" + labels + ' ' + number(it->second.count) + '\n';
            }
            continue;
        }
        for (auto it = firstValue; hasValues && it != values.end() && it->first.first == *name; ++it)
            text += bare + it->first.second + ' ' + number(it->second) + '\n';
    }
    return text;
}
