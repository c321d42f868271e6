#pragma once

// The members of the rebate form's control arrays by name. The numbers are the controls'
// indexes (txtFields_20 is the Rebate Name), so they stay as the form has always had them.
namespace RebateField {
enum Index : int {
    Address = 0,
    DatePurchased = 1,
    PurchasePrice = 2,
    CouponAmount = 3,
    RebateAmount = 4,
    DateSent = 5,
    PostagePrice = 6,
    Email = 7,
    AmountReceived = 8,
    DateDue = 9,
    DateReceived = 10,
    FollowupDate = 11,
    FollowupPostage = 12,
    PhoneNumber = 13,
    ProductName = 14,
    LocationPurchased = 15,
    ReasonRejected = 16,
    Remarks = 17,
    RebateID = 18,
    ExpDate = 19,
    RebateName = 20,
    WebSite = 22,
};
} // namespace RebateField

// The members of chkFields.
namespace RebateCheck {
enum Index : int {
    Deleted = 0,
    Rejected = 21,
};
} // namespace RebateCheck
