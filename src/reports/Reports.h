#pragma once

#include <QString>
#include <QStringList>

class BusyState;
class QPrinter;
class QWidget;
class RtfDocument;
struct StatisticsSheet;

// The record and statistics reports: printed through the printer dialog of the desktop, or
// written as RTF into the system's temporary folder and handed to the user's word processor.
// Each command composes its own scratch document, so nothing of a report outlives it.
namespace Reports {

// The window the printer dialog and the report's boxes belong to: the main window.
QWidget* DialogParent();

// The resolution in which Qt takes tab stops on any device: it scales them from its default
// DPI (the primary screen's logical DPI, 100 without a screen) to the device's own.
double TabDotsPerInch();

// Fills the hook table through which the Switchboard and the rebate form reach the reports.
void RegisterHooks();

// Prints the one record of the rebate form, read afresh from the store ("Unable to Print"
// when it is gone).
void PrintToPrinter(const QString& rebateID);
// Prints the selected records in list order as one flowing document; a record no longer in
// the store is passed over. Nothing selected prints nothing.
void PrintSelected(const QStringList& rebateIDs);
// Opens the selected records as one RTF report in the word processor.
void PrintPreviewSelected(const QStringList& rebateIDs);
// Opens the statistics as an RTF report in the word processor.
void PreviewStatistics(const StatisticsSheet& sheet);
// Prints the statistics on one sheet, drawn at fixed positions in inches.
void PrintStatistics(const StatisticsSheet& sheet);

// Shows the printer dialog, then lays the document on the printer page by page inside the
// margins (twips from the paper's edges), each copy in full before the next. A failure asks
// whether to retry. The caller's busy state ends with the print's last status text.
void PrintRTF1(BusyState& busy, const RtfDocument& document, int leftMargin, int topMargin,
               int rightMargin, int bottomMargin);
// The pages of the document on an open printer, once; the number of pages laid.
int LayPages(const RtfDocument& document, QPrinter& printer, int leftMargin, int topMargin,
             int rightMargin, int bottomMargin, int copies);

// A new, empty file of a name of its own in the system's temporary folder: the prefix, a
// unique part and ".rtf". "" when the folder can't take it.
QString GetTempFile(const QString& prefix);
// Writes the document's RTF to a new report file and hands it to the desktop; the messages
// of a report that can't be written or shown. True when the desktop took the file.
bool ShowReport(const RtfDocument& document);

} // namespace Reports
