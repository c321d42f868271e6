#include "rebateform/frmRebate.h"

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
#include "common/ui/EntryTools.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "common/ui/MainFrame.h"
#include "common/ui/ReportHooks.h"
#include "common/ui/Toolbar.h"
#include "data/RebateQueries.h"
#include "rebateform/AttachmentsBox.h"
#include "rebateform/FieldEdit.h"
#include "rebateform/FieldHelpers.h"
#include "rebateform/RebateFields.h"
#include "rebateform/modUndo.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {
void RunFrameCommand(MainFrame::Command command) {
    if (MainFrame* main = MainFrame::Instance())
        main->Run(command);
}

frmRebate* gInstance = nullptr;

const QString kFormName = QStringLiteral("frmRebate");
const QString kReady = QStringLiteral("Ready...");
const QString kProductInfo = QStringLiteral("Product Info");
const QString kRebateInfo = QStringLiteral("Rebate Info");
const QString kFollowupInfo = QStringLiteral("Followup Info");

// The form's place when no position was saved, in twips (15 to a pixel).
constexpr int kDesignLeft = 600;
constexpr int kDesignTop = 450;

// The toolbar buttons of the main window that the form drives, by one-based position.
constexpr int kToolbarSave = 3;
constexpr int kToolbarPrint = 4;
constexpr int kToolbarDelete = 6;

constexpr int kDaysToDue = 56; // a rebate is due eight weeks after it was mailed

QString CaptionFor(const QString& rebateName) {
    return QStringLiteral("Rebate Form - [") + rebateName + QLatin1Char(']');
}

bool IsDigit(int keyAscii) {
    return keyAscii >= '0' && keyAscii <= '9';
}

// The value of a money text, as the save and the checks read it.
double ValueOf(const QString& text) {
    return CDbl(text);
}

QIcon Picture(const QString& key) {
    return QIcon(QStringLiteral(":/icons/%1.svg").arg(key));
}

// The mouse pointers over the link fields, made from the pictures of the same names.
QCursor LinkCursor(const QString& key) {
    return QCursor(ImageList::Render(QStringLiteral(":/icons/%1.svg").arg(key), 24));
}

// The colours of the two link fields.
const QColor kLinkColor(0, 0, 255);          // not followed yet
const QColor kVisitedLinkColor(255, 0, 255); // followed in this form's life
const QColor kHotLinkColor(255, 0, 0);       // the mouse over it

QColor ForeColor(const QWidget* field) {
    return field->palette().color(QPalette::Text);
}

void SetForeColor(QWidget* field, const QColor& color) {
    QPalette palette = field->palette();
    palette.setColor(QPalette::Text, color);
    field->setPalette(palette);
}

// The years a date field takes.
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

// The digits of a text, "0" to "9" only.
QString DigitsOnly(const QString& text) {
    QString digits;
    for (const QChar ch : text)
        if (ch >= QLatin1Char('0') && ch <= QLatin1Char('9'))
            digits += ch;
    return digits;
}
} // namespace

// --- loading --------------------------------------------------------------------------------

frmRebate* frmRebate::Instance() {
    return gInstance;
}

void frmRebate::RegisterFactory() {
    Forms::SetFactory(kFormName, [] { return static_cast<QWidget*>(LoadAndShow()); });
}

frmRebate* frmRebate::LoadAndShow() {
    if (gInstance)
        return gInstance;
    auto* form = new frmRebate;
    QPoint position = form->pos();
    if (MainFrame* main = MainFrame::Instance()) {
        QMdiSubWindow* window = main->AddChild(form);
        // A position from the settings where the window can't be seen goes back to the design's.
        if (!IsReachable(QRect(position, window->size()), main->Area()->viewport()->rect()))
            position = QPoint(kDesignLeft / kTwipsPerPixel, kDesignTop / kTwipsPerPixel);
        window->move(position);
        main->AttachWindowList(form->mnuWindowList);
        // The form owns the main toolbar's record buttons while it is the active child; the
        // whole program losing the focus (no active child) changes nothing.
        connect(main->Area(), &QMdiArea::subWindowActivated, form, [form](QMdiSubWindow* active) {
            if (!active || form->mbUnloaded)
                return;
            if (active == form->Window() && !form->mbActive) {
                form->mbActive = true;
                form->Form_Activate();
            } else if (active != form->Window() && form->mbActive) {
                form->mbActive = false;
                form->Form_Deactivate();
            }
        });
    }
    // The first field of the first page takes the focus, as the first control in the tab order.
    form->txtFields(RebateField::ProductName)->setFocus(Qt::OtherFocusReason);
    form->Window()->show();
    form->ZOrder();
    return form;
}

frmRebate::frmRebate() {
    setObjectName(kFormName);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(CaptionFor(QStringLiteral("New Record")));
    gInstance = this;
    Forms::Register(this);
    clsRebate::SetRebateFormSource([]() -> std::optional<QString> {
        if (!gInstance)
            return std::nullopt;
        return gInstance->RebateID();
    });

    BuildMenus();
    BuildPages();
    resize(660, 430);
    // The form sees keys before its controls, and the clicks on labels and the focus of the
    // buttons, through one filter.
    qApp->installEventFilter(this);

    Form_Load();
}

frmRebate::~frmRebate() {
    if (gInstance == this)
        gInstance = nullptr;
    Forms::Unregister(this);
}

QList<QMenu*> frmRebate::Menus() const {
    return {mnuFile, mnuEdit, mnuView, mnuWindowList, mnuHelp};
}

QString frmRebate::RebateID() const {
    return txtFields(RebateField::RebateID)->text();
}

FieldEdit* frmRebate::txtFields(int index) const {
    return mFields.value(index);
}

QCheckBox* frmRebate::chkFields(int index) const {
    return mChecks.value(index);
}

BusyState::StatusSetter frmRebate::StatusLabel() const {
    return [label = QPointer<QLabel>(lblStatus)](const QString& text) {
        if (label)
            label->setText(text);
    };
}

QWidget* frmRebate::Window() const {
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    return sub ? static_cast<QWidget*>(sub) : const_cast<frmRebate*>(this);
}

// --- layout ---------------------------------------------------------------------------------

void frmRebate::BuildMenus() {
    auto addAction = [this](QMenu* menu, const char* name, const QString& caption) {
        QAction* action = menu->addAction(caption);
        action->setObjectName(QLatin1String(name));
        return action;
    };

    mnuFile = new QMenu(QStringLiteral("&File"), this);
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuSaveRecord = addAction(mnuFile, "mnuSaveRecord", QStringLiteral("&Save Record"));
    connect(mnuSaveRecord, &QAction::triggered, this, &frmRebate::mnuSaveRecord_Click);
    mnuSaveRecordAndCloseForm = addAction(mnuFile, "mnuSaveRecordAndCloseForm",
                                          QStringLiteral("Save Record && &Close Form"));
    connect(mnuSaveRecordAndCloseForm, &QAction::triggered, this, &frmRebate::cmdOK_Click);
    connect(addAction(mnuFile, "mnuCloseWOSave", QStringLiteral("Close &without Saving")),
            &QAction::triggered, this, &frmRebate::Unload);
    mnuFile->addSeparator();
    connect(addAction(mnuFile, "mnuDeleteRecord", QStringLiteral("&Delete Record")),
            &QAction::triggered, this, &frmRebate::mnuDeleteRecord_Click);
    mnuPrint = addAction(mnuFile, "mnuPrint", QStringLiteral("&Print Record"));
    connect(mnuPrint, &QAction::triggered, this, &frmRebate::mnuPrint_Click);

    mnuEdit = new QMenu(QStringLiteral("&Edit"), this);
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    connect(addAction(mnuEdit, "mnuUndo", QStringLiteral("&Undo\tEsc")), &QAction::triggered, this,
            &frmRebate::mnuUndo_Click);
    mnuEdit->addSeparator();
    connect(addAction(mnuEdit, "mnuCut", QStringLiteral("Cu&t")), &QAction::triggered, this,
            &frmRebate::mnuCut_Click);
    connect(addAction(mnuEdit, "mnuCopy", QStringLiteral("&Copy")), &QAction::triggered, this,
            &frmRebate::mnuCopy_Click);
    connect(addAction(mnuEdit, "mnuPaste", QStringLiteral("&Paste")), &QAction::triggered, this,
            &frmRebate::mnuPaste_Click);
    mnuEdit->addSeparator();
    connect(addAction(mnuEdit, "mnuZoom", QStringLiteral("&Zoom...\tAlt+Z")), &QAction::triggered,
            this, &frmRebate::mnuZoom_Click);

    mnuView = new QMenu(QStringLiteral("&View"), this);
    mnuView->setObjectName(QStringLiteral("mnuView"));
    mnuToolbar = addAction(mnuView, "mnuToolbar", QStringLiteral("&Toolbar"));
    mnuToolbar->setCheckable(true);
    mnuToolbar->setChecked(true);
    connect(mnuToolbar, &QAction::triggered, this, [](bool checked) {
        if (MainFrame* main = MainFrame::Instance())
            main->SetToolbarVisible(checked);
    });
    mnuView->addSeparator();
    connect(addAction(mnuView, "mnuOptions", QStringLiteral("&Options...")), &QAction::triggered,
            this, [] { RunFrameCommand(MainFrame::Command::Options); });

    mnuWindowList = new QMenu(QStringLiteral("&Window"), this);
    mnuWindowList->setObjectName(QStringLiteral("mnuWindowList"));
    connect(addAction(mnuWindowList, "mnuTileHorizontally", QStringLiteral("Tile &Horizontally")),
            &QAction::triggered, this,
            [] { RunFrameCommand(MainFrame::Command::TileHorizontally); });
    connect(addAction(mnuWindowList, "mnuTileVertically", QStringLiteral("Tile &Vertically")),
            &QAction::triggered, this, [] { RunFrameCommand(MainFrame::Command::TileVertically); });
    connect(addAction(mnuWindowList, "mnuCascade", QStringLiteral("&Cascade")), &QAction::triggered,
            this, [] { RunFrameCommand(MainFrame::Command::Cascade); });

    mnuHelp = new QMenu(QStringLiteral("&Help"), this);
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    connect(addAction(mnuHelp, "mnuContents", QStringLiteral("&Contents...")), &QAction::triggered,
            this, [] { RunFrameCommand(MainFrame::Command::HelpContents); });
    connect(addAction(mnuHelp, "mnuSearchForHelpOn", QStringLiteral("&Search For Help On...")),
            &QAction::triggered, this,
            [] { RunFrameCommand(MainFrame::Command::SearchForHelpOn); });
    mnuHelp->addSeparator();
    connect(addAction(mnuHelp, "mnuAbout", QStringLiteral("&About Vantry! Vantry!...")),
            &QAction::triggered, this, [] { RunFrameCommand(MainFrame::Command::About); });
    connect(addAction(mnuHelp, "mnuTipOfTheDay", QStringLiteral("Show &Tip of the Day...")),
            &QAction::triggered, this, [] { RunFrameCommand(MainFrame::Command::TipOfTheDay); });
    mnuHelp->addSeparator();
    connect(addAction(mnuHelp, "mnuTCR", QStringLiteral("Thrift Courier on the web...")),
            &QAction::triggered, this, [] { OpenDocument(gTCRLink); });
}

FieldEdit* frmRebate::AddField(QFormLayout* form, int index, const QString& dataField,
                               const QString& caption, const QString& tag, QWidget* beside) {
    auto* field = new FieldEdit(index, dataField, tag);
    // Dates and amounts are short; names, addresses and remarks take what room there is.
    const int digit = field->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    if (ClassOf(dataField) == FieldClass::Date || ClassOf(dataField) == FieldClass::Currency) {
        field->setMinimumWidth(digit * 12);
        field->setMaximumWidth(digit * 16);
    } else {
        field->setMinimumWidth(digit * 18);
    }
    auto* label = new QLabel(caption);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setObjectName(QStringLiteral("lblLabels_%1").arg(index));
    label->setBuddy(field);
    mLabels.insert(label, index);
    mFields.insert(index, field);

    field->KeyDown = [this](FieldEdit& f, int& keyCode, int shift) {
        txtFields_KeyDown(f.Index(), keyCode, shift);
    };
    field->KeyPress = [this](FieldEdit& f, int& keyAscii) {
        txtFields_KeyPress(f.Index(), keyAscii);
    };
    field->KeyUp = [this](FieldEdit& f, int keyCode, int shift) {
        txtFields_KeyUp(f.Index(), keyCode, shift);
    };
    field->GotFocus = [this](FieldEdit& f) {
        txtFields_GotFocus(f.Index());
    };
    field->Validate = [this](FieldEdit& f, bool& cancel) {
        txtFields_Validate(f.Index(), cancel);
    };
    connect(field, &QLineEdit::textChanged, this, [this, index] { txtFields_Change(index); });
    connect(field, &QLineEdit::selectionChanged, this, [this, field] {
        if (field->hasFocus())
            UpdateCutCopyButtons();
    });
    if (index == RebateField::Email || index == RebateField::WebSite) {
        field->setMouseTracking(true);
        SetForeColor(field, kLinkColor);
        field->setCursor(LinkCursor(QStringLiteral("nohyperlink")));
    }

    if (!form)
        return field;
    if (beside) {
        auto* row = new QHBoxLayout;
        row->setSpacing(4);
        row->addWidget(field, 1);
        row->addWidget(beside);
        form->addRow(label, row);
    } else {
        form->addRow(label, field);
    }
    return field;
}

QCheckBox* frmRebate::AddCheck(int index, const QString& caption, const QString& tag) {
    auto* box = new QCheckBox(caption);
    box->setObjectName(QStringLiteral("chkFields_%1").arg(index));
    box->setProperty("Tag", tag);
    mChecks.insert(index, box);
    connect(box, &QCheckBox::toggled, this, [this, index] { chkFields_Click(index); });
    return box;
}

namespace {
QFormLayout* NewFormLayout() {
    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    return form;
}

QGroupBox* Frame(const char* name, const QString& caption) {
    auto* frame = new QGroupBox(caption);
    frame->setObjectName(QLatin1String(name));
    return frame;
}

QLabel* PictureLabel(const char* name, const QString& key) {
    auto* picture = new QLabel;
    picture->setObjectName(QLatin1String(name));
    picture->setPixmap(Picture(key).pixmap(32, 32));
    picture->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    picture->setFixedSize(36, 36);
    return picture;
}
} // namespace

QWidget* frmRebate::BuildProductPage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("picTabs_0"));
    auto* Frame2 = Frame("Frame2", QStringLiteral("Product Information"));
    auto* intro = new QHBoxLayout;
    intro->addWidget(PictureLabel("Image1", QStringLiteral("new")));
    auto* lblProduct =
        new QLabel(QStringLiteral("Enter information on the product you purchased."));
    lblProduct->setObjectName(QStringLiteral("lblProduct"));
    lblProduct->setWordWrap(true);
    intro->addWidget(lblProduct, 1);

    QFormLayout* form = NewFormLayout();
    AddField(form, RebateField::ProductName, QStringLiteral("ProductName"),
             QStringLiteral("Product &Name:"), QStringLiteral("Name of product purchased..."));
    AddField(form, RebateField::LocationPurchased, QStringLiteral("LocationPurchased"),
             QStringLiteral("&Location Purchased:"),
             QStringLiteral("Location where product purchased..."));
    AddField(form, RebateField::DatePurchased, QStringLiteral("DatePurchased"),
             QStringLiteral("Date P&urchased:"), QStringLiteral("Date product was purchased..."));
    AddField(form, RebateField::PurchasePrice, QStringLiteral("PurchasePrice"),
             QStringLiteral("Purc&hase Price:"), QStringLiteral("Price you paid for product..."));
    AddField(form, RebateField::CouponAmount, QStringLiteral("CouponAmount"),
             QStringLiteral("Coupon A&mount:"),
             QStringLiteral("Amount of savings from coupons..."));

    auto* frameLayout = new QVBoxLayout(Frame2);
    frameLayout->addLayout(intro);
    frameLayout->addLayout(form);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(Frame2);
    layout->addStretch(1);
    return page;
}

QWidget* frmRebate::BuildRebatePage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("picTabs_1"));

    auto* Frame1 = Frame("Frame1", QStringLiteral("Rebate Contact Information"));
    QFormLayout* contact = NewFormLayout();
    auto smallButton = [](const char* name, const QString& key, const QString& tip) {
        auto* button = new QPushButton;
        button->setObjectName(QLatin1String(name));
        button->setIcon(Picture(key));
        button->setToolTip(tip);
        button->setAccessibleName(tip);
        button->setFixedWidth(32);
        return button;
    };
    cmdDial = smallButton("cmdDial", QStringLiteral("dialer"), QStringLiteral("Dial the number"));
    cmdEditEmail = smallButton("cmdEditEmail", QStringLiteral("hyperlink"),
                               QStringLiteral("Edit the email address"));
    cmdEditWeb = smallButton("cmdEditWeb", QStringLiteral("hyperlink"),
                             QStringLiteral("Edit the web site URL"));

    connect(cmdDial, &QPushButton::clicked, this, &frmRebate::cmdDial_Click);
    connect(cmdEditEmail, &QPushButton::clicked, this, &frmRebate::cmdEditEmail_Click);
    connect(cmdEditWeb, &QPushButton::clicked, this, &frmRebate::cmdEditWeb_Click);

    AddField(contact, RebateField::RebateName, QStringLiteral("RebateName"),
             QStringLiteral("&Rebate Name:"), QStringLiteral("Name of rebate offer..."));
    AddField(contact, RebateField::Address, QStringLiteral("Address"), QStringLiteral("Addr&ess:"),
             QStringLiteral("Address where rebate mailed..."));
    AddField(contact, RebateField::PhoneNumber, QStringLiteral("PhoneNumber"),
             QStringLiteral("&Phone Number:"), QStringLiteral("Rebate contact phone number..."),
             cmdDial);
    AddField(contact, RebateField::Email, QStringLiteral("Email"), QStringLiteral("&Email:"),
             QStringLiteral("Contact email address..."), cmdEditEmail);
    AddField(contact, RebateField::WebSite, QStringLiteral("WebSite"), QStringLiteral("&Web Site:"),
             QStringLiteral("Rebate web site address..."), cmdEditWeb);
    AddField(contact, RebateField::RebateAmount, QStringLiteral("RebateAmount"),
             QStringLiteral("Rebate A&mount:"), QStringLiteral("Rebate amount due..."));
    AddField(contact, RebateField::ExpDate, QStringLiteral("ExpDate"),
             QStringLiteral("Expiration Date:"),
             QStringLiteral("Expiration date of rebate offer..."));
    AddField(contact, RebateField::Remarks, QStringLiteral("Remarks"), QStringLiteral("Remar&ks:"),
             QStringLiteral("Remarks for this rebate offer..."));
    auto* contactLayout = new QVBoxLayout(Frame1);
    contactLayout->addLayout(contact);

    auto* Frame3 = Frame("Frame3", QStringLiteral("Submission Information"));
    QFormLayout* submission = NewFormLayout();
    AddField(submission, RebateField::DateSent, QStringLiteral("DateSent"),
             QStringLiteral("Date Se&nt:"), QStringLiteral("Date rebate was mailed..."));
    AddField(submission, RebateField::PostagePrice, QStringLiteral("PostagePrice"),
             QStringLiteral("Po&stage Price:"), QStringLiteral("Cost of mailing rebate..."));
    AddField(submission, RebateField::DateDue, QStringLiteral("DateDue"),
             QStringLiteral("Da&te Due:"), QStringLiteral("Date rebate is due..."));
    AddField(submission, RebateField::DateReceived, QStringLiteral("DateReceived"),
             QStringLiteral("Date Recei&ved:"), QStringLiteral("Date rebate was received..."));
    AddField(submission, RebateField::AmountReceived, QStringLiteral("AmountReceived"),
             QStringLiteral("Amount Rec&'d:"), QStringLiteral("Rebate amount received..."));
    auto* submissionLayout = new QVBoxLayout(Frame3);
    submissionLayout->addLayout(submission);

    auto* frames = new QHBoxLayout;
    frames->addWidget(Frame1, 1, Qt::AlignTop);
    frames->addWidget(Frame3, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(page);
    layout->addLayout(frames);
    layout->addStretch(1);
    return page;
}

QWidget* frmRebate::BuildFollowupPage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("picTabs_2"));

    auto* Frame4 = Frame("Frame4", QStringLiteral("Followup Information"));
    QFormLayout* followup = NewFormLayout();
    AddField(followup, RebateField::FollowupDate, QStringLiteral("FollowupDate"),
             QStringLiteral("&Followup Date:"), QStringLiteral("Date followup request mailed..."));
    AddField(followup, RebateField::FollowupPostage, QStringLiteral("FollowupPostage"),
             QStringLiteral("Followup &Postage:"), QStringLiteral("Cost of followup postage..."));
    auto* followupLayout = new QHBoxLayout(Frame4);
    followupLayout->addWidget(PictureLabel("imgFollowup", QStringLiteral("followup")));
    followupLayout->addLayout(followup, 1);

    auto* fraRejected = Frame("fraRejected", QStringLiteral("Rejection Information"));
    QFormLayout* rejected = NewFormLayout();
    rejected->addRow(QString(), AddCheck(RebateCheck::Rejected, QStringLiteral("Rebate &Rejected"),
                                         QStringLiteral("Rejection status...")));
    AddField(rejected, RebateField::ReasonRejected, QStringLiteral("ReasonRejected"),
             QStringLiteral("R&eason Rejected:"),
             QStringLiteral("Reason your request was rejected..."));
    // The Deleted box is never shown: it only carries the flag between loading, deleting and
    // saving.
    QCheckBox* deleted =
        AddCheck(RebateCheck::Deleted, QStringLiteral("&Delete"), QStringLiteral("Deleted..."));
    deleted->setParent(fraRejected);
    deleted->setVisible(false);
    auto* rejectedLayout = new QHBoxLayout(fraRejected);
    rejectedLayout->addWidget(PictureLabel("imgRejected", QStringLiteral("rejected")));
    rejectedLayout->addLayout(rejected, 1);

    // The labels of the two frames line up.
    int labelWidth = 0;
    for (int index :
         {RebateField::FollowupDate, RebateField::FollowupPostage, RebateField::ReasonRejected})
        labelWidth = qMax(labelWidth, mLabels.key(index)->sizeHint().width());
    for (int index :
         {RebateField::FollowupDate, RebateField::FollowupPostage, RebateField::ReasonRejected})
        mLabels.key(index)->setMinimumWidth(labelWidth);

    fraAttachments = new AttachmentsBox;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(Frame4);
    layout->addWidget(fraRejected);
    layout->addWidget(fraAttachments, 1);
    return page;
}

QWidget* frmRebate::BuildButtons() {
    auto* picButtons = new QWidget;
    picButtons->setObjectName(QStringLiteral("picButtons"));
    auto button = [this](const char* name, const QString& caption, const QString& tag) {
        auto* b = new QPushButton(caption);
        b->setObjectName(QLatin1String(name));
        b->setProperty("Tag", tag);
        b->setAutoDefault(true); // Enter presses the button that has the focus
        return b;
    };
    cmdDelete =
        button("cmdDelete", QStringLiteral("Delete"), QStringLiteral("Delete this record..."));
    cmdOK = button("cmdOK", QStringLiteral("&OK"), QStringLiteral("Save and close..."));
    cmdCancel =
        button("cmdCancel", QStringLiteral("&Cancel"), QStringLiteral("Close without saving...*"));
    connect(cmdDelete, &QPushButton::clicked, this, [this] {
        if (FocusMovesTo(cmdDelete))
            cmdDelete_Click();
    });
    connect(cmdOK, &QPushButton::clicked, this, [this] {
        if (FocusMovesTo(cmdOK))
            cmdOK_Click();
    });
    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        if (FocusMovesTo(cmdCancel))
            cmdCancel_Click();
    });
    auto* layout = new QHBoxLayout(picButtons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdDelete);
    layout->addStretch(1);
    layout->addWidget(cmdOK);
    layout->addWidget(cmdCancel);
    return picButtons;
}

QWidget* frmRebate::BuildStatusStrip() {
    auto* picStatBox = new QWidget;
    picStatBox->setObjectName(QStringLiteral("picStatBox"));
    lblStatus = new QLabel(kReady);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    lblStatus->setFrameShape(QFrame::Panel);
    lblStatus->setFrameShadow(QFrame::Sunken);
    lblStatus->setMinimumWidth(120);

    // The key is made by the first save and never typed.
    FieldEdit* id =
        AddField(nullptr, RebateField::RebateID, QStringLiteral("RebateID"), QString(), QString());
    id->setReadOnly(true);
    id->setFocusPolicy(Qt::ClickFocus);
    id->setFixedWidth(id->fontMetrics().horizontalAdvance(QStringLiteral("00000000000000")) + 16);
    auto* label = mLabels.key(RebateField::RebateID);
    label->setText(QStringLiteral("RebateID:"));

    auto* layout = new QHBoxLayout(picStatBox);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lblStatus, 1);
    layout->addWidget(label);
    layout->addWidget(id);
    return picStatBox;
}

void frmRebate::BuildPages() {
    tbsTabs = new QTabWidget;
    tbsTabs->setObjectName(QStringLiteral("tbsTabs"));
    tbsTabs->addTab(BuildProductPage(), kProductInfo);
    tbsTabs->addTab(BuildRebatePage(), kRebateInfo);
    tbsTabs->addTab(BuildFollowupPage(), kFollowupInfo);
    tbsTabs->setTabToolTip(0, QStringLiteral("View Product Information"));
    tbsTabs->setTabToolTip(1, QStringLiteral("View RebateInformation"));
    tbsTabs->setTabToolTip(2, QStringLiteral("View Followup Information"));
    // A click on a tab takes the focus, so the field being left checks itself first.
    tbsTabs->tabBar()->setFocusPolicy(Qt::StrongFocus);

    QWidget* buttons = BuildButtons();
    QWidget* status = BuildStatusStrip();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tbsTabs, 1);
    layout->addWidget(buttons);
    layout->addWidget(status);

    // Page by page, top to bottom, each button after the field it serves.
    const QList<QWidget*> order = {txtFields(RebateField::ProductName),
                                   txtFields(RebateField::LocationPurchased),
                                   txtFields(RebateField::DatePurchased),
                                   txtFields(RebateField::PurchasePrice),
                                   txtFields(RebateField::CouponAmount),
                                   txtFields(RebateField::RebateName),
                                   txtFields(RebateField::Address),
                                   txtFields(RebateField::PhoneNumber),
                                   cmdDial,
                                   txtFields(RebateField::Email),
                                   cmdEditEmail,
                                   txtFields(RebateField::WebSite),
                                   cmdEditWeb,
                                   txtFields(RebateField::RebateAmount),
                                   txtFields(RebateField::ExpDate),
                                   txtFields(RebateField::Remarks),
                                   txtFields(RebateField::DateSent),
                                   txtFields(RebateField::PostagePrice),
                                   txtFields(RebateField::DateDue),
                                   txtFields(RebateField::DateReceived),
                                   txtFields(RebateField::AmountReceived),
                                   txtFields(RebateField::FollowupDate),
                                   txtFields(RebateField::FollowupPostage),
                                   chkFields(RebateCheck::Rejected),
                                   txtFields(RebateField::ReasonRejected),
                                   fraAttachments->lstAttachments,
                                   fraAttachments->cmdAttach,
                                   fraAttachments->cmdOpen,
                                   fraAttachments->cmdRemove,
                                   cmdDelete,
                                   cmdOK,
                                   cmdCancel};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

// --- life cycle -----------------------------------------------------------------------------

void frmRebate::Form_Load() {
    BusyState busy(QStringLiteral("Loading..."), StatusLabel());

    const double left = ReadTwips(Setting::RebateLeft).value_or(kDesignLeft);
    const double top = ReadTwips(Setting::RebateTop).value_or(kDesignTop);
    move(qRound(left / kTwipsPerPixel), qRound(top / kTwipsPerPixel));

    try {
        Rebate = std::make_unique<clsRebate>();
        if (gbNewRecord) {
            Rebate->AddNew();
            mbIsNew = true;
        } else {
            mbIsLoaded = true;
            FillFromRebate();
        }
    } catch (const VbError& e) {
        busy.Done();
        LogError(e, kFormName, QStringLiteral("Form_Load"));
    }

    if (gbNewRecord) {
        gbNewRecord = false;
        cmdDelete->setEnabled(false);
        SetToolbarButton(kToolbarDelete, false);
        chkFields(RebateCheck::Rejected)->setChecked(false);
        DisablePrint();
        setWindowTitle(CaptionFor(QStringLiteral("New Record")));
    } else {
        mbIsNew = false;
        mbEdited = false;
        mRecordChanged = false;
        mbIsLoaded = true;
        cmdDelete->setEnabled(true);
        SetToolbarButton(kToolbarDelete, true);
        EnablePrint();
        setWindowTitle(CaptionFor(txtFields(RebateField::RebateName)->text()));
    }
    cmdCancel->setEnabled(true);
    DisableSave();
    fraAttachments->SetRebateID(RebateID());
}

// Fills the controls in index order; each fill runs the field's change rules, which is why
// the load clears the change flags afterwards.
void frmRebate::FillFromRebate() {
    const clsRebate& r = *Rebate;
    auto money = [](double value) {
        return QStringLiteral("$") + Format(value, QStringLiteral("0.00"));
    };
    txtFields(RebateField::Address)->setText(r.Address());
    txtFields(RebateField::DatePurchased)->setText(r.DatePurchased());
    txtFields(RebateField::PurchasePrice)->setText(money(r.PurchasePrice()));
    txtFields(RebateField::CouponAmount)->setText(money(r.CouponAmount()));
    txtFields(RebateField::RebateAmount)->setText(money(r.RebateAmount()));
    txtFields(RebateField::DateSent)->setText(r.DateSent());
    txtFields(RebateField::PostagePrice)->setText(money(r.PostagePrice()));
    txtFields(RebateField::Email)->setText(r.Email());
    txtFields(RebateField::AmountReceived)->setText(money(r.AmountReceived()));
    txtFields(RebateField::DateDue)->setText(r.DateDue());
    txtFields(RebateField::DateReceived)->setText(r.DateReceived());
    txtFields(RebateField::FollowupDate)->setText(r.FollowupDate());
    txtFields(RebateField::FollowupPostage)->setText(money(r.FollowupPostage()));
    txtFields(RebateField::PhoneNumber)->setText(r.PhoneNumber());
    txtFields(RebateField::ProductName)->setText(r.ProductName());
    txtFields(RebateField::LocationPurchased)->setText(r.LocationPurchased());
    txtFields(RebateField::ReasonRejected)->setText(r.ReasonRejected());
    txtFields(RebateField::Remarks)->setText(r.Remarks());
    txtFields(RebateField::RebateID)->setText(r.RebateID());
    txtFields(RebateField::ExpDate)->setText(r.ExpDate());
    txtFields(RebateField::RebateName)->setText(r.RebateName());
    txtFields(RebateField::WebSite)->setText(r.WebSite());
    chkFields(RebateCheck::Deleted)->setChecked(r.Deleted());
    chkFields(RebateCheck::Rejected)->setChecked(r.Rejected());
}

void frmRebate::Form_Unload() {
    if (mbUnloaded)
        return;
    mbUnloaded = true;
    SetMousePointer(MousePointer::Default);
    if (!Window()->isMinimized()) {
        const QPoint position = Window()->pos();
        WriteSetting(Setting::RebateLeft, QString::number(position.x() * kTwipsPerPixel));
        WriteSetting(Setting::RebateTop, QString::number(position.y() * kTwipsPerPixel));
    }
    Form_Deactivate();
    Rebate.reset();
    qApp->removeEventFilter(this);
    if (gInstance == this)
        gInstance = nullptr;
    Forms::Unregister(this);
}

void frmRebate::closeEvent(QCloseEvent* event) {
    Form_Unload();
    event->accept();
}

void frmRebate::Unload() {
    Form_Unload();
    Window()->close();
}

void frmRebate::ZOrder() {
    QWidget* window = Window();
    window->raise();
    if (auto* sub = qobject_cast<QMdiSubWindow*>(window); sub && sub->mdiArea())
        sub->mdiArea()->setActiveSubWindow(sub);
    else
        window->activateWindow();
}

void frmRebate::Form_Activate() {
    if (MainFrame* main = MainFrame::Instance())
        main->ShowRebateButtons();
}

void frmRebate::Form_Deactivate() {
    if (MainFrame* main = MainFrame::Instance())
        main->HideRebateButtons();
}

// --- button states --------------------------------------------------------------------------

void frmRebate::SetToolbarButton(int index, bool enabled) {
    if (MainFrame* main = MainFrame::Instance())
        main->MainToolbar()->Buttons(index).SetEnabled(enabled);
}

void frmRebate::DisablePrint() {
    SetToolbarButton(kToolbarPrint, false);
    mnuPrint->setEnabled(false);
}

void frmRebate::EnablePrint() {
    SetToolbarButton(kToolbarPrint, true);
    mnuPrint->setEnabled(true);
}

void frmRebate::DisableSave() {
    SetToolbarButton(kToolbarSave, false);
    mnuSaveRecord->setEnabled(false);
    mnuSaveRecordAndCloseForm->setEnabled(false);
    cmdOK->setEnabled(false);
}

void frmRebate::EnableSave() {
    SetToolbarButton(kToolbarSave, true);
    mnuSaveRecord->setEnabled(true);
    mnuSaveRecordAndCloseForm->setEnabled(true);
    cmdOK->setEnabled(true);
}

// --- tabs, labels and form keys -------------------------------------------------------------

QString frmRebate::SelectedTab() const {
    return tbsTabs->tabText(tbsTabs->currentIndex());
}

void frmRebate::SelectTab(const QString& caption) {
    for (int i = 0; i < tbsTabs->count(); ++i) {
        if (tbsTabs->tabText(i) == caption)
            ChangePage(i);
    }
}

// A field on the page going away checks itself first, as the focus goes to the tabs; a field
// that refuses keeps its page on top.
void frmRebate::ChangePage(int index) {
    if (index != tbsTabs->currentIndex() && FocusMovesTo(tbsTabs->tabBar()))
        tbsTabs->setCurrentIndex(index);
}

void frmRebate::lblLabels_Click(int index) {
    if (FieldEdit* field = txtFields(index); field && field->isEnabled())
        SelectAllText(field);
}

bool frmRebate::Form_KeyDown(int keyCode, int shift) {
    const int count = tbsTabs->count();
    const int selected = tbsTabs->currentIndex();
    if (keyCode == vb::vbKeyControl)
        mbCtrlDown = true;
    if ((shift & (vb::vbShiftMask | vb::vbCtrlMask)) == vb::vbCtrlMask && keyCode == vb::vbKeyTab) {
        ChangePage((selected + 1) % count);
        return true;
    }
    if ((shift & (vb::vbShiftMask | vb::vbCtrlMask)) == (vb::vbShiftMask | vb::vbCtrlMask) &&
        keyCode == vb::vbKeyTab) {
        ChangePage((selected + count - 1) % count);
        return true;
    }
    if ((shift & vb::vbAltMask) && keyCode == vb::vbKeyZ) {
        mnuZoom_Click();
        return true;
    }
    return false;
}

void frmRebate::ShowTag(QWidget* control) {
    const QString tag = control->property("Tag").toString();
    lblStatus->setText(tag.isEmpty() ? kReady : tag);
}

bool frmRebate::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (!widget || (widget != this && !isAncestorOf(widget)))
            break;
        auto* key = static_cast<QKeyEvent*>(event);
        const int keyCode = FieldEdit::VbKeyCode(*key);
        if (event->type() == QEvent::KeyRelease) {
            if (keyCode == vb::vbKeyControl)
                mbCtrlDown = false;
            break;
        }
        if (Form_KeyDown(keyCode, FieldEdit::VbShift(key->modifiers())))
            return true;
        // Escape on the Rejected box is its undo: the box changes back.
        if (keyCode == vb::vbKeyEscape &&
            widget->objectName().startsWith(QLatin1String("chkFields_"))) {
            mnuUndo_Click();
            return true;
        }
        break;
    }
    case QEvent::Wheel:
        // The wheel would change pages around the check of the field that has the focus.
        if (watched == tbsTabs->tabBar())
            return true;
        break;
    case QEvent::MouseButtonRelease:
        if (auto* label = qobject_cast<QLabel*>(watched); label && mLabels.contains(label))
            lblLabels_Click(mLabels.value(label));
        if (auto* field = qobject_cast<FieldEdit*>(watched);
            field && mFields.value(field->Index()) == field) {
            if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
                txtFields_Click(field->Index());
            UpdateCutCopyButtons();
        }
        break;
    case QEvent::MouseMove:
        if (auto* field = qobject_cast<FieldEdit*>(watched);
            field && mFields.value(field->Index()) == field)
            txtFields_MouseMove(field->Index());
        else if (mbLinkHot && (watched == this || (qobject_cast<QWidget*>(watched) &&
                                                   isAncestorOf(static_cast<QWidget*>(watched)))))
            RestoreLinkColors();
        break;
    case QEvent::Leave:
        // Leaving a link for anywhere, also outside the form, gives it back its colour.
        if (mbLinkHot && (watched == txtFields(RebateField::Email) ||
                          watched == txtFields(RebateField::WebSite)))
            RestoreLinkColors();
        break;
    case QEvent::FocusIn: {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
            reason == Qt::MenuBarFocusReason)
            break;
        if (auto* control = qobject_cast<QWidget*>(watched);
            control &&
            (control == cmdOK || control == cmdCancel || control == cmdDelete ||
             control == cmdDial || mChecks.key(qobject_cast<QCheckBox*>(control), -1) >= 0))
            ShowTag(control);
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

// A button or the tabs, used while a field holds the focus, first take the focus, so the field
// checks itself; a field that refuses keeps the focus and the command doesn't run.
bool frmRebate::FocusMovesTo(QWidget* target) {
    // While a box has the window inactive, the field the window gives the focus back to is the
    // one being left.
    QWidget* focus = isActiveWindow() ? QApplication::focusWidget() : window()->focusWidget();
    auto* field = qobject_cast<FieldEdit*>(focus);
    if (focus == target || !field || !isAncestorOf(focus))
        return true;
    if (!isActiveWindow()) {
        // No focus events reach an inactive window: the field checks itself as on any move.
        if (!field->CheckLeave())
            return false;
        target->setFocus(Qt::ShortcutFocusReason);
        return true;
    }
    target->setFocus(Qt::ShortcutFocusReason);
    // After a refusal's box the window may still be inactive; the field is its focus all the same.
    return QApplication::focusWidget() != focus && focus->window()->focusWidget() != focus;
}

// --- field events ---------------------------------------------------------------------------

void frmRebate::txtFields_Change(int index) {
    mRecordChanged = true;
    mbEdited = true;
    EnableSave();
    // Each rule goes on past a failure of its own, as the old handler did.
    try {
        switch (index) {
        case RebateField::DateSent: {
            FieldEdit* postage = txtFields(RebateField::PostagePrice);
            bool fill = postage->text().isEmpty();
            if (!fill) {
                try {
                    fill = ValueOf(postage->text()) == 0;
                } catch (const VbError&) {
                    fill = true;
                }
            }
            if (fill)
                postage->setText(
                    Format(QVariant::fromValue(GetDefaultPostage()), QStringLiteral("0.00")));
            break;
        }
        case RebateField::Email:
        case RebateField::WebSite:
            if (!txtFields(index)->text().isEmpty())
                txtFields(index)->setCursor(LinkCursor(QStringLiteral("hyperlink")));
            break;
        case RebateField::FollowupDate:
            txtFields(RebateField::FollowupPostage)
                ->setText(
                    txtFields(RebateField::FollowupDate)->text().isEmpty()
                        ? QStringLiteral("0.00")
                        : Format(QVariant::fromValue(GetDefaultPostage()), QStringLiteral("0.00")));
            break;
        case RebateField::RebateName:
            setWindowTitle(CaptionFor(txtFields(RebateField::RebateName)->text()));
            break;
        default:
            break;
        }
    } catch (const VbError&) {
        // A postage setting that isn't an amount leaves the field as it is.
    }
}

void frmRebate::txtFields_GotFocus(int index) {
    FieldEdit* field = txtFields(index);
    SelectOnFocus(field);
    UpdateCutCopyButtons();
    if (index == RebateField::AmountReceived) {
        bool emptyOrZero = field->text().isEmpty();
        if (!emptyOrZero) {
            try {
                emptyOrZero = ValueOf(field->text()) == 0;
            } catch (const VbError&) {
                emptyOrZero = false;
            }
        }
        if (emptyOrZero && IsDate(txtFields(RebateField::DateReceived)->text()) &&
            !txtFields(RebateField::RebateAmount)->text().isEmpty() &&
            MsgBox(QStringLiteral("Did you receive the full amount?"), vb::vbYesNo | vb::vbQuestion,
                   QStringLiteral("Amount Received")) == vb::vbYes) {
            field->setText(txtFields(RebateField::RebateAmount)->text());
            mbEdited = true;
        }
    }
    ShowTag(field);
}

void frmRebate::txtFields_KeyDown(int, int& keyCode, int) {
    if (keyCode == vb::vbKeyF2) {
        if (auto* field = qobject_cast<FieldEdit*>(focusWidget()))
            SelectAllText(field);
    } else if (keyCode == vb::vbKeyControl) {
        mbCtrlDown = true;
    }
}

void frmRebate::txtFields_KeyUp(int, int keyCode, int) {
    if (keyCode == vb::vbKeyControl)
        mbCtrlDown = false;
}

void frmRebate::DateShortcutKey(FieldEdit* field, int keyAscii) {
    const QString text = field->text();
    const QString base = (!text.isEmpty() && IsDate(text)) ? text : QString();
    const QDate date = DateShortcut(keyAscii, base);
    if (date.year() < kFirstYear || date.year() > kLastYear) {
        // No date field holds a day outside the years 100 to 9999: the field keeps its date.
        MsgBox(QStringLiteral("Please enter a valid date."), vb::vbOKOnly,
               QStringLiteral("Invalid Date"));
        return;
    }
    field->setText(Format(date, QStringLiteral("mm/dd/yyyy")));
    mbEdited = true;
}

void frmRebate::CalendarKey(FieldEdit* field) {
    gsCalendarDate =
        field->text().isEmpty() ? QString() : Format(field->text(), QStringLiteral("mm/dd/yyyy"));
    gCalendarTarget = field;
    if (TheEntryTools().ShowCalendar)
        TheEntryTools().ShowCalendar(this);
}

void frmRebate::CalculatorKey(FieldEdit* field) {
    if (!field->text().isEmpty()) {
        try {
            gcCalculatorValue = CCur(field->text());
        } catch (const VbError& e) {
            // A text that isn't money can't seed the calculator; the field's check on leaving
            // tells the user.
            LogError(e, kFormName, QStringLiteral("txtFields_KeyPress"));
            return;
        }
    }
    if (TheEntryTools().ShowCalculator)
        TheEntryTools().ShowCalculator(this);
}

void frmRebate::WeekConverterKey(int index) {
    // Only Date Due converts, and only from a Date Sent.
    if (index != RebateField::DateDue || !IsDate(txtFields(RebateField::DateSent)->text()) ||
        !TheEntryTools().ShowWeekConverter)
        return;
    const QString due = TheEntryTools().ShowWeekConverter(txtFields(RebateField::DateSent)->text());
    if (due.isEmpty())
        return;
    txtFields(RebateField::DateDue)->setText(due);
    mbEdited = true;
}

void frmRebate::txtFields_KeyPress(int index, int& keyAscii) {
    FieldEdit* field = txtFields(index);
    if (keyAscii == vb::vbKeyEscape) {
        keyAscii = 0;
        mnuUndo_Click();
        mbEdited = true;
        return;
    }
    switch (ClassOf(field->DataField())) {
    case FieldClass::Date:
        if (IsDigit(keyAscii)) {
            mbEdited = true;
        } else if (keyAscii == '/') {
        } else if (keyAscii == 'w' || keyAscii == 'W') {
            keyAscii = 0;
            WeekConverterKey(index);
        } else if (QStringLiteral("yYtT=+-_").contains(QChar(keyAscii))) {
            const int key = keyAscii;
            keyAscii = 0;
            DateShortcutKey(field, key);
        } else if (keyAscii == 'c' || keyAscii == 'C') {
            keyAscii = 0;
            CalendarKey(field);
        } else if (keyAscii == vb::vbKeyBack) {
            mbEdited = true;
        } else {
            keyAscii = 0;
        }
        break;
    case FieldClass::Currency:
        if (IsDigit(keyAscii) || keyAscii == '.' || keyAscii == '$' || keyAscii == vb::vbKeyBack) {
            mbEdited = true;
        } else if (keyAscii == 'c' || keyAscii == 'C') {
            keyAscii = 0;
            CalculatorKey(field);
        } else {
            keyAscii = 0;
        }
        break;
    case FieldClass::Phone:
        if (IsDigit(keyAscii)) {
            mbEdited = true;
        } else if (IsAlpha(QChar(keyAscii))) {
            try {
                keyAscii = '0' + LetterToDigit(QChar(keyAscii));
                mbEdited = true;
            } catch (const VbError& e) {
                // The keypad has no digit for this letter: the field stays as it was.
                keyAscii = 0;
                LogError(e, kFormName, QStringLiteral("txtFields_KeyPress"));
            }
        }
        break;
    case FieldClass::Text:
        break;
    }
}

// --- validation -----------------------------------------------------------------------------

void frmRebate::txtFields_Validate(int index, bool& cancel) {
    FieldEdit* field = txtFields(index);
    const QString text = field->text();
    switch (ClassOf(field->DataField())) {
    case FieldClass::Date:
        if (!text.isEmpty()) {
            if (!IsDate(text)) {
                MsgBox(QStringLiteral("Please enter a valid date."), vb::vbOKOnly,
                       QStringLiteral("Invalid Date"));
                cancel = true;
            } else {
                field->setText(Format(CDate(text), QStringLiteral("mm/dd/yyyy")));
                mbEdited = true;
            }
        }
        if (index == RebateField::DateSent && txtFields(RebateField::DateDue)->text().isEmpty() &&
            IsDate(txtFields(RebateField::DateSent)->text())) {
            // Written in the default date format (M/d/yyyy), not the field format. A day past
            // 12/31/9999 is no date the fields hold: Date Due stays empty for the user to fill.
            const QDate due = CDate(txtFields(RebateField::DateSent)->text()).addDays(kDaysToDue);
            if (due.year() <= kLastYear) {
                txtFields(RebateField::DateDue)->setText(CStr(due));
                mbEdited = true;
            }
        }
        break;
    case FieldClass::Currency:
        if (!text.isEmpty()) {
            QString amount = text;
            if (!IsCurrency(amount)) {
                MsgBox(QStringLiteral("Please enter a valid currency amount."), vb::vbOKOnly,
                       QStringLiteral("Invalid Amount"));
                cancel = true;
            } else {
                field->setText(Format(QVariant::fromValue(CCur(amount)), QStringLiteral("$0.00")));
                mbEdited = true;
            }
        }
        break;
    case FieldClass::Phone:
        // A phone number is never refused, whatever it holds.
        mbEdited = true;
        break;
    case FieldClass::Text:
        break;
    }
}

bool frmRebate::ValidateRecord() {
    auto empty = [this](int index) {
        return txtFields(index)->text().isEmpty();
    };
    auto value = [this](int index) {
        return ValueOf(txtFields(index)->text());
    };
    auto later = [this](int first, int second) {
        return CDate(txtFields(first)->text()) > CDate(txtFields(second)->text());
    };
    // A failure: beep, say why, bring the page forward unless the tested one is showing, and
    // put the focus in the field. A field on a page that stays hidden (Date Due, when the
    // Followup Info page was on top) isn't given the focus.
    auto fail = [this](const QString& title, const QString& text, const QString& testTab,
                       const QString& goTab, int focus) {
        Beep();
        MsgBox(text, vb::vbOKOnly | vb::vbExclamation, title);
        if (SelectedTab() != testTab)
            SelectTab(goTab);
        if (txtFields(focus)->isVisibleTo(this))
            txtFields(focus)->setFocus(Qt::OtherFocusReason);
        return false;
    };

    if (empty(RebateField::RebateName))
        return fail(QStringLiteral("Missing Rebate Name"),
                    QStringLiteral("You must enter a Rebate Name before saving the record."),
                    kRebateInfo, kRebateInfo, RebateField::RebateName);
    if (empty(RebateField::ProductName))
        return fail(QStringLiteral("Missing Product Name"),
                    QStringLiteral("You must enter a Product Name before saving the record."),
                    kProductInfo, kProductInfo, RebateField::ProductName);
    if (empty(RebateField::PurchasePrice))
        return fail(QStringLiteral("Missing Purchase Price"),
                    QStringLiteral("You must enter a Purchase Price before saving the record."),
                    kProductInfo, kProductInfo, RebateField::PurchasePrice);
    if (empty(RebateField::RebateAmount))
        return fail(QStringLiteral("Missing Rebate Amount"),
                    QStringLiteral("You must enter a Rebate Amount before saving the record."),
                    kRebateInfo, kRebateInfo, RebateField::RebateAmount);
    if (!empty(RebateField::DateSent) && empty(RebateField::DateDue))
        return fail(QStringLiteral("Missing Date Due"),
                    QStringLiteral("You must enter a Date Due before saving the record."),
                    kFollowupInfo, kRebateInfo, RebateField::DateDue);
    const QString missingDateSent =
        QStringLiteral("You must enter a Date Sent before saving the record.");
    if (!empty(RebateField::DateDue) && empty(RebateField::DateSent))
        return fail(QStringLiteral("Missing Date Sent"), missingDateSent, kRebateInfo, kRebateInfo,
                    RebateField::DateSent);
    if (!empty(RebateField::PostagePrice) && empty(RebateField::DateSent) &&
        value(RebateField::PostagePrice) != 0)
        return fail(QStringLiteral("Missing Date Sent"), missingDateSent, kRebateInfo, kRebateInfo,
                    RebateField::DateSent);
    if (!empty(RebateField::AmountReceived) && value(RebateField::AmountReceived) != 0 &&
        empty(RebateField::DateReceived))
        return fail(QStringLiteral("Missing Date Received"),
                    QStringLiteral("You must enter a Date Received before saving the record."),
                    kRebateInfo, kRebateInfo, RebateField::DateReceived);
    if (!empty(RebateField::DateReceived) && empty(RebateField::AmountReceived))
        return fail(QStringLiteral("Missing Amount Received"),
                    QStringLiteral("You must enter an Amount Received before saving the record."),
                    kRebateInfo, kRebateInfo, RebateField::AmountReceived);
    if (!empty(RebateField::FollowupPostage) && empty(RebateField::FollowupDate) &&
        value(RebateField::FollowupPostage) != 0)
        return fail(QStringLiteral("Missing Followup Date"),
                    QStringLiteral("You must enter a Followup Date before saving the record."),
                    kFollowupInfo, kFollowupInfo, RebateField::FollowupDate);
    const QString datesInvalid = QStringLiteral("Dates Invalid");
    if (!empty(RebateField::DateSent) && !empty(RebateField::DateReceived) &&
        later(RebateField::DateSent, RebateField::DateReceived))
        return fail(datesInvalid,
                    QStringLiteral("Date Received must be greater than the Date Sent."),
                    kRebateInfo, kRebateInfo, RebateField::DateReceived);
    if (!empty(RebateField::DateSent) && !empty(RebateField::DateDue) &&
        later(RebateField::DateSent, RebateField::DateDue))
        return fail(datesInvalid, QStringLiteral("Date Due must be greater than the Date Sent."),
                    kRebateInfo, kRebateInfo, RebateField::DateDue);
    if (!empty(RebateField::DateSent) && !empty(RebateField::FollowupDate) &&
        later(RebateField::DateSent, RebateField::FollowupDate))
        return fail(datesInvalid,
                    QStringLiteral("Followup Date must be greater than the Date Sent."),
                    kFollowupInfo, kFollowupInfo, RebateField::FollowupDate);

    if (empty(RebateField::RebateID)) {
        txtFields(RebateField::RebateID)->setText(NewRebateID());
        mbEdited = true;
    }
    return true;
}

// The moment of the first save is the record's key. RebateID is the table's primary key, so a
// second that already holds a record gives way to the next free one.
QString frmRebate::NewRebateID() const {
    const QString pattern = QStringLiteral("yyyymmddhhnnss");
    QDateTime moment = Now();
    QString id = Format(moment, pattern);
    while (RebateQueries::RebateIDTaken(id)) {
        moment = moment.addSecs(1);
        id = Format(moment, pattern);
    }
    return id;
}

// --- saving ---------------------------------------------------------------------------------

// The field copy that both save paths share, by the written-values rules of each column.
void frmRebate::CopyFieldsToRebate() {
    if (!Rebate)
        throw VbError(VbError::ObjectNotSet);
    clsRebate& r = *Rebate;
    auto text = [this](int index) {
        return txtFields(index)->text();
    };
    auto amountOrZero = [&text](int index) {
        return text(index).isEmpty() ? 0.0 : ValueOf(text(index));
    };
    r.SetAddress(text(RebateField::Address));
    r.SetDatePurchased(text(RebateField::DatePurchased));
    r.SetPurchasePrice(amountOrZero(RebateField::PurchasePrice));
    r.SetCouponAmount(amountOrZero(RebateField::CouponAmount));
    if (!text(RebateField::RebateAmount).isEmpty())
        r.SetRebateAmount(ValueOf(text(RebateField::RebateAmount)));
    r.SetDateSent(text(RebateField::DateSent));
    if (!text(RebateField::PostagePrice).isEmpty())
        r.SetPostagePrice(ValueOf(text(RebateField::PostagePrice)));
    r.SetEmail(text(RebateField::Email));
    r.SetAmountReceived(amountOrZero(RebateField::AmountReceived));
    r.SetDateDue(text(RebateField::DateDue));
    r.SetDateReceived(text(RebateField::DateReceived));
    r.SetFollowupDate(text(RebateField::FollowupDate));
    // Followup postage is the default postage whenever a followup was mailed, whatever the
    // field shows.
    r.SetFollowupPostage(
        !text(RebateField::FollowupPostage).isEmpty() && !text(RebateField::FollowupDate).isEmpty()
            ? ValueOf(Format(QVariant::fromValue(GetDefaultPostage()), QStringLiteral("0.00")))
            : 0.0);
    r.SetPhoneNumber(text(RebateField::PhoneNumber));
    r.SetProductName(text(RebateField::ProductName));
    r.SetLocationPurchased(text(RebateField::LocationPurchased));
    r.SetReasonRejected(text(RebateField::ReasonRejected));
    r.SetRemarks(text(RebateField::Remarks));
    r.SetRebateID(text(RebateField::RebateID));
    r.SetExpDate(text(RebateField::ExpDate));
    r.SetRebateName(text(RebateField::RebateName));
    r.SetWebSite(text(RebateField::WebSite));
    r.SetDeleted(chkFields(RebateCheck::Deleted)->isChecked());
    r.SetRejected(chkFields(RebateCheck::Rejected)->isChecked());
}

void frmRebate::mnuSaveRecord_Click() {
    BusyState busy(QStringLiteral("Preparing to save..."), StatusLabel());
    try {
        if (ValidateRecord()) {
            CopyFieldsToRebate();
            Rebate->Update();
            if (mbIsNew)
                Rebate->RefreshFromRebateForm();
            else
                Rebate->Requery();
            mRecordChanged = false;
            mbIsNew = false;
            DisableSave();
            EnablePrint();
            cmdDelete->setEnabled(true);
            SetToolbarButton(kToolbarDelete, true);
            cmdCancel->setEnabled(true);
            mbEdited = false;
            DoEvents();
            gbRecordSaved = true;
            gsSavedRebateID = txtFields(RebateField::RebateID)->text();
            if (fraAttachments->RebateID() != gsSavedRebateID)
                fraAttachments->SetRebateID(gsSavedRebateID);
        }
    } catch (const VbError& e) {
        busy.Done();
        LogError(e, kFormName, QStringLiteral("mnuSaveRecord_Click"));
    }
}

void frmRebate::cmdOK_Click() {
    const QPointer<frmRebate> self(this);
    const QString location = QStringLiteral("cmdOK_Click");
    // The form may be gone by the end (it unloads after the save); the guard's status label
    // goes with it.
    BusyState busy(QStringLiteral("Saving..."), StatusLabel());
    bool valid = false;
    try {
        valid = ValidateRecord();
    } catch (const VbError& e) {
        // A text that can't be converted: the form stays with everything typed.
        busy.Done();
        LogError(e, kFormName, location);
        return;
    }
    if (!valid)
        return;

    Window()->hide();

    const QString id = txtFields(RebateField::RebateID)->text();
    try {
        CopyFieldsToRebate();
        Rebate->Update();
    } catch (const VbError& e) {
        // Nothing was written: the form comes back with everything typed.
        busy.Done();
        LogError(e, kFormName, location);
        if (self && IsFormLoaded(kFormName)) {
            Window()->show();
            cmdOK->setEnabled(true);
            ZOrder();
        }
        return;
    }

    try {
        Rebate.reset();
        Unload();
        DoEvents();
        gbRecordSaved = true;
        gsSavedRebateID = id;
        Q_EMIT Notifier::Instance().RecordSaved(id);
    } catch (const VbError& e) {
        busy.Done();
        LogError(e, kFormName, location);
    }
}

void frmRebate::cmdCancel_Click() {
    try {
        if (Rebate)
            Rebate->Cancel();
        Q_EMIT Notifier::Instance().RecordFormClosed();
    } catch (const VbError& e) {
        LogError(e, kFormName, QStringLiteral("cmdCancel_Click"));
    }
    Unload();
}

// A delete is a save with the Deleted flag set; the record leaves the Switchboard's lists
// whether or not the save went through.
void frmRebate::cmdDelete_Click() {
    if (MsgBox(QStringLiteral("Are you sure you want to delete the current record?"),
               vb::vbYesNo | vb::vbQuestion | vb::vbDefaultButton2,
               QStringLiteral("Delete Record?")) != vb::vbYes)
        return;
    const QString id = txtFields(RebateField::RebateID)->text();
    chkFields(RebateCheck::Deleted)->setChecked(true);
    mbEdited = true;
    cmdOK_Click();
    try {
        Q_EMIT Notifier::Instance().RecordDeleted(id);
    } catch (const VbError& e) {
        LogError(e, kFormName, QStringLiteral("cmdDelete_Click"));
    }
}

// --- the main window's commands ---------------------------------------------------------------

void frmRebate::Save() {
    mnuSaveRecord_Click();
}

void frmRebate::Delete() {
    // Taking the focus first makes the field being edited check itself.
    cmdDelete->setFocus();
    cmdDelete_Click();
}

void frmRebate::Undo() {
    // The focus comes back to the form's field before the undo acts on it.
    setFocus();
    if (QWidget* control = focusWidget())
        control->setFocus();
    mnuUndo_Click();
}

void frmRebate::Print() {
    if (RebateID().isEmpty()) {
        MsgBox(QStringLiteral("The current record has not been saved to the database. Please "
                              "save the record before trying to print."),
               vb::vbInformation, QStringLiteral("Unsaved Record"));
        return;
    }
    SetStatusText(QStringLiteral("Preparing to print..."));
    mnuPrint_Click();
}

void frmRebate::mnuDeleteRecord_Click() {
    cmdDelete_Click();
}

void frmRebate::chkFields_Click(int index) {
    if (index != RebateCheck::Rejected)
        return;
    mRecordChanged = true;
    mbEdited = true;
    EnableSave();
}

// --- edit commands --------------------------------------------------------------------------

void frmRebate::mnuUndo_Click() {
    QWidget* active = focusWidget();
    if (!active)
        return;
    if (active->objectName().contains(QLatin1String("txtFields"), Qt::CaseInsensitive)) {
        if (::CanUndo(active))
            UndoEdit(active);
    } else if (active->objectName().startsWith(QLatin1String("chkFields_"))) {
        QCheckBox* rejected = chkFields(RebateCheck::Rejected);
        rejected->setChecked(!rejected->isChecked());
    }
}

void frmRebate::mnuCopy_Click() {
    QClipboard* clipboard = QApplication::clipboard();
    clipboard->clear();
    if (auto* field = qobject_cast<QLineEdit*>(focusWidget()))
        clipboard->setText(field->selectedText());
}

void frmRebate::mnuCut_Click() {
    mnuCopy_Click();
    if (auto* field = qobject_cast<QLineEdit*>(focusWidget())) {
        // Deleted as by the Delete key, so the cut can be undone like typing.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_Delete, Qt::NoModifier);
        QApplication::sendEvent(field, &press);
        QApplication::sendEvent(field, &release);
    }
    mbEdited = true;
}

void frmRebate::mnuPaste_Click() {
    auto* field = qobject_cast<FieldEdit*>(focusWidget());
    if (!field)
        return;
    // The key rules don't see a paste; the field's check does, at once and again on leaving.
    field->PasteText(QApplication::clipboard()->text());
    bool cancel = false;
    txtFields_Validate(field->Index(), cancel);
    mbEdited = true;
}

void frmRebate::mnuZoom_Click() {
    QWidget* control = focusWidget();
    if (control && TheEntryTools().ShowZoomBox)
        TheEntryTools().ShowZoomBox(control);
}

void frmRebate::UpdateCutCopyButtons() {
    MainFrame* main = MainFrame::Instance();
    auto* field = qobject_cast<QLineEdit*>(focusWidget());
    if (!main || !field)
        return;
    const bool selected = field->hasSelectedText();
    for (const QString& key : {QStringLiteral("Cut"), QStringLiteral("Copy")}) {
        ToolbarButton& button = main->MainToolbar()->Buttons(key);
        if (button.Enabled() != selected)
            button.SetEnabled(selected);
    }
}

// --- contact links --------------------------------------------------------------------------

void frmRebate::txtFields_MouseMove(int index) {
    if (index != RebateField::Email && index != RebateField::WebSite)
        return;
    FieldEdit* field = txtFields(index);
    if (field->text().isEmpty()) {
        field->setCursor(LinkCursor(QStringLiteral("nohyperlink")));
    } else {
        field->setCursor(LinkCursor(QStringLiteral("hyperlink")));
        SetForeColor(field, kHotLinkColor);
    }
    mbLinkHot = true;
}

void frmRebate::RestoreLinkColors() {
    for (const auto& [field, visited] :
         {std::pair{txtFields(RebateField::WebSite), mbWebVisited},
          std::pair{txtFields(RebateField::Email), mbEmailVisited}}) {
        if (ForeColor(field) == kHotLinkColor)
            SetForeColor(field, visited ? kVisitedLinkColor : kLinkColor);
    }
}

void frmRebate::txtFields_Click(int index) {
    if (index != RebateField::Email && index != RebateField::WebSite)
        return;
    FieldEdit* field = txtFields(index);
    const QString text = field->text();
    if (text.isEmpty())
        return;
    const QString scheme =
        index == RebateField::Email ? QStringLiteral("mailto:") : QStringLiteral("http://");
    const QString target = text.contains(scheme, Qt::CaseInsensitive) ? text : scheme + text;
    SetForeColor(field, kVisitedLinkColor);
    (index == RebateField::Email ? mbEmailVisited : mbWebVisited) = true;
    OpenDocument(target);
}

void frmRebate::cmdEditEmail_Click() {
    txtFields(RebateField::Email)
        ->setFocus(cmdEditEmail->hasFocus() && !cmdEditEmail->underMouse() ? Qt::ShortcutFocusReason
                                                                           : Qt::MouseFocusReason);
    SelectOnFocus(txtFields(RebateField::Email));
}

void frmRebate::cmdEditWeb_Click() {
    txtFields(RebateField::WebSite)
        ->setFocus(cmdEditWeb->hasFocus() && !cmdEditWeb->underMouse() ? Qt::ShortcutFocusReason
                                                                       : Qt::MouseFocusReason);
    SelectOnFocus(txtFields(RebateField::WebSite));
}

void frmRebate::cmdDial_Click() {
    if (DigitsOnly(txtFields(RebateField::PhoneNumber)->text()).isEmpty()) {
        MsgBox(QStringLiteral("Please enter a valid number before attempting to dial."),
               vb::vbInformation, QStringLiteral("Invalid Telephone Number"));
        txtFields(RebateField::PhoneNumber)->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (TheEntryTools().ShowDialer)
        TheEntryTools().ShowDialer(this, txtFields(RebateField::PhoneNumber)->text(),
                                   txtFields(RebateField::RebateName)->text());
}

// Prints the record as the store holds it: edits not yet saved are not printed.
void frmRebate::mnuPrint_Click() {
    if (ReportHooks::Instance().PrintRecord)
        ReportHooks::Instance().PrintRecord(RebateID());
}
