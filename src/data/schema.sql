-- The delivered empty database. Money is INTEGER ten-thousandths of a dollar, dates are
-- TEXT yyyy-mm-dd, Booleans INTEGER 0/1; every column may hold NULL.
CREATE TABLE Rebates (
    RebateID          TEXT PRIMARY KEY,
    RebateName        TEXT,
    Address           TEXT,
    PhoneNumber       TEXT,
    Email             TEXT,
    WebSite           TEXT,
    ProductName       TEXT,
    PurchasePrice     CURRENCY,
    ExpDate           DATE,
    DatePurchased     DATE,
    LocationPurchased TEXT,
    RebateAmount      CURRENCY,
    PostagePrice      CURRENCY,
    CouponAmount      CURRENCY,
    DateSent          DATE,
    DateDue           DATE,
    AmountReceived    CURRENCY,
    FollowupDate      DATE,
    FollowupPostage   CURRENCY,
    DateReceived      DATE,
    Rejected          BOOLEAN,
    ReasonRejected    TEXT,
    Deleted           BOOLEAN,
    Remarks           TEXT
);
