#pragma once

#include <QDateTime>

class QPainter;
class QPrinter;
struct StatisticsSheet;

// The statistics on one printed sheet, drawn at fixed positions in inches from the paper's
// edges: the centred title half an inch down, the three blocks from one inch, the closing
// text, and "Page n" half an inch above the foot.

// Asks for the printer and prints a sheet per copy; Cancel prints nothing.
void PrintStatisticsSheet(const StatisticsSheet& sheet);
// Draws one sheet on a painter open on the printer.
void DrawStatisticsSheet(QPainter& painter, const QPrinter& printer, const StatisticsSheet& sheet,
                         const QDateTime& now, int pageNumber);
