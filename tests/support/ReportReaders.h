#pragma once

#include <QString>
#include <QStringList>

// Reads reports back through real readers from the distribution: LibreOffice Writer for
// RTF, poppler's pdfinfo and pdftotext for PDF. Each returns an empty result when the tool is
// missing; HaveOffice()/HavePdfTools() let a test skip with a clear message.
namespace ReportReaders {
bool HaveOffice();
bool HavePdfTools();

// The plain text LibreOffice reads from each RTF file (converted in one run), in the order
// given; an empty text for a file it rejected.
QStringList OfficeText(const QStringList& rtfFiles);

// The text of each page of the PDF.
QStringList PdfPages(const QString& pdfFile);
} // namespace ReportReaders

#define SKIP_WITHOUT_OFFICE()                                                                      \
    if (!ReportReaders::HaveOffice())                                                              \
    QSKIP("LibreOffice (soffice) is not installed: scripts/deps installs "                         \
          "libreoffice-writer-nogui")
#define SKIP_WITHOUT_PDF_TOOLS()                                                                   \
    if (!ReportReaders::HavePdfTools())                                                            \
    QSKIP("pdftotext/pdfinfo are not installed: scripts/deps installs poppler-utils")
