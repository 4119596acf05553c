#include <QtTest>
class tst_ps_data : public QObject { Q_OBJECT };
QTEST_GUILESS_MAIN(tst_ps_data)
#include "tst_ps_data.moc"
