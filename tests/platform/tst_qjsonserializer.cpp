#include <QtTest>
class tst_qjsonserializer : public QObject { Q_OBJECT };
QTEST_GUILESS_MAIN(tst_qjsonserializer)
#include "tst_qjsonserializer.moc"
