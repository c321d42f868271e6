#pragma once

#include <QDateTime>

class Recordset;
class RtfDocument;
struct StatisticsSheet;

// The reports' layouts, composed into the scratch document by appending at its end.

// Appends the record at the current row of rs: its name as a centred title, then the three
// heads with their labelled fields, the values standing at a tab stop two inches in with a
// hanging indent, so that a value's wrapped lines stand under the value. Raises the store's
// error when the row can't be read; what was appended until then stays.
void AddRecordToRTF(RtfDocument& document, const Recordset& rs);

// The statistics report: the title with the moment, the three blocks of rows as the page
// shows them, and the closing text, which stands whatever the figures say.
void AddStatisticsToRTF(RtfDocument& document, const StatisticsSheet& sheet, const QDateTime& now);

// The heads and rows of the statistics reports, in order; a head has figure -1. The tabs
// even out the columns by eye.
struct StatisticsRow {
    enum class Source { Header, Caption };
    Source source;
    int caption; // index into the sheet's headers or captions
    int figure;  // index into the sheet's figures, -1 for a head
    int tabs;
};
extern const StatisticsRow kStatisticsRows[18];

// The text of a figure row: caption, one blank, the tabs, the figure.
QString StatisticsRowText(const StatisticsSheet& sheet, const StatisticsRow& row);
QString StatisticsCaption(const StatisticsSheet& sheet, const StatisticsRow& row);

// The four lines of the closing text.
QStringList ClosingLines(const StatisticsSheet& sheet);

// "Vantry! Vantry! Statistics as of " and the moment in the program's date-time form.
QString StatisticsTitle(const QDateTime& now);
