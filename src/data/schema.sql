-- The delivered empty database. Money is INTEGER ten-thousandths of a dollar, dates are
-- TEXT yyyy-mm-dd, Booleans INTEGER 0/1; every column of Rebates may hold NULL.
-- Tables written IF NOT EXISTS are added to an older store when the program opens it.
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

-- Files attached to a rebate, the bytes in the store. A rebate keeps them while it is only
-- marked deleted; purging the rebate removes them.
CREATE TABLE IF NOT EXISTS Attachments (
    AttachmentID INTEGER PRIMARY KEY,
    RebateID     TEXT NOT NULL,
    FileName     TEXT NOT NULL,
    Size         INTEGER NOT NULL,
    Thumbnail    BLOB,
    Data         BLOB NOT NULL
);
CREATE INDEX IF NOT EXISTS AttachmentsByRebate ON Attachments (RebateID);

-- The unsent claims by their postmark deadline, for the Switchboard's deadline panel.
CREATE INDEX IF NOT EXISTS UnsentByExpDate ON Rebates (ExpDate) WHERE DateSent IS NULL;
