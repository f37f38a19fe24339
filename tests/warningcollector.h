#ifndef ORVACAT_TESTS_WARNINGCOLLECTOR_H
#define ORVACAT_TESTS_WARNINGCOLLECTOR_H

#include <QStringList>

/**
 * Captures the warnings written on the "debug.message" category while it
 * lives (other messages go to the previous handler). Not nestable.
 */
class WarningCollector
{
public:
    WarningCollector();
    ~WarningCollector();

    /** The captured warnings, each as the text QDebug wrote. */
    QStringList messages() const;
    int count() const;
    void clear();
    /** True when exactly one warning was captured and it equals @p text. */
    bool isOnly(const QString& text) const;

private:
    Q_DISABLE_COPY(WarningCollector)
};

#endif // ORVACAT_TESTS_WARNINGCOLLECTOR_H
