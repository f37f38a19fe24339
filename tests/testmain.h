#ifndef ORVACAT_TESTS_TESTMAIN_H
#define ORVACAT_TESTS_TESTMAIN_H

#include <QApplication>
#include <QtTest>

/**
 * The suites' main(). QTEST_MAIN would set Qt::AA_Use96Dpi, which hides the
 * DPI factor that the runner pins with QT_FONT_DPI; this one leaves it alone.
 */
#define ORVACAT_TEST_MAIN(TestClass)              \
    int main(int argc, char** argv)               \
    {                                             \
        QApplication app(argc, argv);             \
        app.setAttribute(Qt::AA_DontUseNativeMenuBar); \
        TestClass test;                           \
        QTEST_SET_MAIN_SOURCE_PATH                \
        return QTest::qExec(&test, argc, argv);   \
    }

#endif // ORVACAT_TESTS_TESTMAIN_H
