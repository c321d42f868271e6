#include "switchboard/frmSwitchboard.h"
#include "switchboard/DeadlinePanel.h"

#include "app/AppSettings.h"
#include "app/Notifier.h"
#include "app/cLogErr.h"
#include "app/clsRebate.h"
#include "common/core/Clock.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/KeyCodes.h"
#include "common/core/Regional.h"
#include "common/core/Twips.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "common/ui/Forms.h"
#include "common/ui/Help.h"
#include "common/ui/ListView.h"
#include "common/ui/MainFrame.h"
#include "common/ui/TabStrip.h"
#include "common/ui/Toolbar.h"
#include "common/ui/modListUtilities.h"
#include "data/Database.h"
#include "data/RebateQueries.h"
#include "data/RebateStatus.h"
#include "data/ScannedRow.h"

#include <QStringBuilder>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int kMinWidth = 8000; // twips
constexpr int kMinHeight = 5000;
constexpr int kDesignSize = 6500;

const QString kSource = QStringLiteral("frmSwitchboard");
const QString kReady = QStringLiteral("Ready...");

frmSwitchboard* gInstance = nullptr;

// The tabs: key and caption, tag (help topic), tool tip.
struct TabDesign {
    const char* caption;
    const char* tag;
    const char* toolTip;
};
constexpr std::array<TabDesign, 10> kTabs{{
    {"New", "1079", "Create a new rebate record"},
    {"Unsent", "", "View rebates requests you have not yet mailed"},
    {"Pending", "1083", "View rebates which are not yet due payment"},
    {"Overdue", "1081", "View rebates for which you have not received payment"},
    {"Paid", "1082", "View paid rebates"},
    {"Active Followups", "", "View rebates for which you have generated a follow up letter"},
    {"Rejected", "", "View rebates which were rejected"},
    {"All", "1080", "View all rebates"},
    {"Statistics", "1084", "View statistics"},
    {"Savings", "", "View savings by month and by state"},
}};

const QStringList kListIcons{QStringLiteral("New"),     QStringLiteral("Unsent"),
                             QStringLiteral("Pending"), QStringLiteral("Overdue"),
                             QStringLiteral("Paid"),    QStringLiteral("Followup"),
                             QStringLiteral("Rejected")};

// The main window's toolbar button, when the main window and the button are there.
ToolbarButton* MainToolbarButton(const QString& key) {
    MainFrame* main = MainFrame::Instance();
    Toolbar* toolbar = main ? main->MainToolbar() : nullptr;
    return toolbar && toolbar->HasButton(key) ? &toolbar->Buttons(key) : nullptr;
}

void SetEnabledIfDifferent(QAction* action, bool enabled) {
    if (action->isEnabled() != enabled)
        action->setEnabled(enabled);
}

// The settings key under which each list's view is kept.
constexpr std::array<std::pair<ListView * frmSwitchboard::*, const SettingSpec*>, 8> kViewKeys{{
    {&frmSwitchboard::lvNew, &Setting::ViewNew},
    {&frmSwitchboard::lvAll, &Setting::ViewAll},
    {&frmSwitchboard::lvFollowup, &Setting::ViewFollowup},
    {&frmSwitchboard::lvOverdue, &Setting::ViewOverdue},
    {&frmSwitchboard::lvPaid, &Setting::ViewPaid},
    {&frmSwitchboard::lvPending, &Setting::ViewPending},
    {&frmSwitchboard::lvRejected, &Setting::ViewRejected},
    {&frmSwitchboard::lvUnsent, &Setting::ViewUnsent},
}};

// The toolbar buttons that work on any list page; "Delete" needs a record besides.
constexpr std::array<const char*, 9> kListButtons{"New", "Large", "Small", "List",       "Details",
                                                  "AZ",  "ZA",    "Find",  "Arrange All"};

// The menu entries of a list page.
std::array<QAction*, 14> ListMenus(const frmSwitchboard& form) {
    return {form.mnuArrangeAll,    form.mnuDeleteRebate,    form.mnuDetails,
            form.mnuEditRebate,    form.mnuInvertSelection, form.mnuLargeIcons,
            form.mnuList,          form.mnuRefresh,         form.mnuSelectAll,
            form.mnuSmallIcons,    form.mnuSortAscending,   form.mnuSortDescending,
            form.mnuPrintSelected, form.mnuPrintPreview};
}

// The commands on a selected record: the menus, their popup twins and the main window's
// Print button follow.
void SetRecordCommands(frmSwitchboard& form, bool enabled) {
    for (QAction* a :
         {form.mnuEditRebate, form.mnuDeleteRebate, form.mnuPrintSelected, form.mnuPrintPreview})
        SetEnabledIfDifferent(a, enabled);
    form.mnuPopupOpen->setEnabled(form.mnuEditRebate->isEnabled());
    form.mnuPopupDelete->setEnabled(form.mnuDeleteRebate->isEnabled());
    form.mnuPopupPrint->setEnabled(form.mnuPrintSelected->isEnabled());
    if (ToolbarButton* print = MainToolbarButton(QStringLiteral("Print")))
        print->SetEnabled(form.mnuPrintSelected->isEnabled());
}

// Selects the record's row of the list, and only it, as the current row too (so that Enter
// opens it); true when the list holds the record. `onRow` runs when the row is found, before
// it is scrolled to.
bool SelectRecordRow(ListView* lv, const QString& rebateID,
                     const std::function<void()>& onRow = {}) {
    ListItem* item = lv->FindByKey(rebateID);
    if (item && onRow)
        onRow();
    lv->SelectOnly(item);
    if (item) {
        item->EnsureVisible();
        lv->SetSelectedItem(item);
    }
    return item != nullptr;
}

} // namespace

// The product names and dates of one list load, each kept once: many records share them.
class SharedTexts {
public:
    QString Of(QStringView text) {
        const std::u16string_view key(text.utf16(), static_cast<size_t>(text.size()));
        if (const auto found = mTexts.find(key); found != mTexts.end())
            return found->second;
        // The key views the characters of the text it maps to, which never move.
        const QString kept = text.toString();
        mTexts.emplace(
            std::u16string_view(reinterpret_cast<const char16_t*>(kept.constData()), key.size()),
            kept);
        return kept;
    }
    QString Of(QLatin1StringView text) {
        // Short enough to be held without an allocation of its own.
        std::string key(text.data(), static_cast<size_t>(text.size()));
        if (const auto found = mDates.find(key); found != mDates.end())
            return found->second;
        return mDates.emplace(std::move(key), QString(text)).first->second;
    }

private:
    std::unordered_map<std::u16string_view, QString> mTexts;
    std::unordered_map<std::string, QString> mDates;
};

// What a record's row shows. Worked out once per record: both of its lists share the texts.
struct RebateRowTexts {
    // The texts of a record with this status; the product and date from `shared` when given.
    // A date stored as text that is no date (2024-02-30, 'tomorrow') raises 13.
    RebateRowTexts(const ScannedRow& row, const QString& status, SharedTexts* shared = nullptr) {
        using namespace RebateQueries::ListColumn;
        // Column 3 takes its date by the status, not by the list, so lvAll's "Date Sent"
        // column can show a due, payment or followup date.
        int dateColumn = DateSent;
        if (status == QLatin1String("Overdue"))
            dateColumn = DateDue;
        else if (status == QLatin1String("Paid"))
            dateColumn = DateReceived;
        else if (status == QLatin1String("Followup"))
            dateColumn = FollowupDate;
        bool plain = true; // every value read directly: no general conversion needed
        std::array<QLatin1StringView, 4> dates;
        for (int column : {DateSent, DateDue, DateReceived, FollowupDate}) {
            QLatin1StringView& date = dates[static_cast<size_t>(column - DateSent)];
            std::int64_t day = 0;
            if (row.DateText(column, date) || (row.Number(column, day) && day == ScannedRow::kNull))
                continue;
            const QVariant value = row.Fields(column);
            if (value.metaType().id() == QMetaType::QString && !value.toString().isEmpty())
                throw VbError(VbError::TypeMismatch);
            plain = false;
        }
        QStringView name;
        QStringView productName;
        QStringView key;
        plain = plain && row.Text(RebateName, name) && row.Text(ProductName, productName) &&
                row.Text(RebateID, key);
        if (!plain) {
            *this = Converted(row, dateColumn);
            return;
        }
        const QLatin1StringView sent = dates[0];
        if (sent.isEmpty()) {
            text = NoDatePrefix() % name;
        } else {
            // The date as its plain text (m/d/yyyy) from the stored yyyy-mm-dd.
            const auto number = [](QLatin1StringView digits) {
                return QLatin1StringView(digits.front() == QLatin1Char('0') ? digits.sliced(1)
                                                                            : digits);
            };
            text = number(sent.sliced(5, 2)) % QLatin1Char('/') % number(sent.sliced(8, 2)) %
                   QLatin1Char('/') % sent.sliced(0, 4) % QLatin1String(": ") % name;
        }
        product = shared ? shared->Of(productName) : productName.toString();
        const QLatin1StringView shown = dates[static_cast<size_t>(dateColumn - DateSent)];
        date = shown.isEmpty() ? NoDate() : (shared ? shared->Of(shown) : QString(shown));
        rebateID = key.toString();
    }
    // The row of a record whose values can't all be read: each shown as stored, the date
    // column the Date Sent.
    static RebateRowTexts AsStored(const ScannedRow& row) {
        using namespace RebateQueries::ListColumn;
        const auto plain = [&row](int column) {
            const QVariant value = row.Fields(column);
            return IsBlank(value) ? QString() : value.toString();
        };
        RebateRowTexts texts;
        const QString sent = plain(DateSent);
        texts.text = (sent.isEmpty() ? QStringLiteral("No date") : sent) + QStringLiteral(": ") +
                     plain(RebateName);
        texts.product = plain(ProductName);
        texts.date = sent.isEmpty() ? NoDate() : sent;
        texts.rebateID = plain(RebateID);
        return texts;
    }
    QString text;
    QString product;
    QString date; // yyyy-mm-dd, so that the text sort of the column is the order of dates
    QString rebateID;

private:
    RebateRowTexts() = default;
    static const QString& NoDate() {
        static const QString text = QStringLiteral("No Date");
        return text;
    }
    static QLatin1StringView NoDatePrefix() { return QLatin1StringView("No date: "); }
    // The texts through the general conversions, for values stored as another type than
    // their column's (a number in a date or text column).
    static RebateRowTexts Converted(const ScannedRow& row, int dateColumn) {
        using namespace RebateQueries::ListColumn;
        RebateRowTexts texts;
        // The date of the row's text is the value's plain text, unformatted.
        const QVariant dateSent = row.Fields(DateSent);
        const QString name = CStr(NZ(row.Fields(RebateName)));
        texts.text = IsBlank(dateSent) ? NoDatePrefix() + name
                                       : CStr(dateSent) + QStringLiteral(": ") + name;
        texts.product = CStr(NZ(row.Fields(ProductName)));
        const QVariant value = row.Fields(dateColumn);
        texts.date = IsBlank(value) ? NoDate() : Format(value, QStringLiteral("yyyy-mm-dd"));
        texts.rebateID = CStr(NZ(row.Fields(RebateID)));
        return texts;
    }
};

frmSwitchboard* frmSwitchboard::Instance() {
    return gInstance;
}

frmSwitchboard& frmSwitchboard::Load() {
    if (!gInstance)
        new frmSwitchboard();
    return *gInstance;
}

void frmSwitchboard::RegisterFactory() {
    Forms::SetFactory(QStringLiteral("frmSwitchboard"), [] { return &Load(); });
}

frmSwitchboard::frmSwitchboard(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("frmSwitchboard"));
    setWindowTitle(QStringLiteral("Switchboard"));
    setAttribute(Qt::WA_DeleteOnClose);
    gInstance = this;
    Forms::Register(this);
    // What the rebate form and the maintenance dialogs do to the records reaches the lists
    // at once, inside their own calls.
    Notifier& notifier = Notifier::Instance();
    connect(&notifier, &Notifier::RecordSaved, this, &frmSwitchboard::RecordSaved);
    connect(&notifier, &Notifier::RecordDeleted, this, &frmSwitchboard::DeleteIcons);
    connect(&notifier, &Notifier::RecordFormClosed, this, &frmSwitchboard::tbsSwitch_Click);
    connect(&notifier, &Notifier::ListsStale, this, &frmSwitchboard::mnuRefresh_Click);

    ActiveXImageList.Add(kListIcons);
    xImageListSmall.Add(kListIcons);
    xImageListSmall.Add(QStringList{"Delete", "Large", "Small", "List", "Details", "Arrange All",
                                    "AZ", "ZA", "Find"});

    BuildMenus();
    BuildToolbar();

    picSwitchboard = new QLabel(this);
    picSwitchboard->setObjectName(QStringLiteral("picSwitchboard"));
    // The banner picture, on its own dark blue to the window's right edge; narrower windows
    // get it scaled down (see eventFilter).
    FitBanner();
    picSwitchboard->setAutoFillBackground(true);
    QPalette bannerPalette = picSwitchboard->palette();
    bannerPalette.setColor(QPalette::Window, QColor(0x1F, 0x3A, 0x5F));
    picSwitchboard->setPalette(bannerPalette);
    picSwitchboard->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    picSwitchboard->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    picSwitchboard->setToolTip(QStringLiteral(
        "Vantry! Vantry! is brought to you by Thrift Courier. Click here to visit their web site "
        "for information on freebies, coupons, rebates, refunds, and more..."));
    picSwitchboard->setCursor(Qt::PointingHandCursor);
    picSwitchboard->setAccessibleName(QStringLiteral("Thrift Courier"));
    picSwitchboard->installEventFilter(this);

    tbsSwitch = new TabStrip(this);
    tbsSwitch->setObjectName(QStringLiteral("tbsSwitch"));
    for (size_t i = 0; i < kTabs.size(); ++i) {
        const QString caption = QString::fromLatin1(kTabs[i].caption);
        tbsSwitch->Tabs().Add(caption, caption, QString::fromLatin1(kTabs[i].tag),
                              QString::fromLatin1(kTabs[i].toolTip));
        mPages[i] = new QWidget;
        mPages[i]->setObjectName(QStringLiteral("picLVBack_%1").arg(i));
        // The tab's tag is the help topic of its page: F1 on a list opens it.
        if (const int topic = QString::fromLatin1(kTabs[i].tag).toInt(); topic > 0)
            mPages[i]->setProperty(Help::kContextProperty, topic);
        auto* pageLayout = new QVBoxLayout(mPages[i]);
        pageLayout->setContentsMargins(0, 0, 0, 0);
        tbsSwitch->AddPage(mPages[i]);
        mPages[i]->hide();
    }
    // picLVBack_9 names the statistics sheet inside picLVBack(8).
    mPages[9]->setObjectName(QStringLiteral("picSavings"));
    BuildLists();
    BuildStatisticsAndFind();

    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 0, 6, 0);
    top->addWidget(xToolbar);
    top->addStretch(1);
    top->addWidget(txtTCRLink);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 4);
    layout->setSpacing(4);
    layout->addLayout(top);
    layout->addWidget(picSwitchboard);
    layout->addWidget(tbsSwitch, 1);
    layout->addWidget(mDeadlines);

    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setSingleShot(true);
    Timer1->setInterval(1);
    connect(Timer1, &QTimer::timeout, this, &frmSwitchboard::Timer1_Timer);

    connect(tbsSwitch, &TabStrip::Click, this, &frmSwitchboard::tbsSwitch_Click);
    auto* nextTab = new QAction(this);
    nextTab->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab));
    nextTab->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(nextTab, &QAction::triggered, this, &frmSwitchboard::NextTab);
    addAction(nextTab);

    // The record object of the rebate form reads its key from the selected row.
    clsRebate::SetSelectedRebateIDSource([] {
        const frmSwitchboard* board = Instance();
        ListView* lv = board ? board->GetCurrentLV() : nullptr;
        ListItem* item = lv ? lv->SelectedItem() : nullptr;
        if (!item)
            throw VbError(VbError::ObjectNotSet);
        return item->SubItems(3);
    });

    Form_Load();
    Timer1->start();
}

frmSwitchboard::~frmSwitchboard() {
    if (gInstance == this)
        gInstance = nullptr;
    clsRebate::SetSelectedRebateIDSource(nullptr);
}

QList<QMenu*> frmSwitchboard::Menus() const {
    return {mnuFile, mnuEdit, mnuView, mnuWindow, mnuHelp};
}

// --- building the form --------------------------------------------------------------------

void frmSwitchboard::BuildMenus() {
    const auto menu = [this](const char* name, const char* caption, int help) {
        auto* m = new QMenu(QString::fromLatin1(caption), this);
        m->setObjectName(QString::fromLatin1(name));
        m->menuAction()->setObjectName(QString::fromLatin1(name));
        m->menuAction()->setProperty(Help::kContextProperty, help);
        return m;
    };
    const auto item = [this](QMenu* parent, const char* name, const char* caption, int help,
                             const QKeySequence& shortcut = {}) {
        QAction* a = parent->addAction(QString::fromLatin1(caption));
        a->setObjectName(QString::fromLatin1(name));
        if (help)
            a->setProperty(Help::kContextProperty, help);
        if (!shortcut.isEmpty()) {
            a->setShortcut(shortcut);
            // The menus live on the main window's bar only while this window is active;
            // the form carries the actions so that their keys work in it either way.
            a->setShortcutContext(Qt::WidgetWithChildrenShortcut);
            addAction(a);
        }
        return a;
    };
    const auto separator = [](QMenu* parent, const char* name) {
        parent->addSeparator()->setObjectName(QString::fromLatin1(name));
    };

    mnuFile = menu("mnuFile", "&File", 2500);
    mnuNewRebate = item(mnuFile, "mnuNewRebate", "&New Rebate...", 5002, Qt::CTRL | Qt::Key_N);
    separator(mnuFile, "mnuSepQuart");
    mnuPrintPreview =
        item(mnuFile, "mnuPrintPreview", "&View Selected Rebates in Word Processor", 7001);
    mnuPrintSelected = item(mnuFile, "mnuPrintSelected", "Print &Selected Rebates...", 7000);
    separator(mnuFile, "mnuSepQHalf");
    mnuPrintPrevewStats =
        item(mnuFile, "mnuPrintPrevewStats", "View Statistics in &Word Processor", 7001);
    mnuPrintStats =
        item(mnuFile, "mnuPrintStats", "&Print Statistics...", 7000, Qt::CTRL | Qt::Key_P);
    separator(mnuFile, "mnuSepCsv");
    mnuExportSelected =
        item(mnuFile, "mnuExportSelected", "&Export Selected Rebates to CSV...", 2500);
    mnuExportList = item(mnuFile, "mnuExportList", "Export &List to CSV...", 2500);
    mnuImport = item(mnuFile, "mnuImport", "&Import Rebates from CSV...", 2500);
    separator(mnuFile, "mnuSepRestore");
    mnuRestore = item(mnuFile, "mnuRestore", "Restore from &Backup...", 2500);
    separator(mnuFile, "mnuSepHalf");
    mnuExit = item(mnuFile, "mnuExit", "E&xit", 2500, Qt::CTRL | Qt::Key_Q);

    mnuEdit = menu("mnuEdit", "&Edit", 2500);
    mnuEditRebate =
        item(mnuEdit, "mnuEditRebate", "Edit &Rebate...", 5502, Qt::CTRL | Qt::Key_Insert);
    separator(mnuEdit, "mnuSep3q");
    mnuDeleteRebate = item(mnuEdit, "mnuDeleteRebate", "&Delete Rebate(s)", 5902, Qt::Key_Delete);
    separator(mnuEdit, "mnuSep0");
    mnuFind = item(mnuEdit, "mnuFind", "&Find...", 2504, Qt::CTRL | Qt::Key_F);
    separator(mnuEdit, "mnuSep1");
    mnuSelectAll = item(mnuEdit, "mnuSelectAll", "Select &All", 2500, Qt::CTRL | Qt::Key_A);
    mnuInvertSelection =
        item(mnuEdit, "mnuInvertSelection", "&Invert Selection", 2500, Qt::CTRL | Qt::Key_I);
    mnuEditRebate->setEnabled(false);
    mnuDeleteRebate->setEnabled(false);

    mnuView = menu("mnuView", "&View", 2500);
    mnuTCR = item(mnuView, "mnuTCR", "Thrift Courier on the Web...", 0);
    separator(mnuView, "mnuSepp5");
    mnuStatusBar = item(mnuView, "mnuStatusBar", "Status &Bar", 2507);
    mnuToolbar = item(mnuView, "mnuToolbar", "&Toolbar", 3001);
    for (QAction* a : {mnuStatusBar, mnuToolbar}) {
        a->setCheckable(true);
        a->setChecked(true);
    }
    separator(mnuView, "mnuSep2");
    mnuLargeIcons = item(mnuView, "mnuLargeIcons", "Large &Icons", 4700);
    mnuSmallIcons = item(mnuView, "mnuSmallIcons", "&Small Icons", 4700);
    mnuList = item(mnuView, "mnuList", "&List", 4700);
    mnuDetails = item(mnuView, "mnuDetails", "&Details", 4700);
    separator(mnuView, "mnuSep3");
    mnuSortAscending = item(mnuView, "mnuSortAscending", "Sort &Ascending", 4800);
    mnuSortDescending = item(mnuView, "mnuSortDescending", "Sort &Descending", 4800);
    mnuArrangeAll = item(mnuView, "mnuArrangeAll", "Arra&nge All", 4800);
    separator(mnuView, "mnuSep4");
    mnuRefresh = item(mnuView, "mnuRefresh", "&Refresh", 2500, Qt::Key_F5);
    separator(mnuView, "mnuSep5");
    mnuOptions = item(mnuView, "mnuOptions", "&Options...", 7500);

    mnuWindow = menu("mnuWindow", "&Window", 2500);

    mnuHelp = menu("mnuHelp", "&Help", 2500);
    mnuIntro = item(mnuHelp, "mnuIntro", "&Intoducing Vantry! Vantry!", 1000);
    mnuContents = item(mnuHelp, "mnuContents", "&Contents...", 2500);
    mnuSearchForHelpOn = item(mnuHelp, "mnuSearchForHelpOn", "&Search For Help On...", 2500);
    separator(mnuHelp, "mnuSep6");
    mnuAbout = item(mnuHelp, "mnuAbout", "&About Vantry! Vantry!...", 2502);
    mnuSuggest = item(mnuHelp, "mnuSuggest", "Su&bmit a Suggestion...", 0);
    separator(mnuHelp, "mnuSepp3");
    mnuTipOfTheDay = item(mnuHelp, "mnuTipOfTheDay", "Show &Tip of the Day...", 2503);
    separator(mnuHelp, "mnuSep7");
    mnuTCR2 = item(mnuHelp, "mnuTCR2", "&Thrift Courier on the web...", 0);

    mnuPopup = menu("mnuPopup", "Popup", 0);
    mnuPopupOpen = item(mnuPopup, "mnuPopupOpen", "&Open...", 0);
    separator(mnuPopup, "mnuSep9");
    mnuPopupPrint = item(mnuPopup, "mnuPopupPrint", "&Print...", 0);
    separator(mnuPopup, "mnuSep9half");
    mnuPopupDelete = item(mnuPopup, "mnuPopupDelete", "&Delete", 0);
    separator(mnuPopup, "mnuSep10");
    mnuPopupFind = item(mnuPopup, "mnuPopupFind", "&Find...", 0);
    separator(mnuPopup, "mnuSep8");
    mnuPopupSelectAll = item(mnuPopup, "mnuPopupSelectAll", "&Select All", 0);
    mnuPopupInvertSelection = item(mnuPopup, "mnuPopupInvertSelection", "&Invert Selection", 0);
    separator(mnuPopup, "mnuSep11");
    mnuPopupView = menu("mnuPopupView", "&View", 0);
    mnuPopup->addMenu(mnuPopupView);
    mnuPopupLargeIcons = item(mnuPopupView, "mnuPopupLargeIcons", "&Large Icons", 0);
    mnuPopupSmallIcons = item(mnuPopupView, "mnuPopupSmallIcons", "&Small Icons", 0);
    mnuPopupList = item(mnuPopupView, "mnuPopupList", "&List", 0);
    mnuPopupDetails = item(mnuPopupView, "mnuPopupDetails", "&Details", 0);
    separator(mnuPopup, "mnuSep12");
    mnuPopupAscending = item(mnuPopup, "mnuPopupAscending", "Sort &Ascending", 0);
    mnuPopupDescending = item(mnuPopup, "mnuPopupDescending", "Sort D&escending", 0);
    mnuPopupArrangeAll = item(mnuPopup, "mnuPopupArrangeAll", "Arra&nge All", 0);
    for (QAction* a : {mnuLargeIcons, mnuSmallIcons, mnuList, mnuDetails, mnuPopupLargeIcons,
                       mnuPopupSmallIcons, mnuPopupList, mnuPopupDetails})
        a->setCheckable(true);

    // New, Edit and Open belong to the rebate form; Find to the search window; Options,
    // About and the tip to their dialogs: each is connected where it is built.
    connect(mnuFile, &QMenu::aboutToShow, this, &frmSwitchboard::mnuFile_Click);
    for (const auto& [entry, command] :
         {std::pair{mnuOptions, MainFrame::Command::Options},
          std::pair{mnuRestore, MainFrame::Command::RestoreFromBackup},
          std::pair{mnuAbout, MainFrame::Command::About},
          std::pair{mnuTipOfTheDay, MainFrame::Command::TipOfTheDay}})
        connect(entry, &QAction::triggered, this, [command] {
            if (MainFrame* main = MainFrame::Instance())
                main->Run(command);
        });
    connect(mnuEdit, &QMenu::aboutToShow, this, &frmSwitchboard::mnuEdit_Click);
    AttachWindowList(mnuWindow, [this] {
        auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
        return frame ? frame->mdiArea() : nullptr;
    });
    const auto on = [this](QAction* a, void (frmSwitchboard::*slot)()) {
        connect(a, &QAction::triggered, this, slot);
    };
    on(mnuPrintSelected, &frmSwitchboard::mnuPrintSelected_Click);
    on(mnuExportSelected, &frmSwitchboard::mnuExportSelected_Click);
    on(mnuExportList, &frmSwitchboard::mnuExportList_Click);
    on(mnuImport, &frmSwitchboard::mnuImport_Click);
    on(mnuPrintStats, &frmSwitchboard::mnuPrintStats_Click);
    on(mnuPrintPreview, &frmSwitchboard::mnuPrintPreview_Click);
    on(mnuPrintPrevewStats, &frmSwitchboard::mnuPrintPrevewStats_Click);
    on(mnuExit, &frmSwitchboard::mnuExit_Click);
    on(mnuDeleteRebate, &frmSwitchboard::mnuDeleteRebate_Click);
    on(mnuSelectAll, &frmSwitchboard::mnuSelectAll_Click);
    on(mnuInvertSelection, &frmSwitchboard::mnuInvertSelection_Click);
    on(mnuTCR, &frmSwitchboard::mnuTCR_Click);
    on(mnuStatusBar, &frmSwitchboard::mnuStatusBar_Click);
    on(mnuToolbar, &frmSwitchboard::mnuToolbar_Click);
    on(mnuLargeIcons, &frmSwitchboard::mnuLargeIcons_Click);
    on(mnuSmallIcons, &frmSwitchboard::mnuSmallIcons_Click);
    on(mnuList, &frmSwitchboard::mnuList_Click);
    on(mnuDetails, &frmSwitchboard::mnuDetails_Click);
    on(mnuSortAscending, &frmSwitchboard::mnuSortAscending_Click);
    on(mnuSortDescending, &frmSwitchboard::mnuSortDescending_Click);
    on(mnuArrangeAll, &frmSwitchboard::mnuArrangeAll_Click);
    on(mnuRefresh, &frmSwitchboard::mnuRefresh_Click);
    on(mnuIntro, &frmSwitchboard::mnuIntro_Click);
    on(mnuContents, &frmSwitchboard::mnuContents_Click);
    on(mnuSearchForHelpOn, &frmSwitchboard::mnuSearchForHelpOn_Click);
    on(mnuSuggest, &frmSwitchboard::mnuSuggest_Click);
    on(mnuTCR2, &frmSwitchboard::mnuTCR_Click);
    on(mnuNewRebate, &frmSwitchboard::mnuNewRebate_Click);
    on(mnuEditRebate, &frmSwitchboard::mnuEditRebate_Click);
    connect(mnuPopupOpen, &QAction::triggered, this, &frmSwitchboard::OpenRebate);
    on(mnuPopupPrint, &frmSwitchboard::mnuPrintSelected_Click);
    on(mnuPopupDelete, &frmSwitchboard::mnuDeleteRebate_Click);
    on(mnuPopupSelectAll, &frmSwitchboard::mnuSelectAll_Click);
    on(mnuPopupInvertSelection, &frmSwitchboard::mnuInvertSelection_Click);
    on(mnuPopupLargeIcons, &frmSwitchboard::mnuLargeIcons_Click);
    on(mnuPopupSmallIcons, &frmSwitchboard::mnuSmallIcons_Click);
    on(mnuPopupList, &frmSwitchboard::mnuList_Click);
    on(mnuPopupDetails, &frmSwitchboard::mnuDetails_Click);
    on(mnuPopupAscending, &frmSwitchboard::mnuSortAscending_Click);
    on(mnuPopupDescending, &frmSwitchboard::mnuSortDescending_Click);
    on(mnuPopupArrangeAll, &frmSwitchboard::mnuArrangeAll_Click);
}

void frmSwitchboard::BuildToolbar() {
    xToolbar = new Toolbar(this);
    xToolbar->setObjectName(QStringLiteral("xToolbar"));
    xToolbar->setAccessibleName(QStringLiteral("Switchboard Toolbar"));
    xToolbar->SetImageList(&xImageListSmall);
    const auto button = [this](const char* key, const char* toolTip,
                               ToolbarButton::Style style = ToolbarButton::Default) {
        const QString k = QString::fromLatin1(key);
        ToolbarButton& b = xToolbar->AddButton(k, QString::fromLatin1(toolTip),
                                               QString::fromLatin1(toolTip), k, style);
        return &b;
    };
    button("New", "Create a new rebate record");
    xToolbar->AddSeparator();
    button("Delete", "Delete Selected Item(s)");
    xToolbar->AddSeparator();
    button("Large", "Large Icons", ToolbarButton::Group);
    button("Small", "Small Icons", ToolbarButton::Group);
    button("List", "List Icons", ToolbarButton::Group);
    button("Details", "Details", ToolbarButton::Group);
    xToolbar->AddSeparator();
    button("Arrange All", "Arrange All Icons");
    xToolbar->AddSeparator();
    button("AZ", "Sort Ascending");
    button("ZA", "Sort Descending");
    xToolbar->AddSeparator();
    button("Find", "Find a Rebate");
    connect(xToolbar, &Toolbar::ButtonClick, this, &frmSwitchboard::xToolbar_ButtonClick);

    txtTCRLink = new QLabel(QStringLiteral("<a href=\"tcr\">Thrift Courier</a>"), this);
    txtTCRLink->setObjectName(QStringLiteral("txtTCRLink"));
    txtTCRLink->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    txtTCRLink->setAccessibleName(QStringLiteral("Thrift Courier"));
    connect(txtTCRLink, &QLabel::linkActivated, this, &frmSwitchboard::txtTCRLink_Click);
}

void frmSwitchboard::BuildLists() {
    const auto make = [this](ListView*& lv, const char* name, int page) {
        lv = new ListView(mPages[static_cast<size_t>(page)]);
        lv->setObjectName(QString::fromLatin1(name));
        lv->SetAccessibleName(QString::fromLatin1(kTabs[static_cast<size_t>(page)].caption));
        mPages[static_cast<size_t>(page)]->layout()->addWidget(lv);
    };
    make(lvNew, "lvNew", 0);
    make(lvUnsent, "lvUnsent", 1);
    make(lvPending, "lvPending", 2);
    make(lvOverdue, "lvOverdue", 3);
    make(lvPaid, "lvPaid", 4);
    make(lvFollowup, "lvFollowup", 5);
    make(lvRejected, "lvRejected", 6);
    make(lvAll, "lvAll", 7);

    lvNew->ColumnHeaders().Add(QStringLiteral("Item"), 3600);
    lvNew->ColumnHeaders().Add(QStringLiteral("Description"), 4200);
    const std::array<std::pair<ListView*, const char*>, 7> thirdColumn{{
        {lvUnsent, "Date Sent"},
        {lvPending, "Date Sent"},
        {lvOverdue, "Date Due"},
        {lvPaid, "Date Paid"},
        {lvFollowup, "Followup Date"},
        {lvRejected, "Date Sent"},
        {lvAll, "Date Sent"},
    }};
    for (const auto& [lv, header] : thirdColumn) {
        lv->ColumnHeaders().Add(QStringLiteral("Rebate"), 3600);
        lv->ColumnHeaders().Add(QStringLiteral("Product Purchased"), 2400);
        lv->ColumnHeaders().Add(QString::fromLatin1(header), 1500);
        lv->ColumnHeaders().Add(QStringLiteral("RebateID"), 0);
        lv->SetKeySubItem(3); // a saved record's rows are found by its RebateID
        lv->SetMultiSelect(true);
        connect(lv, &ListView::ItemClick, this, &frmSwitchboard::lv_ItemClick);
    }
    for (ListView* lv : AllLists()) {
        connect(lv, &ListView::DblClick, this, [this, lv] { lv_DblClick(lv); });
        connect(lv, &ListView::KeyPress, this,
                [this, lv](int& keyAscii) { lv_KeyPress(lv, keyAscii); });
        connect(lv, &ListView::MouseUp, this, &frmSwitchboard::lv_MouseUp);
        connect(lv, &ListView::ColumnClick, this, &frmSwitchboard::lv_ColumnClick);
    }
}

std::array<ListView*, 7> frmSwitchboard::RecordLists() const {
    return {lvUnsent, lvPending, lvOverdue, lvPaid, lvFollowup, lvRejected, lvAll};
}

std::array<ListView*, 8> frmSwitchboard::AllLists() const {
    return {lvNew, lvUnsent, lvPending, lvOverdue, lvPaid, lvFollowup, lvRejected, lvAll};
}

void frmSwitchboard::Form_Load() {
    const BusyState busy(QStringLiteral("Loading records..."));

    const auto large = [this](const QString& key) {
        return ActiveXImageList.Icon(key);
    };
    const auto small = [this](const QString& key) {
        return xImageListSmall.Icon(key);
    };
    for (ListView* lv : AllLists())
        lv->SetIcons(large, small);

    for (const auto& [list, setting] : kViewKeys)
        (this->*list)->SetView(ReadWhole(*setting));

    AddNewRebateIcon();
    PrepareLists();
    ShowCurrentPage();

    if (ListView* lv = GetCurrentLV()) {
        lv->ActiveView()->setFocus();
        SyncViewMenus(lv->View());
    }
    tbsSwitch_Click();
    ShowOverdueAtStart();
}

// Form_Load's placing of the window: the main window's client area is only known once the
// Switchboard stands in it.
void frmSwitchboard::PlaceWindow() {
    auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
    QMdiArea* area = frame ? frame->mdiArea() : nullptr;
    if (!area)
        return;
    const QSize client = area->viewport()->size() * kTwipsPerPixel;
    const int defaultLeft = qRound((client.width() - kDesignSize) / 2.0);
    const int defaultTop = qRound((client.height() - kDesignSize) / 2.0);
    const auto read = [](const SettingSpec& setting, int fallback) {
        return qRound(ReadTwips(setting).value_or(fallback));
    };
    QRect placed(read(Setting::SwitchboardLeft, defaultLeft) / kTwipsPerPixel,
                 read(Setting::SwitchboardTop, defaultTop) / kTwipsPerPixel,
                 std::max(read(Setting::SwitchboardWidth, kDesignSize), kMinWidth) / kTwipsPerPixel,
                 std::max(read(Setting::SwitchboardHeight, kDesignSize), kMinHeight) /
                     kTwipsPerPixel);
    // A position or size the window can't be seen or reached at goes back to the defaults.
    if (!IsReachable(placed, area->viewport()->rect()))
        placed = QRect(defaultLeft / kTwipsPerPixel, defaultTop / kTwipsPerPixel,
                       std::max(kDesignSize, kMinWidth) / kTwipsPerPixel,
                       std::max(kDesignSize, kMinHeight) / kTwipsPerPixel);
    // The window's outer size, frame included, never goes below 8000 x 5000 twips.
    frame->setMinimumSize(kMinWidth / kTwipsPerPixel, kMinHeight / kTwipsPerPixel);
    frame->setGeometry(placed);
    connect(area, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* window) {
        if (window && window->widget() == this)
            Form_Activate();
    });
}

void frmSwitchboard::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!mPlaced) {
        mPlaced = true;
        PlaceWindow();
    }
}

void frmSwitchboard::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Form_Resize();
}

// The layouts keep the banner, tab strip and lists filling the window, and the minimum size of
// 8000 x 5000 twips holds the window open; what is left is fitting the current list's columns.
void frmSwitchboard::Form_Resize() {
    SizeListColumns(GetCurrentLV());
}

// --- the lists ----------------------------------------------------------------------------

ListView* frmSwitchboard::GetCurrentLV() const {
    const Tab* tab = tbsSwitch->SelectedItem();
    if (!tab)
        return nullptr;
    const QString caption = tab->Caption();
    if (caption == QLatin1String("New"))
        return lvNew;
    if (caption == QLatin1String("Unsent"))
        return lvUnsent;
    if (caption == QLatin1String("Pending"))
        return lvPending;
    if (caption == QLatin1String("Overdue"))
        return lvOverdue;
    if (caption == QLatin1String("Paid"))
        return lvPaid;
    if (caption == QLatin1String("Active Followups"))
        return lvFollowup;
    if (caption == QLatin1String("Rejected"))
        return lvRejected;
    if (caption == QLatin1String("All"))
        return lvAll;
    return nullptr;
}

ListView* frmSwitchboard::ListForStatus(const QString& status) const {
    if (status == QLatin1String("Unsent"))
        return lvUnsent;
    if (status == QLatin1String("Pending"))
        return lvPending;
    if (status == QLatin1String("Overdue"))
        return lvOverdue;
    if (status == QLatin1String("Paid"))
        return lvPaid;
    if (status == QLatin1String("Followup"))
        return lvFollowup;
    if (status == QLatin1String("Rejected"))
        return lvRejected;
    return nullptr;
}

ListItem* frmSwitchboard::AddRebateItem(const RebateRowTexts& texts, const QString& status,
                                        ListView* lv) {
    ListItem* item = lv->ListItems().Add(texts.text, status, status);
    item->SetSubItems(1, texts.product);
    item->SetSubItems(2, texts.date);
    item->SetSubItems(3, texts.rebateID);
    return item;
}

void frmSwitchboard::AddAllListItems() {
    BusyState busy(QStringLiteral("Loading records..."));
    try {
        for (ListView* lv : RecordLists())
            lv->ListItems().Clear();
        const QDate today = Date();
        QStringList unreadable;
        SharedTexts shared;
        RebateQueries::ForEachListRow([&](const ScannedRow& row) {
            // A record with a value its column can't hold (text for money, an impossible
            // date) is listed under All as stored, and the rows after it still load.
            try {
                const QString status = GetRebateStatus(row, today);
                if (ListView* lv = ListForStatus(status)) {
                    const RebateRowTexts texts(row, status, &shared);
                    AddRebateItem(texts, status, lv);
                    AddRebateItem(texts, status, lvAll);
                }
            } catch (const VbError&) {
                const RebateRowTexts texts = RebateRowTexts::AsStored(row);
                AddRebateItem(texts, QString(), lvAll);
                unreadable << texts.rebateID;
            }
        });
        if (!unreadable.isEmpty())
            LogError(VbError(VbError::TypeMismatch,
                             QStringLiteral("Records with values that can't be read, listed "
                                            "under All as stored: RebateID ") +
                                 unreadable.mid(0, 20).join(QStringLiteral(", ")) +
                                 (unreadable.size() > 20
                                      ? QStringLiteral(" and %1 more").arg(unreadable.size() - 20)
                                      : QString())),
                     kSource, QStringLiteral("AddAllListItems()"));
        // A store the lists can't read has been reported once: the panel waits for the next
        // load.
        mDeadlines->Refresh();
    } catch (const VbError& e) {
        busy.Failed(QStringLiteral("Error loading records..."));
        LogError(e, kSource, QStringLiteral("AddAllListItems()"));
    }
}

void frmSwitchboard::AddIcons(const QString& rebateID) {
    DoEvents();
    BusyState busy(QStringLiteral("Loading records..."));
    SetStatusText(QStringLiteral("Getting rebate info..."));
    DoEvents();
    // No handler of its own: the caller hears of a failure, with the pointer restored.
    bool listed = false;
    RebateQueries::ForEachListRowOf(rebateID, [&](const ScannedRow& row) {
        if (std::exchange(listed, true))
            return;
        try {
            const QString status = GetRebateStatus(row, Date());
            if (ListView* lv = ListForStatus(status)) {
                const RebateRowTexts texts(row, status);
                AddRebateItem(texts, status, lv);
                AddRebateItem(texts, status, lvAll);
            }
        } catch (const VbError&) {
            // A value kept as stored that no list can sort by: under All, as the load lists it.
            AddRebateItem(RebateRowTexts::AsStored(row), QString(), lvAll);
        }
    });
}

void frmSwitchboard::DeleteIcons(const QString& rebateID) {
    DeleteIconsOf(QSet<QString>{rebateID});
}

// Takes each record's first row out of every record list, in one pass over each list.
void frmSwitchboard::DeleteIconsOf(const QSet<QString>& rebateIDs) {
    // A few records: each row found by its key; many: one pass over each list.
    constexpr int kFewRecords = 16;
    if (rebateIDs.size() <= kFewRecords) {
        for (ListView* lv : RecordLists())
            for (const QString& rebateID : rebateIDs)
                if (ListItem* item = lv->FindByKey(rebateID))
                    lv->ListItems().Remove(item->Index());
        return;
    }
    for (ListView* lv : RecordLists()) {
        QSet<QString> remaining = rebateIDs;
        lv->ListItems().RemoveIf([&remaining](const ListItem& item) {
            return !remaining.isEmpty() && remaining.remove(item.SubItems(3));
        });
    }
}

void frmSwitchboard::UpdateIcons(const QString& rebateID) {
    DeleteIcons(rebateID);
    DoEvents();
    AddIcons(rebateID);
    ListView* lv = GetCurrentLV();
    if (!lv)
        return; // on the Statistics and Savings pages the rows are rebuilt and the page stays
    if (lv == lvAll) {
        SelectRecordRow(lvAll, rebateID);
        return;
    }
    if (lv != lvNew && SelectRecordRow(lv, rebateID))
        return;
    // The record has left the list on show: the user follows it to its new one.
    for (ListView* list : RecordLists()) {
        if (list != lvAll && SelectRecordRow(list, rebateID, [this, list] { SelectTabOf(list); }))
            return;
    }
}

// A record the rebate form has just saved and closed: its rows are brought up to date now, so
// the hand-over that waits for the next activation is done with (it would select the record
// again beside a later one). The keyboard goes back to the list on the record's row.
void frmSwitchboard::RecordSaved(const QString& rebateID) {
    UpdateIcons(rebateID);
    if (gbRecordSaved && gsSavedRebateID == rebateID) {
        gbRecordSaved = false;
        gsSavedRebateID.clear();
    }
    if (ListView* lv = GetCurrentLV())
        lv->ActiveView()->setFocus(Qt::OtherFocusReason);
}

void frmSwitchboard::SelectTabOf(ListView* lv) {
    for (size_t i = 0; i < mPages.size(); ++i) {
        if (lv->parentWidget() == mPages[i])
            tbsSwitch->Tabs().Item(static_cast<int>(i) + 1)->SetSelected(true);
    }
}

void frmSwitchboard::Form_Activate() {
    if (gbRecordSaved) {
        UpdateIcons(gsSavedRebateID);
        gsSavedRebateID.clear();
        gbRecordSaved = false;
    }
    update();
}

void frmSwitchboard::AddNewRebateIcon() {
    ListItem* item = lvNew->ListItems().Add(QStringLiteral("Create a New Rebate"),
                                            QStringLiteral("New"), QStringLiteral("New"));
    item->SetSubItems(1, QStringLiteral("Creates a new rebate record."));
    SizeListColumns(lvNew);
    AddAllListItems();
}

void frmSwitchboard::PrepareLists() {
    for (ListView* lv : RecordLists()) {
        lv->SetSorted(true);
        SelectFirstItem(lv);
    }
}

void frmSwitchboard::ArrangeList(ListView* lv) {
    if (lv->View() == ListView::lvwIcon) {
        lv->SetArrange(1);
        lv->SetArrange(2);
        lv->SetArrange(0);
    } else if (lv->View() == ListView::lvwSmallIcon) {
        lv->SetArrange(2);
        lv->SetArrange(0);
    }
}

void frmSwitchboard::ShowCurrentPage() {
    const Tab* selected = tbsSwitch->SelectedItem();
    for (int i = 1; i <= tbsSwitch->Tabs().Count(); ++i) {
        QWidget* page = picLVBack(i - 1);
        if (selected && i == selected->Index()) {
            if (page->isHidden())
                page->show();
        } else {
            page->hide();
        }
    }
}

bool* frmSwitchboard::ArrangedFlag(ListView* lv) {
    const QString name = lv->Name();
    if (name == QLatin1String("lvUnsent"))
        return &mArrangedUnsent;
    if (name == QLatin1String("lvPending"))
        return &mArrangedPending;
    if (name == QLatin1String("lvOverdue"))
        return &mArrangedOverdue;
    if (name == QLatin1String("lvPaid"))
        return &mArrangedPaid;
    if (name == QLatin1String("lvFollowup"))
        return &mArrangedFollowup;
    if (name == QLatin1String("lvRejected"))
        return &mArrangedRejected;
    if (name == QLatin1String("lvAll"))
        return &mArrangedAll;
    return nullptr;
}

void frmSwitchboard::tbsSwitch_Click() {
    try {
        ShowCurrentPage();
        ToolbarButton* print = MainToolbarButton(QStringLiteral("Print"));
        if (print)
            print->SetToolTipText(QStringLiteral("Print selected record(s)"));
        const Tab* tab = tbsSwitch->SelectedItem();
        const QString caption = tab ? tab->Caption() : QString();

        if (caption == QLatin1String("Statistics") || caption == QLatin1String("Savings")) {
            DisableToolbarButtons();
            DisableListMenus();
            if (caption == QLatin1String("Savings"))
                UpdateSavings();
            else
                UpdateStatistics();
            if (print) {
                print->SetEnabled(true);
                print->SetToolTipText(QStringLiteral("Print statistics"));
            }
            return;
        }
        ListView* lv = GetCurrentLV();
        if (!lv)
            return;
        EnableToolbarButtons();
        EnableListMenus();
        if (caption == QLatin1String("New"))
            DisableRecordCommands();
        SyncViewButtons(lv->View());
        if (caption != QLatin1String("New")) {
            if (lv->ListItems().Count() < 1)
                DisableRecordCommands();
            else
                EnableRecordCommands();
        }
        if (xToolbar->Buttons(QStringLiteral("Details")).Value() == 1)
            SizeListColumns(lv);
        SyncViewMenus(lv->View());
        if (caption == QLatin1String("New") || Timer1->isActive())
            return;

        DoEvents();
        lv->SetVisible(false);
        if (bool* arranged = ArrangedFlag(lv); arranged && !*arranged) {
            *arranged = true;
            ArrangeList(lv);
        }
        lv->SetVisible(true);
    } catch (const VbError& e) {
        SetMousePointer(MousePointer::Default);
        LogError(e, kSource, QStringLiteral("tbsSwitch_Click"));
    }
}

void frmSwitchboard::Timer1_Timer() {
    Timer1->stop();
    if (ListView* lv = GetCurrentLV())
        SyncViewButtons(lv->View());
    for (ListView* lv : AllLists())
        ArrangeList(lv);
}

void frmSwitchboard::NextTab() {
    const Tab* tab = tbsSwitch->SelectedItem();
    const int count = tbsSwitch->Tabs().Count();
    const int next = !tab || tab->Index() >= count ? 1 : tab->Index() + 1;
    tbsSwitch->Tabs().Item(next)->SetSelected(true);
}

// --- list events -----------------------------------------------------------------------------

void frmSwitchboard::lv_ItemClick() {
    EnableRecordCommands();
}

void frmSwitchboard::lv_MouseUp(int button, QPoint globalPos) {
    if (button != 2)
        return;
    auto* lv = qobject_cast<ListView*>(sender());
    mnuPopupOpen->setEnabled(CountSelected(lv) < 2);
    mnuPopup->popup(globalPos);
}

void frmSwitchboard::lv_ColumnClick(int column) {
    SortOnColumn(qobject_cast<ListView*>(sender()), column);
}

int frmSwitchboard::CountSelected(ListView* lv) const {
    if (!lv)
        return 0;
    int count = 0;
    for (int i = 1; i <= lv->ListItems().Count(); ++i)
        if (lv->ListItems().Item(i)->Selected())
            ++count;
    return count;
}

// --- commands ------------------------------------------------------------------------------

void frmSwitchboard::mnuDeleteRebate_Click() {
    DeleteRebateRecord();
}

bool frmSwitchboard::DeleteRebateRecord() {
    ListView* lv = GetCurrentLV();
    if (!lv || lv == lvNew || lv->ListItems().Count() == 0)
        return false;
    RecordForm* rebateForm = RecordForm::Open();
    if (rebateForm && rebateForm->RecordChanged()) {
        MsgBox(QStringLiteral("Please save the current rebate record before attempting to delete "
                              "other records."),
               vb::vbExclamation, QStringLiteral("Unsaved Rebate"));
        rebateForm->ZOrder();
        return false;
    }
    // A clean rebate form showing a record that goes is closed without a word.
    const auto closeFormShowing = [](const QString& rebateID) {
        RecordForm* form = RecordForm::Open();
        if (form && form->RebateID() == rebateID)
            form->Unload();
    };

    const int selected = CountSelected(lv);
    QSet<QString> marked;
    bool inTransaction = false;
    std::optional<BusyState> busy; // from the user's Yes on
    try {
        if (selected < 2) {
            if (MsgBox(QStringLiteral("Are you sure you want to delete the selected rebate?"),
                       vb::vbYesNo | vb::vbQuestion | vb::vbDefaultButton2,
                       QStringLiteral("Delete Rebate?")) == vb::vbNo)
                return false;
            busy.emplace(QStringLiteral("Deleting record..."));
            ListItem* item = lv->SelectedItem();
            if (!item)
                throw VbError(VbError::ObjectNotSet);
            const QString rebateID = item->SubItems(3);
            closeFormShowing(rebateID);
            RebateQueries::MarkRebateDeleted(rebateID);
            marked.insert(rebateID);
        } else {
            if (MsgBox(QStringLiteral("Are you sure you want to delete the selected rebates?"),
                       vb::vbYesNo | vb::vbQuestion | vb::vbDefaultButton2,
                       QStringLiteral("Delete Rebates?")) == vb::vbNo)
                return false;
            busy.emplace(QStringLiteral("Deleting records..."));
            if (!gDatabase)
                throw VbError(VbError::ObjectNotSet);
            // One transaction for the lot: a write of its own costs a flush of the disk for
            // every record.
            gDatabase->BeginTrans();
            inTransaction = true;
            for (int i = 1; i <= lv->ListItems().Count(); ++i) {
                ListItem* item = lv->ListItems().Item(i);
                if (!item->Selected())
                    continue;
                const QString rebateID = item->SubItems(3);
                closeFormShowing(rebateID);
                RebateQueries::MarkRebateDeleted(rebateID);
                marked.insert(rebateID);
            }
            gDatabase->CommitTrans();
            inTransaction = false;
        }
        // The rows come off after the walk, which must not lose its place.
        DeleteIconsOf(marked);
        mDeadlines->Refresh();
    } catch (const VbError& e) {
        // What the store did mark is kept and leaves the lists, so that they show what it
        // holds; when even that can't be written, nothing is, and every row stays.
        if (inTransaction) {
            try {
                gDatabase->CommitTrans();
            } catch (const VbError&) {
                try {
                    gDatabase->Rollback();
                } catch (const VbError&) {
                    // SQLite has already dropped the transaction.
                }
                marked.clear();
            }
        }
        DeleteIconsOf(marked);
        mDeadlines->Refresh();
        if (busy)
            busy->Failed(QStringLiteral("Error deleting record(s)..."));
        LogError(e, kSource, QStringLiteral("DeleteRebateRecord()"));
    }
    return true;
}

void frmSwitchboard::EnableToolbarButtons() {
    const Tab* tab = tbsSwitch->SelectedItem();
    const QString caption = tab ? tab->Caption() : QString();
    ToolbarButton& remove = xToolbar->Buttons(QStringLiteral("Delete"));
    if (caption == QLatin1String("New")) {
        remove.SetEnabled(false);
    } else if (caption != QLatin1String("Statistics") && caption != QLatin1String("Savings")) {
        ListView* lv = GetCurrentLV();
        remove.SetEnabled(lv && lv->ListItems().Count() >= 1);
    }
    for (const char* key : kListButtons)
        xToolbar->Buttons(QString::fromLatin1(key)).SetEnabled(true);
}

void frmSwitchboard::DisableToolbarButtons() {
    xToolbar->Buttons(QStringLiteral("Delete")).SetEnabled(false);
    for (const char* key : kListButtons)
        xToolbar->Buttons(QString::fromLatin1(key)).SetEnabled(false);
}

void frmSwitchboard::EnableRecordCommands() {
    SetRecordCommands(*this, true);
}

void frmSwitchboard::DisableRecordCommands() {
    SetRecordCommands(*this, false);
}

void frmSwitchboard::EnableListMenus() {
    for (QAction* a : ListMenus(*this))
        SetEnabledIfDifferent(a, true);
    mnuPopupDelete->setEnabled(mnuDeleteRebate->isEnabled());
    mnuPopupOpen->setEnabled(mnuEditRebate->isEnabled());
    mnuPopupPrint->setEnabled(mnuPrintSelected->isEnabled());
}

void frmSwitchboard::DisableListMenus() {
    for (QAction* a : ListMenus(*this))
        SetEnabledIfDifferent(a, false);
}

void frmSwitchboard::mnuFile_Click() {
    ListView* lv = GetCurrentLV();
    if (!lv || lv->Name() == QLatin1String("lvNew")) {
        mnuPrintSelected->setEnabled(false);
        mnuPrintPreview->setEnabled(false);
    }
    const bool records = lv && lv->Name() != QLatin1String("lvNew");
    mnuExportSelected->setEnabled(records && CountSelected(lv) > 0);
    mnuExportList->setEnabled(records && lv->ListItems().Count() > 0);
}

void frmSwitchboard::mnuEdit_Click() {
    ListView* lv = GetCurrentLV();
    if (!lv || lv == lvNew)
        return;
    int selected = 0;
    for (int i = 1; i <= lv->ListItems().Count() && selected < 2; ++i)
        if (lv->ListItems().Item(i)->Selected())
            ++selected;
    if (selected == 0) {
        DisableRecordCommands();
    } else {
        EnableRecordCommands();
        if (selected == 2)
            mnuEditRebate->setEnabled(false);
    }
}

void frmSwitchboard::mnuSelectAll_Click() {
    ListView* lv = GetCurrentLV();
    if (!lv || lv->ListItems().Count() < 1)
        return;
    for (int i = 1; i <= lv->ListItems().Count(); ++i)
        lv->ListItems().Item(i)->SetSelected(true);
}

void frmSwitchboard::mnuInvertSelection_Click() {
    ListView* lv = GetCurrentLV();
    if (!lv || lv->ListItems().Count() == 1)
        return;
    int unselected = 0;
    for (int i = 1; i <= lv->ListItems().Count(); ++i) {
        ListItem* item = lv->ListItems().Item(i);
        item->SetSelected(!item->Selected());
        if (!item->Selected())
            ++unselected;
    }
    if (unselected == lv->ListItems().Count())
        if (ListItem* first = lv->GetFirstVisible())
            first->SetSelected(true);
}

void frmSwitchboard::SetView(int view, bool stepArrange) {
    ListView* lv = GetCurrentLV();
    if (!lv)
        return;
    lv->SetView(view);
    SyncViewButtons(lv->View());
    SyncViewMenus(lv->View());
    if (stepArrange) {
        lv->SetArrange(1);
        lv->SetArrange(2);
        DoEvents();
        lv->SetArrange(0);
    }
}

void frmSwitchboard::mnuLargeIcons_Click() {
    SetView(ListView::lvwIcon, true);
}

void frmSwitchboard::mnuSmallIcons_Click() {
    SetView(ListView::lvwSmallIcon, true);
}

void frmSwitchboard::mnuList_Click() {
    SetView(ListView::lvwList, false);
}

void frmSwitchboard::mnuDetails_Click() {
    SetView(ListView::lvwReport, false);
}

void frmSwitchboard::SyncViewButtons(int view) {
    if (Timer1->isActive())
        return;
    static const std::array<const char*, 4> keys{"Large", "Small", "List", "Details"};
    if (view >= 0 && view < static_cast<int>(keys.size()))
        xToolbar->Buttons(QString::fromLatin1(keys[static_cast<size_t>(view)])).SetValue(1);
}

void frmSwitchboard::SyncViewMenus(int view) {
    const std::array<QAction*, 4> menus{mnuLargeIcons, mnuSmallIcons, mnuList, mnuDetails};
    const std::array<QAction*, 4> popups{mnuPopupLargeIcons, mnuPopupSmallIcons, mnuPopupList,
                                         mnuPopupDetails};
    for (int i = 0; i < 4; ++i) {
        menus[static_cast<size_t>(i)]->setChecked(i == view);
        popups[static_cast<size_t>(i)]->setChecked(i == view);
    }
}

void frmSwitchboard::mnuSortAscending_Click() {
    if (ListView* lv = GetCurrentLV())
        lv->SetSortOrder(0);
}

void frmSwitchboard::mnuSortDescending_Click() {
    if (ListView* lv = GetCurrentLV())
        lv->SetSortOrder(1);
}

void frmSwitchboard::mnuArrangeAll_Click() {
    ListView* lv = GetCurrentLV();
    if (!lv)
        return;
    lv->SetVisible(false);
    ArrangeList(lv);
    lv->SetVisible(true);
}

void frmSwitchboard::mnuRefresh_Click() {
    AddAllListItems();
}

void frmSwitchboard::xToolbar_ButtonClick(const QString& key) {
    if (key == QLatin1String("New")) {
        mnuNewRebate_Click();
    } else if (key == QLatin1String("Delete")) {
        mnuDeleteRebate_Click();
    } else if (key == QLatin1String("Large")) {
        mnuLargeIcons_Click();
    } else if (key == QLatin1String("Small")) {
        mnuSmallIcons_Click();
    } else if (key == QLatin1String("List")) {
        mnuList_Click();
    } else if (key == QLatin1String("Details")) {
        mnuDetails_Click();
        SizeListColumns(GetCurrentLV());
    } else if (key == QLatin1String("Arrange All")) {
        mnuArrangeAll_Click();
    } else if (key == QLatin1String("AZ")) {
        mnuSortAscending_Click();
    } else if (key == QLatin1String("ZA")) {
        mnuSortDescending_Click();
    } else if (key == QLatin1String("Find")) {
        mnuFind_Click();
    }
}

// --- creating and opening records ----------------------------------------------------------

void frmSwitchboard::mnuNewRebate_Click() {
    try {
        if (!RecordForm::CloseUnlessChanged(QStringLiteral("create a new record")))
            return;
        gbNewRecord = true;
        RecordForm::Show();
    } catch (const VbError& e) {
        LogError(e, objectName(), QStringLiteral("mnuNewRebate_Click"));
    }
}

bool frmSwitchboard::OpenRebate() {
    if (!RecordForm::CloseUnlessChanged(QStringLiteral("edit another record"))) {
        SetStatusText(QStringLiteral("Unsaved record..."));
        return false;
    }
    BusyState busy(QStringLiteral("Loading Rebate form..."));
    gbNewRecord = false;
    RecordForm::Show();
    return true;
}

void frmSwitchboard::mnuEditRebate_Click() {
    try {
        ListView* lv = GetCurrentLV();
        if (lv && lv->ListItems().Count() > 0)
            OpenRebate();
    } catch (const VbError& e) {
        LogError(e, objectName(), QStringLiteral("mnuEditRebate_Click"));
    }
}

void frmSwitchboard::lv_DblClick(ListView* lv) {
    if (lv == lvNew)
        mnuNewRebate_Click();
    else
        mnuEditRebate_Click();
}

void frmSwitchboard::lv_KeyPress(ListView* lv, int& keyAscii) {
    if (keyAscii != vb::vbKeySpace && keyAscii != vb::vbKeyReturn)
        return;
    if (lv == lvNew) {
        mnuNewRebate_Click();
    } else if (CountSelected(lv) == 0) {
        // Nothing chosen, nothing to open: an empty form could not be saved.
        keyAscii = 0;
    } else if (CountSelected(lv) >= 2) {
        MsgBox(QStringLiteral("You cannot open more than one rebate record at a time."),
               vb::vbInformation, QStringLiteral("Invalid Action"));
        keyAscii = 0;
    } else {
        OpenRebate();
    }
}

void frmSwitchboard::mnuExit_Click() {
    if (MainFrame* main = MainFrame::Instance())
        main->Exit();
}

void frmSwitchboard::mnuStatusBar_Click() {
    if (MainFrame* main = MainFrame::Instance())
        main->SetStatusBarVisible(mnuStatusBar->isChecked());
}

void frmSwitchboard::mnuToolbar_Click() {
    if (MainFrame* main = MainFrame::Instance())
        main->SetToolbarVisible(mnuToolbar->isChecked());
}

void frmSwitchboard::mnuTCR_Click() {
    OpenDocument(gTCRLink);
}

void frmSwitchboard::picSwitchboard_Click() {
    OpenDocument(gTCRLink);
}

void frmSwitchboard::txtTCRLink_Click() {
    tbsSwitch->setFocus();
    OpenDocument(gTCRLink);
}

void frmSwitchboard::mnuSuggest_Click() {
    SubmitSuggestion();
}

void frmSwitchboard::SubmitSuggestion() {
    const BusyState busy(QString(), nullptr); // the pointer only, the status line stays
    OpenDocument(QStringLiteral("mailto:") + kSuggestionMailbox);
}

void frmSwitchboard::Print() {
    SetStatusText(QStringLiteral("Preparing to print..."));
    mnuPrintStats_Click();
}

// --- help --------------------------------------------------------------------------------------

namespace {
enum HelpCommand { kIntro, kContents, kSearch };
}

void frmSwitchboard::ShowHelp(int command) {
    BusyState busy(QStringLiteral("Loading help file..."));
    if (App::HelpFile().isEmpty()) {
        busy.Failed(QStringLiteral("No associated help..."));
        Help::NoHelpBox(windowTitle());
    } else {
        switch (command) {
        case kIntro:
            Help::ShowTopic(1000);
            break;
        case kContents:
            Help::ShowContents();
            break;
        default:
            Help::ShowSearch();
            break;
        }
    }
}

void frmSwitchboard::mnuIntro_Click() {
    ShowHelp(kIntro);
}

void frmSwitchboard::mnuContents_Click() {
    ShowHelp(kContents);
}

void frmSwitchboard::mnuSearchForHelpOn_Click() {
    ShowHelp(kSearch);
}

// --- closing -----------------------------------------------------------------------------------

bool frmSwitchboard::Form_QueryUnload(bool systemShutdown) {
    if (systemShutdown) {
        gErrorLog.reset();
        return true;
    }
    if (MsgBox(QStringLiteral("Do you really want to exit the application?"),
               vb::vbYesNo | vb::vbQuestion, QStringLiteral("Exiting Vantry! Vantry!")) == vb::vbNo)
        return false;
    // An error of the last moments still reaches the log: LogError then uses a fresh one.
    gErrorLog.reset();
    if (MainFrame* main = MainFrame::Instance())
        main->CloseWhenSwitchboardGone();
    return true;
}

void frmSwitchboard::Form_Unload() {
    auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget());
    QWidget* window = frame ? static_cast<QWidget*>(frame) : this;
    if (!window->isMinimized()) {
        const QRect geometry = window->geometry();
        WriteSetting(Setting::SwitchboardLeft, QString::number(geometry.x() * kTwipsPerPixel));
        WriteSetting(Setting::SwitchboardTop, QString::number(geometry.y() * kTwipsPerPixel));
        WriteSetting(Setting::SwitchboardWidth, QString::number(geometry.width() * kTwipsPerPixel));
        WriteSetting(Setting::SwitchboardHeight,
                     QString::number(geometry.height() * kTwipsPerPixel));
    }
    for (const auto& [list, setting] : kViewKeys)
        WriteSetting(*setting, QString::number((this->*list)->View()));
    try {
        while (KillFile(TempPath() + QStringLiteral("/~va*.rtf"))) {
        }
    } catch (const VbError&) {
        // A report file still open elsewhere stays; the next exit tries again.
    }
    // The copies of attachments opened with the desktop, each in a folder of its own.
    const QDir temp(TempPath());
    for (const QString& folder :
         temp.entryList({QStringLiteral("~vaat*")}, QDir::Dirs | QDir::NoDotAndDotDot))
        QDir(temp.filePath(folder)).removeRecursively();
}

void frmSwitchboard::closeEvent(QCloseEvent* event) {
    const bool systemShutdown = qGuiApp->isSavingSession();
    if (!Form_QueryUnload(systemShutdown)) {
        event->ignore();
        return;
    }
    Form_Unload();
    event->accept();
}

bool frmSwitchboard::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picSwitchboard) {
        if (event->type() == QEvent::MouseButtonRelease)
            picSwitchboard_Click();
        else if (event->type() == QEvent::Resize)
            FitBanner();
    }
    return QWidget::eventFilter(watched, event);
}

void frmSwitchboard::FitBanner() {
    static const QSize full(640, 56);
    const int width = std::min(full.width(), std::max(picSwitchboard->width(), 1));
    const QSize size(width, std::max(1, width * full.height() / full.width()));
    if (!picSwitchboard->pixmap().isNull() &&
        picSwitchboard->pixmap().deviceIndependentSize().toSize() == size)
        return;
    picSwitchboard->setPixmap(QIcon(QStringLiteral(":/icons/banner.svg")).pixmap(size));
    picSwitchboard->setFixedHeight(full.height());
}
