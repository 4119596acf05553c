#ifndef HOST_DBHOST_HOST_METRICS_T_H
#define HOST_DBHOST_HOST_METRICS_T_H

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMutex>
#include <QString>

#include <atomic>
#include <deque>
#include <functional>
#include <map>

/**
 * The host's figures, rendered in the Prometheus text format for
 * GET /metrics. One process-wide registry, so that every host class records
 * with one line and nothing needs to be handed around:
 *
 *     host_metrics_t::instance().add("dbhost_saves_total", {{"database", "persistent"}, {"result", "done"}});
 *     host_metrics_t::instance().observe("dbhost_save_duration_seconds", {{"database", "persistent"}}, 0.004);
 *     host_metrics_t::instance().set("dbhost_mqtt_connected", {}, 1);
 *
 * Names in use (labels in braces):
 *   dbhost_changes_total{database}                change signals of each database
 *   dbhost_requests_total{database}               requests raised here, by the database of their topic
 *   dbhost_refusals_total{kind}                   refused, not_exist, error
 *   dbhost_saves_total{database,result}           file saves, done or failed
 *   dbhost_save_duration_seconds{database}        summary of the saves' durations
 *   dbhost_last_save_timestamp_seconds{database}  Unix time of the last save that went through
 *   dbhost_save_failing{database}                 1 while the saves of that file fail
 *   dbhost_journal_syncs_total{database}          syncs of a database's journal to disk
 *   dbhost_journal_sync_duration_seconds{database} summary of their durations
 *   dbhost_mqtt_connected                         1 while the broker connection is up
 *   dbhost_mqtt_reconnections_total               connections after the first
 *   dbhost_mqtt_sync_comparisons_total{result}    a client's hash comparisons answered:
 *                                                 in_step, took_sections, lost_status
 *   dbhost_mqtt_sync_sections_taken_total         sections a client took over from the server
 *   dbhost_mqtt_sync_sections_sent_total          sections the server sent to clients that differed
 *   dbhost_section_items{database,section}        entries of each section, counted when scraped
 *   dbhost_http_feed_subscribers                  pages and other readers of the change feed
 *   dbhost_http_feed_dropped_total                feed batches not sent to a reader that fell behind
 *   dbhost_http_responses_total{code}             answers of the inspector, by status code
 *   process_resident_memory_bytes                 resident memory, from /proc/self/statm
 * A name that isn't listed is rendered too, as untyped (or as a summary when
 * observed), without help.
 *
 * Safe from any thread: a journal may sync on a thread of its own.
 */
class host_metrics_t
{
public:
    using labels_t = QMap<QString, QString>;

    /// A value that a hot road keeps hold of, to count without a look-up.
    class cell_t
    {
    public:
        void add(double by = 1.0)
        {
            double now = value.load(std::memory_order_relaxed);
            while (!value.compare_exchange_weak(now, now + by, std::memory_order_relaxed)) {
            }
        }
        void set(double to) { value.store(to, std::memory_order_relaxed); }
        double get() const { return value.load(std::memory_order_relaxed); }

    private:
        std::atomic<double> value{0.0};
    };

    /// What a collector gives at scrape time: gauges that are cheaper to count then.
    struct sample_t {
        QString name;
        labels_t labels;
        double value = 0;
    };
    using collector_t = std::function<QList<sample_t>()>;

    static host_metrics_t& instance();

    host_metrics_t();

    /// The counter or gauge of that name and labels, created at zero; the
    /// reference stays valid for the life of the registry.
    cell_t& cell(QString const& name, labels_t const& labels = {});
    void add(QString const& name, labels_t const& labels = {}, double by = 1.0) { cell(name, labels).add(by); }
    void set(QString const& name, labels_t const& labels, double value) { cell(name, labels).set(value); }
    /// One more observation of a summary: its count and its sum.
    void observe(QString const& name, labels_t const& labels, double seconds);
    /// The value of a counter or gauge; 0 when it was never recorded.
    double value(QString const& name, labels_t const& labels = {}) const;
    /// The labels and values of every series of a name.
    QList<sample_t> series(QString const& name) const;

    /// Runs a save, counts it done or failed, and observes its duration.
    bool recordSave(QString const& database, std::function<bool()> const& save);

    /// A function asked at every scrape; the id removes it.
    int addCollector(collector_t collector);
    void removeCollector(int id);

    /// Everything in the text exposition format (version 0.0.4).
    QByteArray render() const;
    static QByteArray contentType() { return QByteArrayLiteral("text/plain; version=0.0.4; charset=utf-8"); }

    /// Resident bytes of this process, or -1 when /proc can't tell.
    static double residentBytes();
    /// A label value or help text with the format's escapes.
    static QString escapeLabel(QString const& value);

private:
    struct family_t {
        QString type; // counter, gauge, summary, untyped
        QString help;
    };
    struct summary_t {
        labels_t labels;
        double count = 0;
        double sum = 0;
    };
    struct entry_t {
        labels_t labels;
        cell_t* cell = nullptr;
    };
    /// The name and the labels as rendered: sorted by name, then labels.
    using key_t = std::pair<QString, QByteArray>;
    static key_t keyOf(QString const& name, labels_t const& labels);

    void describe(QString const& name, QString const& type, QString const& help);

    mutable QMutex mutex;
    QMap<QString, family_t> families;
    /// Cells in a deque: their addresses never move.
    std::deque<cell_t> storage;
    std::map<key_t, entry_t> cells;
    std::map<key_t, summary_t> summaries;
    std::map<int, collector_t> collectors;
    int nextCollector = 1;
};

#endif // HOST_DBHOST_HOST_METRICS_T_H
