#include "ReportReaders.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

namespace {
QByteArray Run(const QString& program, const QStringList& arguments, int timeoutMs = 120000) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(timeoutMs))
        return {};
    return process.readAllStandardOutput();
}
} // namespace

namespace ReportReaders {

bool HaveOffice() {
    return !QStandardPaths::findExecutable(QStringLiteral("soffice")).isEmpty();
}

bool HavePdfTools() {
    return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty() &&
           !QStandardPaths::findExecutable(QStringLiteral("pdfinfo")).isEmpty();
}

QStringList OfficeText(const QStringList& rtfFiles) {
    QTemporaryDir out;
    QTemporaryDir profile; // a profile of its own: runs in parallel never share one
    QStringList arguments{QStringLiteral("-env:UserInstallation=") +
                              QUrl::fromLocalFile(profile.path()).toString(),
                          QStringLiteral("--headless"),
                          QStringLiteral("--convert-to"),
                          QStringLiteral("txt:Text (encoded):UTF8"),
                          QStringLiteral("--outdir"),
                          out.path()};
    arguments += rtfFiles;
    Run(QStringLiteral("soffice"), arguments);
    QStringList texts;
    for (const QString& file : rtfFiles) {
        QFile text(QDir(out.path()).filePath(QFileInfo(file).completeBaseName() + ".txt"));
        texts.append(text.open(QIODevice::ReadOnly) ? QString::fromUtf8(text.readAll())
                                                    : QString());
    }
    return texts;
}

QStringList PdfPages(const QString& pdfFile) {
    const QString info = QString::fromUtf8(Run(QStringLiteral("pdfinfo"), {pdfFile}));
    const QRegularExpressionMatch pages =
        QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(info);
    QStringList texts;
    const int count = pages.hasMatch() ? pages.captured(1).toInt() : 0;
    for (int page = 1; page <= count; ++page)
        texts.append(QString::fromUtf8(
            Run(QStringLiteral("pdftotext"),
                {QStringLiteral("-layout"), QStringLiteral("-f"), QString::number(page),
                 QStringLiteral("-l"), QString::number(page), pdfFile, QStringLiteral("-")})));
    return texts;
}

} // namespace ReportReaders
