#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

// Hands a telephone number to the desktop's dialing program. It stays open after each try,
// failed or not, until Cancel.
class frmAutoDial : public QDialog {
    Q_OBJECT
public:
    explicit frmAutoDial(QWidget* parent = nullptr);

    // Shown modally with a number and the called party's name; the name row shows only when
    // there is a name.
    static void ShowModal(QWidget* owner, const QString& number, const QString& name);

    QLineEdit* txtNumber = nullptr;
    QLabel* txtName = nullptr;
    QLabel* lblName = nullptr;

    void SetName(const QString& name);
    void cmdDial_Click();
    void cmdCancel_Click() { reject(); }

private:
    void UpdateDialButton();

    QPushButton* cmdDial = nullptr;
};

// The text of a failed dial's code.
QString DialErrorText(int code);
