#ifndef ORVACAT_TESTS_FACTORONE_H
#define ORVACAT_TESTS_FACTORONE_H

// Literal pixel numbers hold only at the DPI factor 1.0 (72 dpi); under the
// other settings a test repeats itself in a child process pinned to it.

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

namespace FactorOne {

/**
 * Runs @p testFunction of this suite (with the current data row, if any)
 * again in a child process at 72 dpi, no scale factor, on the offscreen
 * platform, and fails the calling test when the child reports a failure.
 * The child is judged by its report, not its exit code, which a leak
 * checker may set at exit for reasons of its own. The caller returns right
 * after.
 */
inline void runInChild(const char* testFunction)
{
    QString function = QString::fromLatin1(testFunction);
    const char* tag = QTest::currentDataTag();
    if (tag && *tag)
        function += QLatin1Char(':') + QString::fromLatin1(tag);
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("72"));
    env.remove(QStringLiteral("QT_SCALE_FACTOR"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {function});
    QVERIFY(child.waitForFinished(60000));
    const QString report = QString::fromLocal8Bit(child.readAll());
    const QRegularExpression totals(QStringLiteral("Totals: ([1-9]\\d*) passed, 0 failed"));
    QVERIFY2(child.exitStatus() == QProcess::NormalExit && totals.match(report).hasMatch()
                 && !report.contains(QLatin1String("FAIL!")),
             qPrintable(report));
}

} // namespace FactorOne

#endif // ORVACAT_TESTS_FACTORONE_H
