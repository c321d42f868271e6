#include "reports/Reports.h"

#include "app/cLogErr.h"
#include "common/core/Clock.h"
#include "common/core/Desktop.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/MainFrame.h"
#include "common/ui/ReportHooks.h"
#include "data/Database.h"
#include "data/Recordset.h"
#include "data/ReportQueries.h"
#include "reports/PrintedStatistics.h"
#include "reports/ReportLayout.h"
#include "reports/RtfDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHash>
#include <QMdiArea>
#include <QPainter>
#include <QPrinter>
#include <QSaveFile>
#include <QScreen>
#include <QTemporaryFile>
#include <QTextDocument>
#include <cmath>
#include <optional>
#include <vector>

namespace {
const QString kSource = QStringLiteral("frmSwitchboard");
const QString kLocation = QStringLiteral("PrintPreviewSelected()");
constexpr int kInch = 1440; // twips
constexpr double kTwipsPerInch = 1440.0;

// Appends one record with the status and pointer of composing; false when it could not be
// read, after the error has been reported.
bool AddRecord(RtfDocument& document, const Recordset& rs) {
    BusyState busy(QStringLiteral("Preparing export..."));
    try {
        AddRecordToRTF(document, rs);
        return true;
    } catch (const VbError& e) {
        busy.Failed(QStringLiteral("Error..."));
        LogError(e, kSource, QStringLiteral("AddRecordToRTF()"));
        return false;
    }
}

// The records of the ids that the store still holds, in the order of the ids, composed in
// one walk of the table (each into a part of its own, joined in order at the end); false when
// one could not be composed, and nothing is then to be printed or shown.
bool ComposeRecords(RtfDocument& document, const QStringList& rebateIDs) {
    QHash<QString, qsizetype> wanted;
    wanted.reserve(rebateIDs.size());
    for (qsizetype i = 0; i < rebateIDs.size(); ++i)
        wanted.insert(rebateIDs.at(i), i);
    std::vector<std::optional<RtfDocument>> parts(static_cast<size_t>(rebateIDs.size()));
    std::unique_ptr<Recordset> rs = OpenAllRebates();
    const int key = rs->FieldIndex(QStringLiteral("RebateID"));
    for (; !rs->IsEOF(); rs->MoveNext()) {
        const auto found = wanted.constFind(rs->Fields(key).toString());
        if (found == wanted.cend())
            continue;
        std::optional<RtfDocument>& part = parts[static_cast<size_t>(*found)];
        part.emplace();
        if (!AddRecord(*part, *rs))
            return false;
    }
    for (const std::optional<RtfDocument>& part : parts)
        if (part)
            document.AppendDocument(*part);
    return true;
}

// A report that went wrong somewhere unexpected: logged as the record commands log.
void ReportFailure(BusyState& busy, const VbError& e) {
    busy.Failed(QStringLiteral("Error..."));
    LogError(e, kSource, kLocation);
}
} // namespace

namespace Reports {

QWidget* DialogParent() {
    MainFrame* frame = MainFrame::Instance();
    QMdiArea* area = frame ? frame->Area() : nullptr;
    return area ? area->window() : nullptr;
}

double TabDotsPerInch() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? std::round(screen->logicalDotsPerInchY()) : 100.0;
}

void RegisterHooks() {
    ReportHooks& hooks = ReportHooks::Instance();
    hooks.PrintRecord = &PrintToPrinter;
    hooks.PrintRecords = &PrintSelected;
    hooks.ViewRecords = &PrintPreviewSelected;
    hooks.PrintStatistics = &PrintStatistics;
    hooks.ViewStatistics = &PreviewStatistics;
}

void PrintToPrinter(const QString& rebateID) {
    BusyState busy(QStringLiteral("Preparing report..."));
    try {
        RtfDocument document;
        if (!ComposeRecords(document, {rebateID}))
            return;
        if (document.IsEmpty()) {
            busy.Done();
            MsgBox(QStringLiteral("Unable to locate Record ID '") + rebateID +
                       QStringLiteral("' in the database. Please try printing the record from "
                                      "the Switchboard."),
                   vb::vbExclamation, QStringLiteral("Unable to Print"));
            return;
        }
        PrintRTF1(busy, document, kInch, kInch, kInch, kInch);
    } catch (const VbError& e) {
        ReportFailure(busy, e);
    }
}

void PrintSelected(const QStringList& rebateIDs) {
    if (rebateIDs.isEmpty())
        return;
    BusyState busy(QStringLiteral("Preparing report..."));
    try {
        RtfDocument document;
        if (ComposeRecords(document, rebateIDs) && !document.IsEmpty())
            PrintRTF1(busy, document, kInch, kInch, kInch, kInch);
    } catch (const VbError& e) {
        ReportFailure(busy, e);
    }
}

void PrintPreviewSelected(const QStringList& rebateIDs) {
    if (rebateIDs.isEmpty())
        return;
    BusyState busy(QStringLiteral("Preparing export..."));
    try {
        RtfDocument document;
        if (ComposeRecords(document, rebateIDs))
            ShowReport(document);
    } catch (const VbError& e) {
        ReportFailure(busy, e);
    }
}

void PreviewStatistics(const StatisticsSheet& sheet) {
    BusyState busy(QStringLiteral("Preparing export..."));
    try {
        RtfDocument document;
        AddStatisticsToRTF(document, sheet, Now());
        ShowReport(document);
    } catch (const VbError&) {
        busy.Done();
        MsgBox(QStringLiteral("There was an error, please check your printer."), vb::vbOKOnly,
               QStringLiteral("Error"));
    }
}

void PrintStatistics(const StatisticsSheet& sheet) {
    PrintStatisticsSheet(sheet);
}

QString GetTempFile(const QString& prefix) {
    // A temporary folder that is missing reads as "": the report must not land in "/".
    const QString folder = TempPath();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        return {};
    QTemporaryFile file(folder + QLatin1Char('/') + prefix + QStringLiteral("XXXXXX.rtf"));
    file.setAutoRemove(false);
    if (!file.open())
        return {};
    return file.fileName();
}

bool ShowReport(const RtfDocument& document) {
    const QString path = GetTempFile(QStringLiteral("~van"));
    if (path.isEmpty()) {
        MsgBox(QStringLiteral("Unable to create temporary file."), vb::vbExclamation,
               QStringLiteral("Error Creating Temp File"));
        return false;
    }
    // The whole report or nothing: a write that fails (a full disk) leaves no file behind.
    QSaveFile file(path);
    bool written = file.open(QIODevice::WriteOnly);
    if (written) {
        file.write(document.ToRtf());
        written = file.commit();
    }
    if (!written)
        QFile::remove(path);
    if (written && FileExists(path) && TheDesktop().OpenDocument(path))
        return true;
    MsgBox(QStringLiteral("Unable to display report in default RTF editor."), vb::vbExclamation,
           QStringLiteral("Unable to Display"));
    return false;
}

int LayPages(const RtfDocument& document, QPrinter& printer, int leftMargin, int topMargin,
             int rightMargin, int bottomMargin, int copies) {
    const double dpi = printer.resolution();
    const auto pixels = [dpi](int twips) {
        return twips * dpi / kTwipsPerInch;
    };
    std::unique_ptr<QTextDocument> text = document.ToTextDocument(dpi, TabDotsPerInch());
    text->documentLayout()->setPaintDevice(&printer);
    const QRectF paper = printer.paperRect(QPrinter::DevicePixel);
    const QRectF body(pixels(leftMargin), pixels(topMargin),
                      paper.width() - pixels(leftMargin) - pixels(rightMargin),
                      paper.height() - pixels(topMargin) - pixels(bottomMargin));
    // The layout breaks pages itself: a line that would cross the foot goes to the next page,
    // and a document that ends at a page's end has no further page.
    text->setPageSize(body.size());
    const int pages = text->pageCount();

    QPainter painter;
    if (!painter.begin(&printer))
        throw VbError(482, QStringLiteral("The printer could not be opened."));
    for (int copy = 0; copy < copies; ++copy) {
        for (int page = 0; page < pages; ++page) {
            if ((copy > 0 || page > 0) && !printer.newPage())
                throw VbError(482, QStringLiteral("The printer refused a new page."));
            painter.save();
            painter.translate(body.left(), body.top() - page * body.height());
            const QRectF pageRect(0, page * body.height(), body.width(), body.height());
            painter.setClipRect(pageRect);
            // A line that ends where the page ends belongs to it alone: the clip passed to the
            // layout stays a pixel inside, or the neighbouring pages would draw it too (clipped
            // away on paper, but still in the PDF's text).
            QAbstractTextDocumentLayout::PaintContext context;
            context.clip = pageRect.adjusted(0, 1, 0, -1);
            text->documentLayout()->draw(&painter, context);
            painter.restore();
        }
    }
    if (!painter.end())
        throw VbError(482, QStringLiteral("The printer could not finish the document."));
    return pages;
}

void PrintRTF1(BusyState& busy, const RtfDocument& document, int leftMargin, int topMargin,
               int rightMargin, int bottomMargin) {
    QPrinter printer(QPrinter::HighResolution);
    if (!TheDesktop().PrinterDialog(printer, DialogParent())) {
        busy.Done(QStringLiteral("Cancelled print job..."));
        return;
    }
    // The copies are run here, each complete before the next, so they come out collated
    // whatever the driver does with a copy count.
    const int copies = std::max(1, printer.copyCount());
    printer.setCopyCount(1);
    printer.setFullPage(true);
    for (;;) {
        // Each try brings the hourglass back; the caller's busy state keeps the status line.
        const BusyState attempt(QString(), nullptr);
        SetStatusText(QStringLiteral("Printing statistics..."));
        try {
            LayPages(document, printer, leftMargin, topMargin, rightMargin, bottomMargin, copies);
            break;
        } catch (const VbError& e) {
            busy.Failed(QStringLiteral("Printing error..."));
            if (MsgBox(e.Description(), vb::vbRetryCancel | vb::vbQuestion,
                       QStringLiteral("Retry?")) != vb::vbRetry)
                break;
        }
    }
}

} // namespace Reports
