#pragma once

#include <QGroupBox>
#include <QString>

class QLabel;
class QListWidget;
class QPushButton;

// The rebate form's box of attached files (a scanned receipt, the UPC, the filled-in form):
// listed with a thumbnail for pictures, attached through the desktop's file dialog, opened
// with the desktop, removed after a question. The files go into the store at once, so a
// rebate gets them only once it has been saved; until then the box says so.
class AttachmentsBox : public QGroupBox {
    Q_OBJECT
public:
    static constexpr qint64 kMaxBytes = 20 * 1024 * 1024;

    explicit AttachmentsBox(QWidget* parent = nullptr);

    // The record whose files the box shows; "" for a record not yet saved.
    void SetRebateID(const QString& rebateID);
    QString RebateID() const { return mRebateID; }

    void cmdAttach_Click();
    void cmdOpen_Click();
    void cmdRemove_Click();

    QListWidget* lstAttachments;
    QLabel* lblAttachHint;
    QPushButton* cmdAttach;
    QPushButton* cmdOpen;
    QPushButton* cmdRemove;

private:
    void Reload();
    void EnableButtons();

    QString mRebateID;
};
