#pragma once

#include <QWidget>
#include <array>

class QFrame;
class QLabel;
class QScrollBar;

// The Statistics page of the Switchboard. It fills picLVBack(8) and holds the white sheet
// picLVBack(9) with the figures of clsRebateStats in three groups (Expenditures, Savings,
// Other), and the scroll bar VScroll1 that moves the sheet when the page is too short for it.
// The figures are written anew by each UpdateStatistics; nothing keeps them up to date.
class StatisticsPage : public QWidget {
    Q_OBJECT
public:
    static constexpr int kFigureCount = 15;
    static constexpr int kCaptionCount = 13;
    static constexpr int kHeaderCount = 5;

    explicit StatisticsPage(QWidget* parent = nullptr);

    // Reads the statistics and writes the figures 0 to 11, then the three totals 12, 13 and
    // 14 from the captions just written. An error of the engine is logged by the engine and
    // leaves its partial figures; an error in reading a caption back goes to the caller.
    void UpdateStatistics();

    // The controls, by their index in the program's control arrays.
    QLabel* lblStatFigures(int index) const { return mFigures.at(static_cast<size_t>(index)); }
    QLabel* lblStats(int index) const { return mCaptions.at(static_cast<size_t>(index)); }
    QLabel* lblStatHeaders(int index) const { return mHeaders.at(static_cast<size_t>(index)); }
    QWidget* Sheet() const { return mSheet; } // picLVBack(9)
    QScrollBar* VScroll1() const { return mScroll; }

    // The sheet moves up as the thumb moves down.
    void VScroll1_Change(int value);
    // Fits the sheet and the scroll bar to the page, and shows the bar only while the lowest
    // row (lblStats(10)) ends below the page.
    void FitToPage();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void BuildSheet();
    void SetFigure(int index, const QString& text);
    void PlaceSheet(int top);
    void FitFigureColumn();

    QWidget* mSheet;
    QWidget* mContent; // the rows, centred on a sheet wider than they are
    QScrollBar* mScroll;
    int mSheetHeight = 0; // as designed, in pixels
    int mFigureLeft = 0;
    std::array<QLabel*, kFigureCount> mFigures{};
    std::array<QLabel*, kCaptionCount> mCaptions{};
    std::array<QLabel*, kHeaderCount> mHeaders{};
    std::array<QLabel*, 3> mPictures{};
    std::array<QFrame*, 3> mLines{};
};
