#pragma once

#include <QString>
#include <QStringList>
#include <array>
#include <functional>

// The texts of the Switchboard's statistics page as the user sees them: the heads
// (lblStatHeaders), the row captions (lblStats) and the formatted figures (lblStatFigures),
// each by its index on the page. The statistics reports print exactly these.
struct StatisticsSheet {
    std::array<QString, 5> headers;
    std::array<QString, 13> captions;
    std::array<QString, 15> figures;
};

// How the Switchboard and the rebate form reach the reports without knowing them: the shell
// fills the table at start-up. An empty entry does nothing.
struct ReportHooks {
    // Prints the one record the rebate form shows, read afresh from the store; a record that
    // is no longer there gets a message and nothing is printed.
    std::function<void(const QString& rebateID)> PrintRecord;
    // Prints the records of the selected rows, in list order, as one flowing document; a
    // record no longer in the store is passed over.
    std::function<void(const QStringList& rebateIDs)> PrintRecords;
    // The same records as an RTF report opened in the user's word processor.
    std::function<void(const QStringList& rebateIDs)> ViewRecords;
    // The statistics page on one printed sheet, and as an RTF report.
    std::function<void(const StatisticsSheet& sheet)> PrintStatistics;
    std::function<void(const StatisticsSheet& sheet)> ViewStatistics;

    static ReportHooks& Instance();
};
