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
    msRebateID = TextOf(rs.Fields(QStringLiteral("RebateID")));
    msRebateName = TextOf(rs.Fields(QStringLiteral("RebateName")));
    msAddress = TextOf(rs.Fields(QStringLiteral("Address")));
    msPhoneNumber = TextOf(rs.Fields(QStringLiteral("PhoneNumber")));
    msEmail = TextOf(rs.Fields(QStringLiteral("Email")));
    msWebSite = TextOf(rs.Fields(QStringLiteral("WebSite")));
    msProductName = TextOf(rs.Fields(QStringLiteral("ProductName")));
    mdPurchasePrice = MoneyOf(rs.Fields(QStringLiteral("PurchasePrice")));
    msDatePurchased = TextOf(rs.Fields(QStringLiteral("DatePurchased")));
    msExpDate = TextOf(rs.Fields(QStringLiteral("ExpDate")));
    msLocationPurchased = TextOf(rs.Fields(QStringLiteral("LocationPurchased")));
    mdRebateAmount = MoneyOf(rs.Fields(QStringLiteral("RebateAmount")));
    mdPostagePrice = MoneyOf(rs.Fields(QStringLiteral("PostagePrice")));
    mdCouponAmount = MoneyOf(rs.Fields(QStringLiteral("CouponAmount")));
    msDateSent = TextOf(rs.Fields(QStringLiteral("DateSent")));
    msDateDue = TextOf(rs.Fields(QStringLiteral("DateDue")));
    mdAmountReceived = MoneyOf(rs.Fields(QStringLiteral("AmountReceived")));
    msFollowupDate = TextOf(rs.Fields(QStringLiteral("FollowupDate")));
    mdFollowupPostage = MoneyOf(rs.Fields(QStringLiteral("FollowupPostage")));
    msDateReceived = TextOf(rs.Fields(QStringLiteral("DateReceived")));
    mbRejected = BooleanOf(rs.Fields(QStringLiteral("Rejected")));
    msReasonRejected = TextOf(rs.Fields(QStringLiteral("ReasonRejected")));
    mbDeleted = BooleanOf(rs.Fields(QStringLiteral("Deleted")));
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
    if (!rs.IsEOF()) {
        // An edit writes the one record it was opened on, or nothing.
        RebateQueries::RequireOneRebate(rs, mKey);
        rs.MoveFirst();
        rs.Edit();
    } else {
        rs.AddNew();
    }
    rs.SetField(QStringLiteral("RebateID"), msRebateID);
    rs.SetField(QStringLiteral("RebateName"), msRebateName);
    rs.SetField(QStringLiteral("Address"), msAddress);
    rs.SetField(QStringLiteral("PhoneNumber"), msPhoneNumber);
    rs.SetField(QStringLiteral("Email"), NullIfBlank(msEmail));
    rs.SetField(QStringLiteral("WebSite"), NullIfBlank(msWebSite));
    rs.SetField(QStringLiteral("ProductName"), msProductName);
    rs.SetField(QStringLiteral("PurchasePrice"), mdPurchasePrice);
    rs.SetField(QStringLiteral("ExpDate"), NullIfBlank(msExpDate));
    rs.SetField(QStringLiteral("DatePurchased"), NullIfBlank(msDatePurchased));
    rs.SetField(QStringLiteral("LocationPurchased"), NullIfBlank(msLocationPurchased));
    rs.SetField(QStringLiteral("RebateAmount"), mdRebateAmount);
    rs.SetField(QStringLiteral("PostagePrice"), mdPostagePrice);
    rs.SetField(QStringLiteral("CouponAmount"), mdCouponAmount);
    rs.SetField(QStringLiteral("DateSent"), NullIfBlank(msDateSent));
    rs.SetField(QStringLiteral("DateDue"), NullIfBlank(msDateDue));
    rs.SetField(QStringLiteral("AmountReceived"), mdAmountReceived);
    rs.SetField(QStringLiteral("FollowupDate"), NullIfBlank(msFollowupDate));
    rs.SetField(QStringLiteral("FollowupPostage"), mdFollowupPostage);
    rs.SetField(QStringLiteral("DateReceived"), NullIfBlank(msDateReceived));
    rs.SetField(QStringLiteral("Rejected"), mbRejected);
    rs.SetField(QStringLiteral("ReasonRejected"), NullIfBlank(msReasonRejected));
    rs.SetField(QStringLiteral("Deleted"), mbDeleted);
    rs.SetField(QStringLiteral("Remarks"), NullIfBlank(msRemarks));
    try {
        rs.Update();
    } catch (const VbError& e) {
        if (e.Number() == dbError::RecordDeleted)
            throw RebateQueries::RebateNotFound(mKey);
        throw;
    }
}
