#include "switchboard/StatisticsPage.h"

#include "app/clsRebateStats.h"
#include "common/core/Currency.h"
#include "common/core/Regional.h"
#include "common/core/Twips.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"

#include <QCoreApplication>
#include <QFrame>
#include <QLabel>
#include <QScrollBar>
#include <QStyle>
#include <QWheelEvent>
#include <initializer_list>

namespace {

// The design's colours: money that went out, money that came in or was saved, the rest.
constexpr QRgb kRed = qRgb(192, 0, 0);
constexpr QRgb kGreen = qRgb(0, 128, 0);
constexpr QRgb kBlack = qRgb(0, 0, 0);

// The sheet's measures, in pixels.
constexpr int kMargin = 12;
constexpr int kPictureSize = 32;
constexpr int kHeaderLeft = kMargin + kPictureSize + 12;
constexpr int kCaptionLeft = kHeaderLeft + 16;
constexpr int kColumnGap = 16;
constexpr int kGroupGap = 14;
// A little less than the page's height at the Switchboard's smallest size (about 160). The
// scroll bar reaches half the sheet's height, so the sheet is made tall enough for its lowest
// row to come into view there.
constexpr int kSmallestPage = 120;

struct GroupDesign {
    int header; // lblStatHeaders(header)
    const char* caption;
    const char* picture; // the icon key
};

constexpr std::array<GroupDesign, 3> kGroups{{
    {0, "Expenditures", "calc"},
    {1, "Savings", "paid"},
    {2, "Other", "details"},
}};

// The rows from top to bottom. A total has a line above it and is set in bold.
struct RowDesign {
    int group;
    bool header; // the caption is lblStatHeaders(label), else lblStats(label)
    int label;
    const char* caption;
    int figure; // lblStatFigures(figure)
    QRgb colour;
    int line; // Line1(line) above a total, -1 for a plain row
};

constexpr std::array<RowDesign, 15> kRows{{
    {0, false, 0, "Total spent on products:", 0, kRed, -1},
    {0, false, 2, "Total cost of postage:", 2, kRed, -1},
    {0, false, 3, "Total cost of followup postage:", 3, kRed, -1},
    {0, true, 3, "Total Expenditures", 12, kRed, 0},
    {1, false, 4, "Total value of rebates received:", 4, kGreen, -1},
    {1, false, 11, "Total rebates outstanding:", 11, kGreen, -1},
    {1, true, 4, "Total Rebates", 13, kGreen, 1},
    {1, false, 1, "Total savings from coupons:", 1, kGreen, -1},
    {1, false, 12, "Total savings from all:", 14, kGreen, 2},
    {2, false, 5, "Number of products purchased:", 5, kBlack, -1},
    {2, false, 6, "Number of rebate payments received:", 6, kBlack, -1},
    {2, false, 7, "Number of rebates pending:", 7, kBlack, -1},
    {2, false, 8, "Number of followups sent:", 8, kBlack, -1},
    {2, false, 9, "Number of rejections:", 9, kBlack, -1},
    {2, false, 10, "Total value of rebates rejected:", 10, kBlack, -1},
}};

QFont ArialFont(int pointSize, bool bold) {
    QFont font;
    // Liberation Sans is Arial's metric twin where Arial itself isn't installed.
    font.setFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans")});
    font.setPointSize(pointSize);
    font.setBold(bold);
    return font;
}

void SetTextColour(QWidget* widget, QRgb colour) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, colour);
    widget->setPalette(palette);
}

QString Money(Currency value) {
    return FormatCurrency(QVariant::fromValue(value));
}
} // namespace

StatisticsPage::StatisticsPage(QWidget* parent) : QWidget(parent) {
    mSheet = new QWidget(this);
    mSheet->setObjectName(QStringLiteral("picLVBack_9"));
    mSheet->setAutoFillBackground(true);
    // The sheet is white under any desktop theme, so the text on it is dark under any theme.
    QPalette white = mSheet->palette();
    white.setColor(QPalette::Window, Qt::white);
    white.setColor(QPalette::WindowText, Qt::black);
    white.setColor(QPalette::Text, Qt::black);
    mSheet->setPalette(white);
    mContent = new QWidget(mSheet);

    mScroll = new QScrollBar(Qt::Vertical, this);
    mScroll->setObjectName(QStringLiteral("VScroll1"));
    mScroll->setAccessibleName(QStringLiteral("Statistics"));
    mScroll->setFixedWidth(style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    mScroll->hide();
    connect(mScroll, &QScrollBar::valueChanged, this, &StatisticsPage::VScroll1_Change);

    BuildSheet();
}

void StatisticsPage::BuildSheet() {
    const QFont headerFont = ArialFont(12, true);
    const QFont captionFont = ArialFont(10, false);
    const QFont totalFont = ArialFont(10, true);
    const QFontMetrics captionMetrics(captionFont);
    const QFontMetrics totalMetrics(totalFont);
    const int rowHeight = std::max(totalMetrics.height(), captionMetrics.height()) + 6;

    int captionWidth = 0;
    for (const RowDesign& row : kRows) {
        const QFontMetrics& metrics = row.line >= 0 ? totalMetrics : captionMetrics;
        captionWidth =
            std::max(captionWidth, metrics.horizontalAdvance(QString::fromLatin1(row.caption)));
    }
    captionWidth += 8;
    const int figureLeft = kCaptionLeft + captionWidth + kColumnGap;
    mFigureLeft = figureLeft;
    const int figureWidth = totalMetrics.horizontalAdvance(QStringLiteral("($99,999,999.00)")) + 8;

    const auto label = [this](const QString& name, const QString& text, const QFont& font) {
        auto* l = new QLabel(text, mContent);
        l->setObjectName(name);
        l->setFont(font);
        return l;
    };

    int y = kMargin;
    for (size_t g = 0; g < kGroups.size(); ++g) {
        const GroupDesign& group = kGroups[g];
        auto* picture = new QLabel(mContent);
        picture->setObjectName(QStringLiteral("imgExpenditures_%1").arg(g));
        picture->setPixmap(ImageList::Render(
            ImageList::ResourceFor(QString::fromLatin1(group.picture)), kPictureSize));
        picture->setGeometry(kMargin, y, kPictureSize, kPictureSize);
        mPictures[g] = picture;

        const QFontMetrics headerMetrics(headerFont);
        QLabel* header = label(QStringLiteral("lblStatHeaders_%1").arg(group.header),
                               QString::fromLatin1(group.caption), headerFont);
        header->setGeometry(kHeaderLeft, y + (kPictureSize - headerMetrics.height()) / 2,
                            figureLeft + figureWidth - kHeaderLeft, headerMetrics.height());
        mHeaders[static_cast<size_t>(group.header)] = header;
        y += kPictureSize + 6;

        for (const RowDesign& row : kRows) {
            if (row.group != static_cast<int>(g))
                continue;
            const bool total = row.line >= 0;
            if (total) {
                auto* line = new QFrame(mContent);
                line->setObjectName(QStringLiteral("Line1_%1").arg(row.line));
                line->setFrameShape(QFrame::HLine);
                line->setFrameShadow(QFrame::Plain);
                SetTextColour(line, kBlack);
                line->setGeometry(figureLeft, y, figureWidth, 1);
                mLines[static_cast<size_t>(row.line)] = line;
                y += 4;
            }
            const QString caption = QString::fromLatin1(row.caption);
            const QString name = row.header ? QStringLiteral("lblStatHeaders_%1").arg(row.label)
                                            : QStringLiteral("lblStats_%1").arg(row.label);
            QLabel* captionLabel = label(name, caption, total ? totalFont : captionFont);
            captionLabel->setGeometry(kCaptionLeft, y, captionWidth, rowHeight);
            if (row.header)
                mHeaders[static_cast<size_t>(row.label)] = captionLabel;
            else
                mCaptions[static_cast<size_t>(row.label)] = captionLabel;

            // The design caption of every figure; each visit to the page writes over it.
            QLabel* figure = label(QStringLiteral("lblStatFigures_%1").arg(row.figure),
                                   QStringLiteral("Label1"), total ? totalFont : captionFont);
            figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            figure->setGeometry(figureLeft, y, figureWidth, rowHeight);
            SetTextColour(figure, row.colour);
            // A screen reader names each figure after its caption.
            QString accessible = caption;
            if (accessible.endsWith(QLatin1Char(':')))
                accessible.chop(1);
            figure->setAccessibleName(accessible);
            mFigures[static_cast<size_t>(row.figure)] = figure;
            y += rowHeight;
        }
        y += kGroupGap;
    }

    const int lowest = lblStats(10)->geometry().bottom() + 1;
    mContent->setGeometry(0, 0, figureLeft + figureWidth + kMargin, lowest + kMargin);
    mSheetHeight = std::max(lowest + kMargin, 2 * (lowest - kSmallestPage));
    mSheet->setGeometry(0, 0, mContent->width(), mSheetHeight);
}

// The figure column is designed for sums below a hundred million; a larger figure widens the
// column rather than losing its leading digits.
void StatisticsPage::FitFigureColumn() {
    int widest = 0;
    for (const QLabel* figure : mFigures)
        widest = std::max(widest, figure->fontMetrics().horizontalAdvance(figure->text()) + 8);
    if (widest <= mFigures[0]->width())
        return;
    for (QLabel* figure : mFigures)
        figure->resize(widest, figure->height());
    for (QFrame* line : mLines)
        line->resize(widest, line->height());
    for (QLabel* header : mHeaders)
        if (header->x() == kHeaderLeft)
            header->resize(mFigureLeft + widest - kHeaderLeft, header->height());
    mContent->resize(mFigureLeft + widest + kMargin, mContent->height());
    PlaceSheet(mSheet->y());
}

void StatisticsPage::SetFigure(int index, const QString& text) {
    lblStatFigures(index)->setText(text);
    lblStatFigures(index)->setAccessibleDescription(text);
}

void StatisticsPage::UpdateStatistics() {
    clsRebateStats stats;
    const BusyState busy(QStringLiteral("Gathering stats..."));
    stats.Init();

    SetFigure(0, Money(stats.TotalSpent()));
    SetFigure(1, Money(stats.TotalCoupons()));
    SetFigure(2, Money(stats.TotalPostage()));
    SetFigure(3, Money(stats.TotalFollowupPostage()));
    SetFigure(4, Money(stats.TotalReceived()));
    SetFigure(5, QString::number(stats.CountPurchases()));
    SetFigure(6, QString::number(stats.CountReceived()));
    SetFigure(7, QString::number(stats.CountPending()));
    SetFigure(8, QString::number(stats.CountFollowups()));
    SetFigure(9, QString::number(stats.CountRejections()));
    SetFigure(10, Money(stats.TotalRejected()));
    SetFigure(11, Money(stats.TotalOutstanding()));

    // The totals add what the page shows: each caption is read back as money and the sum is
    // exact. Figure 14 takes figure 13, so the order is fixed.
    const auto sumOf = [this](std::initializer_list<int> figures) {
        Currency sum;
        for (int figure : figures)
            sum += CCur(lblStatFigures(figure)->text());
        return Money(sum);
    };
    SetFigure(12, sumOf({3, 2, 0}));
    SetFigure(13, sumOf({11, 4}));
    SetFigure(14, sumOf({1, 13}));
    FitFigureColumn();
}

void StatisticsPage::VScroll1_Change(int value) {
    PlaceSheet(-qRound(value / double(kTwipsPerPixel)));
}

// The sheet as wide as the page leaves beside the scroll bar, shown or not. Its designed
// height is all the scroll rule knows of; on screen it reaches at least to the page's foot.
void StatisticsPage::PlaceSheet(int top) {
    mSheet->setGeometry(0, top, width() - mScroll->width(), std::max(mSheetHeight, height() - top));
    mContent->move(std::max(0, (mSheet->width() - mContent->width()) / 2), 0);
}

void StatisticsPage::FitToPage() {
    PlaceSheet(mSheet->y());
    mScroll->resize(mScroll->width(), height());
    mScroll->move(width() - mScroll->width(), 0);

    // The test is strictly greater: a page exactly as tall as the rows needs no bar. The
    // sheet's position isn't reset when the bar goes, so a scrolled sheet stays scrolled.
    const QLabel* lowest = lblStats(10);
    if (lowest->y() + lowest->height() > height()) {
        if (mScroll->isHidden())
            mScroll->show();
        mScroll->move(width() - mScroll->width(), 0);
        const int sheetHeight = mSheetHeight * kTwipsPerPixel;
        const int half = qRound(sheetHeight * 0.5);
        mScroll->setMaximum(half);
        mScroll->setPageStep(half);
        mScroll->setSingleStep(qRound(sheetHeight * 0.1));
    } else {
        mScroll->hide();
    }
    mScroll->raise();
}

// The wheel moves the sheet wherever the pointer is on the page.
void StatisticsPage::wheelEvent(QWheelEvent* event) {
    if (!mScroll->isHidden())
        QCoreApplication::sendEvent(mScroll, event);
}

void StatisticsPage::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    FitToPage();
}
