#pragma once

#include "app/report/WatchFigures.h"

#include <QTimeZone>

namespace vorle {

/// The report as a page of Markdown, in French: the figures, what they say, and a table for each
/// chart. Pure, any thread.
QString reportMarkdown(const WatchFigures &figures, const ReportPeriod &period,
                       const QDateTime &now, const QTimeZone &zone = QTimeZone::systemTimeZone());

} // namespace vorle
