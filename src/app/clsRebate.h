#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class Recordset;

// The record object of the rebate form: one row of Rebates, held in 24 members (dates as
// text, money as double). The properties only move values; Update writes them. Whether a
// save adds or edits follows from whether the private recordset has a row.
//
// Creating one reads gbNewRecord: when set, it opens an empty recordset for a new record;
// otherwise it opens the row whose RebateID the selected row of the Switchboard's current
// list holds, and reads it. A missing row raises the engine's error (3021) to the creator.
// Update of an opened record writes that one row or nothing: when its key no longer names
// exactly one row it raises 3021 or 3022 and leaves the table as it was.
class clsRebate {
public:
    clsRebate();  // Class_Initialize
    ~clsRebate(); // Class_Terminate
    clsRebate(const clsRebate&) = delete;
    clsRebate& operator=(const clsRebate&) = delete;

    // The two things the object asks of the user interface, which this library can't see.
    // The RebateID of the selected row of the Switchboard's current list (may raise, e.g. 91
    // when nothing is selected):
    static void SetSelectedRebateIDSource(std::function<QString()> source);
    // The text of frmRebate's RebateID field, or nullopt when frmRebate isn't loaded:
    static void SetRebateFormSource(std::function<std::optional<QString>()> source);

    void AddNew();
    void Cancel();
    void Delete();
    void MoveFirst();
    void MoveLast();
    void MoveNext();     // at the end: beeps and stays on the last row
    void MovePrevious(); // at the start: beeps and stays on the first row
    // Puts the object on the record the rebate form shows (after the first save of a new one).
    void RefreshFromRebateForm();
    void Requery();
    void Update();

    QString Address() const { return msAddress; }
    void SetAddress(const QString& vData) { msAddress = vData; }
    double AmountReceived() const { return mdAmountReceived; }
    void SetAmountReceived(double vData) { mdAmountReceived = vData; }
    double CouponAmount() const { return mdCouponAmount; }
    void SetCouponAmount(double vData) { mdCouponAmount = vData; }
    QString DateDue() const { return msDateDue; }
    void SetDateDue(const QString& vData) { msDateDue = vData; }
    QString DatePurchased() const { return msDatePurchased; }
    void SetDatePurchased(const QString& vData) { msDatePurchased = vData; }
    QString DateReceived() const { return msDateReceived; }
    void SetDateReceived(const QString& vData) { msDateReceived = vData; }
    QString DateSent() const { return msDateSent; }
    void SetDateSent(const QString& vData) { msDateSent = vData; }
    bool Deleted() const { return mbDeleted; }
    void SetDeleted(bool vData) { mbDeleted = vData; }
    QString Email() const { return msEmail; }
    void SetEmail(const QString& vData) { msEmail = vData; }
    QString ExpDate() const { return msExpDate; }
    void SetExpDate(const QString& vData) { msExpDate = vData; }
    QString FollowupDate() const { return msFollowupDate; }
    void SetFollowupDate(const QString& vData) { msFollowupDate = vData; }
    double FollowupPostage() const { return mdFollowupPostage; }
    void SetFollowupPostage(double vData) { mdFollowupPostage = vData; }
    QString LocationPurchased() const { return msLocationPurchased; }
    void SetLocationPurchased(const QString& vData) { msLocationPurchased = vData; }
    QString PhoneNumber() const { return msPhoneNumber; }
    void SetPhoneNumber(const QString& vData) { msPhoneNumber = vData; }
    double PostagePrice() const { return mdPostagePrice; }
    void SetPostagePrice(double vData) { mdPostagePrice = vData; }
    QString ProductName() const { return msProductName; }
    void SetProductName(const QString& vData) { msProductName = vData; }
    double PurchasePrice() const { return mdPurchasePrice; }
    void SetPurchasePrice(double vData) { mdPurchasePrice = vData; }
    QString ReasonRejected() const { return msReasonRejected; }
    void SetReasonRejected(const QString& vData) { msReasonRejected = vData; }
    double RebateAmount() const { return mdRebateAmount; }
    void SetRebateAmount(double vData) { mdRebateAmount = vData; }
    QString RebateID() const { return msRebateID; }
    void SetRebateID(const QString& vData) { msRebateID = vData; }
    QString RebateName() const { return msRebateName; }
    void SetRebateName(const QString& vData) { msRebateName = vData; }
    bool Rejected() const { return mbRejected; }
    void SetRejected(bool vData) { mbRejected = vData; }
    QString Remarks() const { return msRemarks; }
    void SetRemarks(const QString& vData) { msRemarks = vData; }
    QString WebSite() const { return msWebSite; }
    void SetWebSite(const QString& vData) { msWebSite = vData; }

private:
    void OpenKey(const QString& rebateID);
    void ReadMembers();

    std::unique_ptr<Recordset> mRS;
    QString mKey; // the RebateID the recordset was opened on
    // The columns whose stored values couldn't be read, with their members' stand-ins.
    QHash<QString, QVariant> mUnreadable;

    QString msRebateID;
    QString msRebateName;
    QString msAddress;
    QString msPhoneNumber;
    QString msEmail;
    QString msWebSite;
    QString msProductName;
    double mdPurchasePrice = 0.0;
    QString msExpDate;
    QString msDatePurchased;
    QString msLocationPurchased;
    double mdRebateAmount = 0.0;
    double mdPostagePrice = 0.0;
    double mdCouponAmount = 0.0;
    QString msDateSent;
    QString msDateDue;
    double mdAmountReceived = 0.0;
    QString msFollowupDate;
    double mdFollowupPostage = 0.0;
    QString msDateReceived;
    bool mbRejected = false;
    QString msReasonRejected;
    bool mbDeleted = false;
    QString msRemarks;
};
