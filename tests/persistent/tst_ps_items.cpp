#include <QtTest>
class tst_ps_items : public QObject { Q_OBJECT };
QTEST_GUILESS_MAIN(tst_ps_items)
#include "tst_ps_items.moc"
