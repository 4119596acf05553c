#include <QtTest>
class tst_ps_sections : public QObject { Q_OBJECT };
QTEST_GUILESS_MAIN(tst_ps_sections)
#include "tst_ps_sections.moc"
