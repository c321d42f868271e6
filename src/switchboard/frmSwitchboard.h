#pragma once

#include "common/ui/ImageList.h"
#include "common/ui/MdiChild.h"

#include <QSet>
#include <QString>
#include <QWidget>
#include <array>

class DeadlinePanel;
class ListItem;
class ListView;
class QAction;
class QLabel;
class QMenu;
class QTimer;
class SavingsPage;
class StatisticsPage;
class TabStrip;
class Toolbar;
struct RebateRowTexts;

// The Switchboard: the window of status lists. A tab strip of ten pages (creating a rebate,
// seven lists of rebates by status, the statistics, the savings chart), its own toolbar and the
// menus it brings to the main window. Every list row carries its record's RebateID in a hidden
// fourth column.
class frmSwitchboard : public QWidget, public MdiChild {
    Q_OBJECT
public:
    // The loaded Switchboard, or nullptr.
    static frmSwitchboard* Instance();
    // Loads the Switchboard (once): the main window adds it as a child and shows it. Its
    // position is restored when it is first shown inside the main window.
    static frmSwitchboard& Load();
    // Lets Forms::Load("frmSwitchboard") create the Switchboard (start-up calls this once).
    static void RegisterFactory();

    explicit frmSwitchboard(QWidget* parent = nullptr);
    ~frmSwitchboard() override;

    QList<QMenu*> Menus() const override;
    // The main window's Print button prints the statistics whichever page is on top.
    bool CanPrint() const override { return true; }
    void Print() override;

    // The list of the selected tab; nullptr on the Statistics and Savings pages.
    ListView* GetCurrentLV() const;
    // The page of tab n is picLVBack(n - 1).
    QWidget* picLVBack(int index) const { return mPages.at(static_cast<size_t>(index)); }
    // The list of a status ("Unsent", "Pending", ...); nullptr for any other text.
    ListView* ListForStatus(const QString& status) const;
    int CountSelected(ListView* lv) const;
    // The seven lists of records, in the order of their tabs: lvUnsent ... lvAll.
    std::array<ListView*, 7> RecordLists() const;
    // Selects the tab whose page holds the list.
    void SelectTabOf(ListView* lv);
    // The Statistics page inside picLVBack(8).
    StatisticsPage* Statistics() const { return mStatistics; }
    // The Savings page inside picLVBack(9), the widget named "picSavings"; nullptr until the
    // page is first shown.
    SavingsPage* Savings() const { return mSavings; }
    // The postmark deadline panel under the lists.
    DeadlinePanel* Deadlines() const { return mDeadlines; }

    // The controls, named as the program names them.
    QLabel* picSwitchboard;
    TabStrip* tbsSwitch;
    Toolbar* xToolbar;
    QLabel* txtTCRLink;
    ListView* lvNew;
    ListView* lvUnsent;
    ListView* lvPending;
    ListView* lvOverdue;
    ListView* lvPaid;
    ListView* lvFollowup;
    ListView* lvRejected;
    ListView* lvAll;
    QTimer* Timer1;

    QMenu* mnuFile;
    QAction* mnuNewRebate;
    QAction* mnuPrintPreview;
    QAction* mnuPrintSelected;
    QAction* mnuPrintPrevewStats;
    QAction* mnuPrintStats;
    QAction* mnuExportSelected;
    QAction* mnuExportList;
    QAction* mnuImport;
    QAction* mnuRestore;
    QAction* mnuExit;
    QMenu* mnuEdit;
    QAction* mnuEditRebate;
    QAction* mnuDeleteRebate;
    QAction* mnuFind;
    QAction* mnuSelectAll;
    QAction* mnuInvertSelection;
    QMenu* mnuView;
    QAction* mnuTCR;
    QAction* mnuStatusBar;
    QAction* mnuToolbar;
    QAction* mnuLargeIcons;
    QAction* mnuSmallIcons;
    QAction* mnuList;
    QAction* mnuDetails;
    QAction* mnuSortAscending;
    QAction* mnuSortDescending;
    QAction* mnuArrangeAll;
    QAction* mnuRefresh;
    QAction* mnuOptions;
    QMenu* mnuWindow;
    QMenu* mnuHelp;
    QAction* mnuIntro;
    QAction* mnuContents;
    QAction* mnuSearchForHelpOn;
    QAction* mnuAbout;
    QAction* mnuSuggest;
    QAction* mnuTipOfTheDay;
    QAction* mnuTCR2;

    QMenu* mnuPopup;
    QAction* mnuPopupOpen;
    QAction* mnuPopupPrint;
    QAction* mnuPopupDelete;
    QAction* mnuPopupFind;
    QAction* mnuPopupSelectAll;
    QAction* mnuPopupInvertSelection;
    QMenu* mnuPopupView;
    QAction* mnuPopupLargeIcons;
    QAction* mnuPopupSmallIcons;
    QAction* mnuPopupList;
    QAction* mnuPopupDetails;
    QAction* mnuPopupAscending;
    QAction* mnuPopupDescending;
    QAction* mnuPopupArrangeAll;

    // Large pictures of the lists, and small pictures of the lists and of xToolbar.
    ImageList ActiveXImageList{32};
    ImageList xImageListSmall{16};

public Q_SLOTS:
    // The lists.
    void AddAllListItems();
    void AddIcons(const QString& rebateID);
    void DeleteIcons(const QString& rebateID);
    void UpdateIcons(const QString& rebateID);
    // UpdateIcons for a record the rebate form saved and closed.
    void RecordSaved(const QString& rebateID);
    void tbsSwitch_Click();
    void Timer1_Timer();
    void Form_Activate();
    void Form_Resize();
    // Fills the Statistics page anew.
    void UpdateStatistics();
    // Draws the Savings page anew.
    void UpdateSavings();
    // Opens the claim of the deadline panel: the All list selects its row, and the rebate form
    // opens it.
    void OpenDeadline(const QString& rebateID);

    // The commands.
    bool DeleteRebateRecord();
    void EnableToolbarButtons();
    void DisableToolbarButtons();
    void EnableRecordCommands();
    void DisableRecordCommands();
    void EnableListMenus();
    void DisableListMenus();
    void SyncViewButtons(int view);
    void SyncViewMenus(int view);

    void mnuFile_Click();
    void mnuEdit_Click();
    void mnuDeleteRebate_Click();
    void mnuSelectAll_Click();
    void mnuInvertSelection_Click();
    void mnuLargeIcons_Click();
    void mnuSmallIcons_Click();
    void mnuList_Click();
    void mnuDetails_Click();
    void mnuSortAscending_Click();
    void mnuSortDescending_Click();
    void mnuArrangeAll_Click();
    void mnuRefresh_Click();
    void mnuExit_Click();
    void mnuStatusBar_Click();
    void mnuToolbar_Click();
    void mnuTCR_Click();
    void mnuSuggest_Click();
    void mnuIntro_Click();
    void mnuContents_Click();
    void mnuSearchForHelpOn_Click();
    void picSwitchboard_Click();
    void txtTCRLink_Click();
    // The reports: the selected records printed or viewed in the word processor, the
    // statistics (computed afresh) likewise.
    void mnuPrintSelected_Click();
    void mnuPrintPreview_Click();
    void mnuPrintStats_Click();
    void mnuPrintPrevewStats_Click();
    // CSV: the selected rows or the whole current list written to a file the user names; a
    // file read, shown in frmImport and added on the user's word.
    void mnuExportSelected_Click();
    void mnuExportList_Click();
    void mnuImport_Click();
    // The RebateIDs of the current list's rows (only the selected ones when asked), in list
    // order; none on the New, Statistics and Savings pages.
    QStringList ListedRebateIDs(bool selectedOnly) const;
    // Find: modal from the menus and the toolbar, with the last search text; modeless from F7.
    void mnuFind_Click();
    void ShowFindModeless();

    void xToolbar_ButtonClick(const QString& key);

    // Creating and opening records: the rebate form reads gbNewRecord and the selected row.
    void mnuNewRebate_Click();
    bool OpenRebate(); // the result isn't looked at
    void mnuEditRebate_Click();
    // Double click and Enter or Space on a row: a record list opens the record, lvNew creates one.
    void lv_DblClick(ListView* lv);
    void lv_KeyPress(ListView* lv, int& keyAscii);
    void lv_ItemClick();
    void lv_MouseUp(int button, QPoint globalPos);
    void lv_ColumnClick(int column);
    // Ctrl+Tab: the next tab, from the last back to the first.
    void NextTab();

    // Asks the exit question; true when the Switchboard may close.
    bool Form_QueryUnload(bool systemShutdown);
    void Form_Unload();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void BuildMenus();
    void BuildToolbar();
    void BuildLists();
    void Form_Load();
    void PlaceWindow();
    void FitBanner();
    ListItem* AddRebateItem(const RebateRowTexts& texts, const QString& status, ListView* lv);
    void AddNewRebateIcon();
    void PrepareLists();
    void ArrangeList(ListView* lv);
    void ShowCurrentPage();
    bool* ArrangedFlag(ListView* lv);
    void SetView(int view, bool stepArrange);
    void DeleteIconsOf(const QSet<QString>& rebateIDs);
    void ShowHelp(int command);
    void SubmitSuggestion();
    std::array<ListView*, 8> AllLists() const;
    void BuildStatisticsAndFind();
    void ShowOverdueAtStart();

    std::array<QWidget*, 10> mPages{};
    StatisticsPage* mStatistics = nullptr;
    SavingsPage* mSavings = nullptr;
    DeadlinePanel* mDeadlines = nullptr;
    bool mArrangedUnsent = false;
    bool mArrangedPending = false;
    bool mArrangedOverdue = false;
    bool mArrangedPaid = false;
    bool mArrangedFollowup = false;
    bool mArrangedRejected = false;
    bool mArrangedAll = false;
    bool mPlaced = false; // PlaceWindow has run
};
