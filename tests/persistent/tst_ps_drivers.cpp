#include <QtTest>
class tst_ps_drivers : public QObject { Q_OBJECT };
QTEST_GUILESS_MAIN(tst_ps_drivers)
#include "tst_ps_drivers.moc"
