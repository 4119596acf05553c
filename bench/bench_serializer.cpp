#include <QtTest>
class bench_serializer : public QObject { Q_OBJECT };
QTEST_GUILESS_MAIN(bench_serializer)
#include "bench_serializer.moc"
