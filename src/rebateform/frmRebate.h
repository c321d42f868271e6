#pragma once

#include "common/ui/Forms.h"
#include "common/ui/MdiChild.h"

#include <QMap>
#include <QWidget>
#include <memory>

class AttachmentsBox;
class FieldEdit;
class QAction;
class QCheckBox;
class QFormLayout;
class QLabel;
class QMenu;
class QPushButton;
class QTabWidget;
class clsRebate;

// The rebate form: one record on three pages (Product Info, Rebate Info, Followup Info with
// the attached files),
// created, changed, deleted and saved through its clsRebate. A child window of frmMDI with
// menus of its own, loaded by the Switchboard after it has set gbNewRecord.
class frmRebate : public QWidget, public MdiChild, public RecordForm {
    Q_OBJECT
public:
    // The loaded form, or nullptr.
    static frmRebate* Instance();
    // Loads the form (a new record when gbNewRecord is set, else the row the Switchboard's
    // current list has selected), puts it into the main window when there is one and shows it.
    static frmRebate* LoadAndShow();
    // Lets RecordForm::Show() load the form (start-up calls this once).
    static void RegisterFactory();

    ~frmRebate() override;

    QList<QMenu*> Menus() const override;
    // The main window's record commands.
    bool CanSave() const override { return true; }
    void Save() override;
    bool CanDelete() const override { return true; }
    void Delete() override;
    bool CanCut() const override { return true; }
    void Cut() override { mnuCut_Click(); }
    bool CanCopy() const override { return true; }
    void Copy() override { mnuCopy_Click(); }
    bool CanPaste() const override { return true; }
    void Paste() override { mnuPaste_Click(); }
    bool CanUndo() const override { return true; }
    void Undo() override;
    bool CanPrint() const override { return true; }
    void Print() override;

    // The record differs from what is stored; the Switchboard refuses New, Open and Delete
    // while it is set.
    bool RecordChanged() const override { return mRecordChanged; }
    // The key of the open record (the text of the RebateID field); "" until a new record is saved.
    QString RebateID() const override;

    FieldEdit* txtFields(int index) const;
    QCheckBox* chkFields(int index) const;

    // Event handlers of the fields and the form, called by the widgets' events.
    void txtFields_Change(int index);
    void txtFields_GotFocus(int index);
    void txtFields_KeyDown(int index, int& keyCode, int shift);
    void txtFields_KeyPress(int index, int& keyAscii);
    void txtFields_KeyUp(int index, int keyCode, int shift);
    void txtFields_Validate(int index, bool& cancel);
    void chkFields_Click(int index);
    void lblLabels_Click(int index);
    // The contact links: the mouse over Email (7) or Web Site (22) and a click that opens it.
    void txtFields_MouseMove(int index);
    void txtFields_Click(int index);
    // Keys the form sees before its controls; true when the key was used up.
    bool Form_KeyDown(int keyCode, int shift);
    void Form_Activate();
    void Form_Deactivate();

    // The record-wide test before a save: required fields, cross-field rules, and the
    // RebateID of a new record. Tells the user and moves to the field on a failure.
    bool ValidateRecord();

public Q_SLOTS:
    // Reached from the menus, the buttons and the main window's toolbar.
    void cmdCancel_Click();
    void cmdDelete_Click();
    void cmdOK_Click();
    void cmdDial_Click();
    void cmdEditEmail_Click();
    void cmdEditWeb_Click();
    void mnuCopy_Click();
    void mnuCut_Click();
    void mnuDeleteRecord_Click();
    void mnuPaste_Click();
    void mnuPrint_Click();
    void mnuSaveRecord_Click();
    void mnuUndo_Click();
    // The text of the field with the focus in the zoom box (Alt+Z).
    void mnuZoom_Click();
    // Closes the form without saving (the close box and "Close without Saving" do the same).
    void Unload() override;
    // Brings the form to the front of the main window.
    void ZOrder() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    frmRebate();
    void BuildMenus();
    void BuildPages();
    QWidget* BuildProductPage();
    QWidget* BuildRebatePage();
    QWidget* BuildFollowupPage();
    QWidget* BuildStatusStrip();
    QWidget* BuildButtons();
    FieldEdit* AddField(QFormLayout* form, int index, const QString& dataField,
                        const QString& caption, const QString& tag, QWidget* beside = nullptr);
    QCheckBox* AddCheck(int index, const QString& caption, const QString& tag);

    void Form_Load();
    void Form_Unload();
    void FillFromRebate();
    void CopyFieldsToRebate();
    QString NewRebateID() const;
    bool FocusMovesTo(QWidget* target);
    void DateShortcutKey(FieldEdit* field, int keyAscii);
    void CalendarKey(FieldEdit* field);
    void CalculatorKey(FieldEdit* field);
    void WeekConverterKey(int index);
    void RestoreLinkColors();
    void UpdateCutCopyButtons();
    void ShowTag(QWidget* control);
    QWidget* Window() const;
    // The form's own status line, for the busy states of its long actions.
    BusyState::StatusSetter StatusLabel() const;

    QString SelectedTab() const;
    void SelectTab(const QString& caption);
    void ChangePage(int index);

    void DisablePrint();
    void EnablePrint();
    void DisableSave();
    void EnableSave();
    void SetToolbarButton(int index, bool enabled);

    std::unique_ptr<clsRebate> Rebate;

    bool mRecordChanged = false;
    bool mbEdited = false;
    bool mbIsNew = false;
    bool mbIsLoaded = false;
    bool mbCtrlDown = false;
    bool mbUnloaded = false;
    bool mbActive = false; // the active child of the main window
    bool mbWebVisited = false;
    bool mbEmailVisited = false;
    bool mbLinkHot = false; // the mouse has been over a link, whose colour may need restoring

    QMap<int, FieldEdit*> mFields;
    QMap<int, QCheckBox*> mChecks;
    QMap<QLabel*, int> mLabels;

    QTabWidget* tbsTabs = nullptr;
    AttachmentsBox* fraAttachments = nullptr;
    QLabel* lblStatus = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPushButton* cmdDelete = nullptr;
    QPushButton* cmdDial = nullptr;
    QPushButton* cmdEditWeb = nullptr;
    QPushButton* cmdEditEmail = nullptr;

    QMenu* mnuFile = nullptr;
    QMenu* mnuEdit = nullptr;
    QMenu* mnuView = nullptr;
    QMenu* mnuWindowList = nullptr;
    QMenu* mnuHelp = nullptr;
    QAction* mnuSaveRecord = nullptr;
    QAction* mnuSaveRecordAndCloseForm = nullptr;
    QAction* mnuPrint = nullptr;
    QAction* mnuToolbar = nullptr;
};
