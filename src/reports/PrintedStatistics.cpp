#include "reports/PrintedStatistics.h"

#include "common/core/Clock.h"
#include "common/core/Desktop.h"
#include "common/ui/Forms.h"
#include "common/ui/ReportHooks.h"
#include "reports/ReportLayout.h"
#include "reports/Reports.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <QTextOption>

namespace {
const QString kFont = QStringLiteral("Arial");
constexpr double kTabStop = 0.5; // inches, as word processors set them by default

// A page with a scale in inches and a current position, as the report is written: each
// print stands at the current position and moves it to the start of the next line.
class InchPage {
public:
    InchPage(QPainter& painter, const QPrinter& printer)
        : mPainter(painter), mPrinter(printer), mDpi(printer.resolution()) {}

    double ScaleWidth() const { return mPrinter.paperRect(QPrinter::DevicePixel).width() / mDpi; }
    double ScaleHeight() const { return mPrinter.paperRect(QPrinter::DevicePixel).height() / mDpi; }

    void SetFont(int points, bool bold, bool underline = false) {
        QFont font(kFont);
        font.setPointSize(points);
        font.setBold(bold);
        font.setUnderline(underline);
        mPainter.setFont(font);
    }
    double TextWidth(const QString& text) const {
        return QFontMetricsF(mPainter.font(), &mPrinter).horizontalAdvance(text) / mDpi;
    }
    double LineHeight() const {
        return QFontMetricsF(mPainter.font(), &mPrinter).lineSpacing() / mDpi;
    }

    void Print(const QString& text) {
        if (!text.isEmpty()) {
            QTextOption option;
            option.setTabStopDistance(kTabStop * Reports::TabDotsPerInch());
            option.setWrapMode(QTextOption::NoWrap);
            const QRectF line(x * mDpi, y * mDpi, (ScaleWidth() - x) * mDpi, LineHeight() * mDpi);
            mPainter.drawText(line, text, option);
        }
        x = 0;
        y += LineHeight();
    }
    void PrintCentred(const QString& text) {
        x = (ScaleWidth() - TextWidth(text)) / 2;
        Print(text);
    }

    double x = 0;
    double y = 0;

private:
    QPainter& mPainter;
    const QPrinter& mPrinter;
    double mDpi;
};

void PrintFailed(BusyState& busy) {
    busy.Done(QStringLiteral("Printing error..."));
    MsgBox(QStringLiteral("There was an error, please check your printer."), vb::vbOKOnly,
           QStringLiteral("Error"));
}
} // namespace

void DrawStatisticsSheet(QPainter& painter, const QPrinter& printer, const StatisticsSheet& sheet,
                         const QDateTime& now, int pageNumber) {
    InchPage page(painter, printer);

    // The title, centred half an inch down; the body starts an inch in and a line below.
    page.SetFont(12, true);
    page.y = 0.5;
    page.PrintCentred(StatisticsTitle(now));
    page.x = 1;
    page.y = 1;
    page.Print(QString());

    page.SetFont(10, false);
    bool firstHead = true;
    for (const StatisticsRow& row : kStatisticsRows) {
        if (row.figure < 0) {
            if (!firstHead)
                page.Print(QString());
            firstHead = false;
            page.SetFont(10, true, true);
            page.x = 1;
            page.Print(StatisticsCaption(sheet, row));
            page.SetFont(10, false);
            page.Print(QString());
            continue;
        }
        page.x = 1;
        page.Print(StatisticsRowText(sheet, row));
    }
    page.Print(QString());
    page.Print(QString());

    page.SetFont(12, true);
    for (const QString& line : ClosingLines(sheet))
        page.PrintCentred(line);

    page.SetFont(8, false);
    page.y = page.ScaleHeight() - 0.5;
    page.PrintCentred(QStringLiteral("Page ") + QString::number(pageNumber));
}

void PrintStatisticsSheet(const StatisticsSheet& sheet) {
    SetStatusText(QStringLiteral("Preparing to print..."));
    QPrinter printer(QPrinter::HighResolution);
    if (!TheDesktop().PrinterDialog(printer, Reports::DialogParent())) {
        SetMousePointer(MousePointer::Default);
        SetStatusText(QStringLiteral("Cancelled print job..."));
        return;
    }
    // The copies are run here, a whole sheet each, every one its own page 1.
    const int copies = std::max(1, printer.copyCount());
    printer.setCopyCount(1);
    printer.setFullPage(true);
    BusyState busy(QStringLiteral("Printing statistics..."));
    const QDateTime now = Now();
    QPainter painter;
    if (!painter.begin(&printer)) {
        PrintFailed(busy);
        return;
    }
    for (int copy = 0; copy < copies; ++copy) {
        if (copy > 0 && !printer.newPage()) {
            painter.end();
            PrintFailed(busy);
            return;
        }
        DrawStatisticsSheet(painter, printer, sheet, now, 1);
    }
    if (!painter.end()) {
        PrintFailed(busy);
        return;
    }
}
