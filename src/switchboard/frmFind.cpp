#include "switchboard/frmFind.h"

#include "app/AppSettings.h"
#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "common/core/Twips.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "common/ui/ListView.h"
#include "switchboard/frmSwitchboard.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

namespace {

frmFind* gInstance = nullptr;
} // namespace

FindHit FindInLists(const QString& findWhat, const std::vector<ListView*>& order,
                    ListView* current) {
    const Regional::LikePattern pattern(QStringLiteral("*") + findWhat.toLower() +
                                        QStringLiteral("*"));
    ListItem* start = current ? current->SelectedItem() : nullptr;
    const QString startText = start ? start->Text() : QString();
    const int startIndex = start ? start->Index() : 0;
    bool passedStart = false;

    for (ListView* lv : order) {
        ListItemCollection& rows = lv->ListItems();
        const int count = rows.Count();
        const bool fromStart = lv == current && start;
        for (int i = 1; i <= count; ++i) {
            ListItem* row = rows.Item(i);
            const QString text = row->Text();
            if (!pattern.Matches(text.toLower()))
                continue;
            if (!fromStart)
                return {lv, row};
            if (!passedStart && text == startText) {
                passedStart = true;
                continue;
            }
            if (i > startIndex)
                return {lv, row};
        }
    }
    return {};
}

frmFind* frmFind::Instance() {
    return gInstance;
}

frmFind& frmFind::Load(QWidget* parent) {
    if (!gInstance)
        new frmFind(parent);
    return *gInstance;
}

frmFind::frmFind(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(QStringLiteral("Find"));
    setAttribute(Qt::WA_DeleteOnClose);
    gInstance = this;
    Forms::Register(this);

    Image1 = new QLabel(this);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->setPixmap(ImageList::Render(ImageList::ResourceFor(QStringLiteral("Find")), 32));
    Image1->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    Label1 = new QLabel(QStringLiteral("Fi&nd What:"), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setToolTip(QStringLiteral("Text to Find"));
    Text1->setMinimumWidth(220);
    Label1->setBuddy(Text1);

    cmdFind = new QPushButton(QStringLiteral("&Find"), this);
    cmdFind->setObjectName(QStringLiteral("cmdFind"));
    cmdFind->setToolTip(QStringLiteral("Start Search"));
    cmdFind->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    // The tool tip has always read so.
    cmdCancel->setToolTip(QStringLiteral("Return to Notepad"));
    cmdCancel->setAutoDefault(false);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setHorizontalSpacing(10);
    layout->addWidget(Image1, 0, 0, 2, 1);
    layout->addWidget(Label1, 0, 1);
    layout->addWidget(Text1, 0, 2);
    layout->addWidget(cmdFind, 0, 3);
    layout->addWidget(cmdCancel, 1, 3);
    layout->setRowStretch(2, 1);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(Text1, &QLineEdit::textChanged, this, &frmFind::Text1_Change);
    connect(cmdFind, &QPushButton::clicked, this, &frmFind::cmdFind_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFind::cmdCancel_Click);

    Form_Load();
}

frmFind::~frmFind() {
    if (gInstance == this)
        gInstance = nullptr;
}

void frmFind::Form_Load() {
    // The first position is centred over the window that opened the dialog.
    const QWidget* over = parentWidget() ? parentWidget()->window() : nullptr;
    const QRect area =
        over ? over->frameGeometry() : (screen() ? screen()->availableGeometry() : QRect());
    const QSize size = sizeHint();
    const int defaultLeft = (area.x() + (area.width() - size.width()) / 2) * kTwipsPerPixel;
    const int defaultTop = (area.y() + (area.height() - size.height()) / 2) * kTwipsPerPixel;
    move(qRound(ReadTwips(Setting::FindLeft).value_or(defaultLeft) / kTwipsPerPixel),
         qRound(ReadTwips(Setting::FindTop).value_or(defaultTop) / kTwipsPerPixel));

    cmdFind->setEnabled(false);
    if (!gFindWhat.isEmpty()) {
        Text1->setText(gFindWhat);
        Text1->selectAll();
    }
}

void frmFind::Form_Unload() {
    if (isMinimized())
        return;
    WriteSetting(Setting::FindLeft, QString::number(x() * kTwipsPerPixel));
    WriteSetting(Setting::FindTop, QString::number(y() * kTwipsPerPixel));
}

void frmFind::done(int result) {
    Form_Unload();
    QDialog::done(result);
}

void frmFind::Text1_Change() {
    cmdFind->setEnabled(!Text1->text().isEmpty());
}

void frmFind::cmdFind_Click() {
    if (Text1->text().isEmpty())
        return;
    gFindWhat = Text1->text();
    try {
        FindIt();
    } catch (const VbError& e) {
        LogError(e, QStringLiteral("frmFind"), QStringLiteral("cmdFind_Click"));
        SetStatusText(QStringLiteral("Ready..."));
    }
}

void frmFind::cmdCancel_Click() {
    close();
}

void frmFind::FindIt() {
    SetStatusText(QStringLiteral("Finding..."));
    frmSwitchboard* sb = frmSwitchboard::Instance();
    if (!sb)
        throw VbError(VbError::ObjectNotSet);

    ListView* current = sb->GetCurrentLV();
    if (!current)
        current = sb->lvNew;
    // The seven record lists stand in a ring; the search starts at the current list, or at
    // lvUnsent from the New and Statistics pages.
    const std::array<ListView*, 7> ring = sb->RecordLists();
    size_t first = 0;
    for (size_t i = 0; i < ring.size(); ++i)
        if (ring[i] == current)
            first = i;
    std::vector<ListView*> order;
    for (size_t i = 0; i < ring.size(); ++i)
        order.push_back(ring[(first + i) % ring.size()]);

    const FindHit hit = FindInLists(gFindWhat, order, current);
    if (hit.row) {
        sb->SelectTabOf(hit.list);
        hit.row->EnsureVisible();
        ListItemCollection& rows = hit.list->ListItems();
        for (int i = 1; i <= rows.Count(); ++i)
            if (ListItem* row = rows.Item(i); row != hit.row && row->Selected())
                row->SetSelected(false);
        hit.list->SetSelectedItem(hit.row);
    } else {
        MsgBox(QStringLiteral("Cannot find '") + gFindWhat + QStringLiteral("' in the database."),
               vb::vbInformation, QStringLiteral("No Matching Rebate Found"));
    }
    SetStatusText(QStringLiteral("Ready..."));
}
