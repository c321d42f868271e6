#include "app/clsRebate.h"

#include "common/core/Currency.h"
#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/core/modUtilities.h"
#include "data/RebateQueries.h"
#include "data/Recordset.h"

namespace {

std::function<QString()>& SelectedRebateIDSource() {
    static std::function<QString()> source;
    return source;
}

std::function<std::optional<QString>()>& RebateFormSource() {
    static std::function<std::optional<QString>()> source;
    return source;
}

// Members are read through NZ: text and dates with "", money and Booleans with "0".
QString TextOf(const QVariant& value) {
    const QVariant v = NZ(value);
    return v.metaType().id() == QMetaType::QString ? v.toString() : CStr(v);
}

double MoneyOf(const QVariant& value) {
    const QVariant v = NZ(value, QStringLiteral("0"));
    if (v.metaType() == QMetaType::fromType<Currency>())
        return v.value<Currency>().ToDouble();
    return CDbl(v);
}

bool BooleanOf(const QVariant& value) {
    const QVariant v = NZ(value, QStringLiteral("0"));
    return v.metaType().id() == QMetaType::Bool ? v.toBool() : CBool(v);
}

// The columns that may hold Null get Null for a blank member.
QVariant NullIfBlank(const QString& member) {
    return member.isEmpty() ? QVariant() : QVariant(member);
}

} // namespace

void clsRebate::SetSelectedRebateIDSource(std::function<QString()> source) {
    SelectedRebateIDSource() = std::move(source);
}

void clsRebate::SetRebateFormSource(std::function<std::optional<QString>()> source) {
    RebateFormSource() = std::move(source);
}

clsRebate::clsRebate() {
    if (gbNewRecord) {
        mRS = RebateQueries::OpenNoRebate();
        return;
    }
    if (!SelectedRebateIDSource())
        throw VbError(VbError::ObjectNotSet);
    OpenKey(SelectedRebateIDSource()());
    ReadMembers();
}

clsRebate::~clsRebate() {
    if (mRS)
        mRS->Close();
}

void clsRebate::OpenKey(const QString& rebateID) {
    mRS = RebateQueries::OpenRebateByID(rebateID);
    mKey = rebateID;
}

void clsRebate::ReadMembers() {
    const Recordset& rs = *mRS;
    mUnreadable.clear();
    // A value its column can't hold (text for money, an impossible date, 'yes' for a Boolean)
    // gives its member a stand-in, and stays in the store as it is unless the user changes it.
    const auto money = [&](const QString& column) {
        try {
            return MoneyOf(rs.Fields(column));
        } catch (const VbError&) {
            mUnreadable.insert(column, 0.0);
            return 0.0;
        }
    };
    const auto boolean = [&](const QString& column) {
        try {
            return BooleanOf(rs.Fields(column));
        } catch (const VbError&) {
            mUnreadable.insert(column, false);
            return false;
        }
    };
    const auto date = [&](const QString& column) {
        const QVariant value = rs.Fields(column);
        const QString text = TextOf(value);
        if (value.metaType().id() == QMetaType::QString && !text.isEmpty())
            mUnreadable.insert(column, text); // shown as stored
        return text;
    };
    msRebateID = TextOf(rs.Fields(QStringLiteral("RebateID")));
    msRebateName = TextOf(rs.Fields(QStringLiteral("RebateName")));
    msAddress = TextOf(rs.Fields(QStringLiteral("Address")));
    msPhoneNumber = TextOf(rs.Fields(QStringLiteral("PhoneNumber")));
    msEmail = TextOf(rs.Fields(QStringLiteral("Email")));
    msWebSite = TextOf(rs.Fields(QStringLiteral("WebSite")));
    msProductName = TextOf(rs.Fields(QStringLiteral("ProductName")));
    mdPurchasePrice = money(QStringLiteral("PurchasePrice"));
    msDatePurchased = date(QStringLiteral("DatePurchased"));
    msExpDate = date(QStringLiteral("ExpDate"));
    msLocationPurchased = TextOf(rs.Fields(QStringLiteral("LocationPurchased")));
    mdRebateAmount = money(QStringLiteral("RebateAmount"));
    mdPostagePrice = money(QStringLiteral("PostagePrice"));
    mdCouponAmount = money(QStringLiteral("CouponAmount"));
    msDateSent = date(QStringLiteral("DateSent"));
    msDateDue = date(QStringLiteral("DateDue"));
    mdAmountReceived = money(QStringLiteral("AmountReceived"));
    msFollowupDate = date(QStringLiteral("FollowupDate"));
    mdFollowupPostage = money(QStringLiteral("FollowupPostage"));
    msDateReceived = date(QStringLiteral("DateReceived"));
    mbRejected = boolean(QStringLiteral("Rejected"));
    msReasonRejected = TextOf(rs.Fields(QStringLiteral("ReasonRejected")));
    mbDeleted = boolean(QStringLiteral("Deleted"));
    msRemarks = TextOf(rs.Fields(QStringLiteral("Remarks")));
}

void clsRebate::AddNew() {
    mRS->AddNew();
}

void clsRebate::Cancel() {
    mRS->CancelUpdate();
}

void clsRebate::Delete() {
    mRS->Delete();
    MoveNext();
}

void clsRebate::MoveFirst() {
    mRS->MoveFirst();
}

void clsRebate::MoveLast() {
    mRS->MoveLast();
}

void clsRebate::MoveNext() {
    if (!mRS->IsEOF())
        mRS->MoveNext();
    if (mRS->RecordCount() > 0 && mRS->IsEOF()) {
        Beep();
        mRS->MoveLast();
    }
}

void clsRebate::MovePrevious() {
    if (!mRS->IsBOF())
        mRS->MovePrevious();
    if (mRS->RecordCount() > 0 && mRS->IsBOF()) {
        Beep();
        mRS->MoveFirst();
    }
}

void clsRebate::RefreshFromRebateForm() {
    if (!RebateFormSource())
        return;
    const std::optional<QString> rebateID = RebateFormSource()();
    if (!rebateID || rebateID->isEmpty())
        return;
    mRS->Close();
    OpenKey(*rebateID);
    ReadMembers();
}

void clsRebate::Requery() {
    mRS->Requery();
}

void clsRebate::Update() {
    Recordset& rs = *mRS;
    // Writes a member unless it is the unchanged stand-in for a value that couldn't be read.
    const auto write = [this, &rs](const QString& column, const QVariant& value) {
        const auto unreadable = mUnreadable.constFind(column);
        const QVariant member = value.isNull() ? QVariant(QString()) : value;
        if (unreadable != mUnreadable.constEnd() && unreadable.value() == member)
            return;
        rs.SetField(column, value);
    };
    if (!rs.IsEOF()) {
        // An edit writes the one record it was opened on, or nothing.
        RebateQueries::RequireOneRebate(rs, mKey);
        rs.MoveFirst();
        rs.Edit();
    } else {
        rs.AddNew();
    }
    write(QStringLiteral("RebateID"), msRebateID);
    write(QStringLiteral("RebateName"), msRebateName);
    write(QStringLiteral("Address"), msAddress);
    write(QStringLiteral("PhoneNumber"), msPhoneNumber);
    write(QStringLiteral("Email"), NullIfBlank(msEmail));
    write(QStringLiteral("WebSite"), NullIfBlank(msWebSite));
    write(QStringLiteral("ProductName"), msProductName);
    write(QStringLiteral("PurchasePrice"), mdPurchasePrice);
    write(QStringLiteral("ExpDate"), NullIfBlank(msExpDate));
    write(QStringLiteral("DatePurchased"), NullIfBlank(msDatePurchased));
    write(QStringLiteral("LocationPurchased"), NullIfBlank(msLocationPurchased));
    write(QStringLiteral("RebateAmount"), mdRebateAmount);
    write(QStringLiteral("PostagePrice"), mdPostagePrice);
    write(QStringLiteral("CouponAmount"), mdCouponAmount);
    write(QStringLiteral("DateSent"), NullIfBlank(msDateSent));
    write(QStringLiteral("DateDue"), NullIfBlank(msDateDue));
    write(QStringLiteral("AmountReceived"), mdAmountReceived);
    write(QStringLiteral("FollowupDate"), NullIfBlank(msFollowupDate));
    write(QStringLiteral("FollowupPostage"), mdFollowupPostage);
    write(QStringLiteral("DateReceived"), NullIfBlank(msDateReceived));
    write(QStringLiteral("Rejected"), mbRejected);
    write(QStringLiteral("ReasonRejected"), NullIfBlank(msReasonRejected));
    write(QStringLiteral("Deleted"), mbDeleted);
    write(QStringLiteral("Remarks"), NullIfBlank(msRemarks));
    try {
        rs.Update();
    } catch (const VbError& e) {
        if (e.Number() == dbError::RecordDeleted)
            throw RebateQueries::RebateNotFound(mKey);
        throw;
    }
}
