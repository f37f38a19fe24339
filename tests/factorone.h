#ifndef ORVACAT_TESTS_FACTORONE_H
#define ORVACAT_TESTS_FACTORONE_H

// Literal pixel numbers hold only at the DPI factor 1.0 (72 dpi); under the
// other settings a test repeats itself in a child process pinned to it.

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

namespace FactorOne {

/**
 * Runs @p testFunction of this suite again in a child process at 72 dpi, no
 * scale factor, on the offscreen platform, and fails the calling test when
 * the child fails. The caller returns right after.
 */
inline void runInChild(const char* testFunction)
{
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("72"));
    env.remove(QStringLiteral("QT_SCALE_FACTOR"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(testFunction)});
    QVERIFY(child.waitForFinished(60000));
    QVERIFY2(child.exitCode() == 0, child.readAllStandardOutput().constData());
}

} // namespace FactorOne

#endif // ORVACAT_TESTS_FACTORONE_H
