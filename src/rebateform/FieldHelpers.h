#pragma once

#include "common/core/Currency.h"

#include <QDate>
#include <QString>

class FieldEdit;
class QLineEdit;

// The helpers behind the rebate form's field rules.

// The four classes of field, told by the DataField of the field.
enum class FieldClass { Text, Date, Currency, Phone };
FieldClass ClassOf(const QString& dataField);

// The date a one-key shortcut gives: "t" today, "y" yesterday, "+"/"=" the day after the base
// date and "-"/"_" the day before it (today when the base is empty); any other key today.
QDate DateShortcut(int keyAscii, const QString& baseDate = QString());

// The postage of one letter: setting "Postage" of section "Options", ".32" when unset. A
// setting that isn't an amount raises error 13.
Currency GetDefaultPostage();

// A letter as the telephone keypad field sees one: "a" to "z" and "à" to "ÿ", either case.
bool IsAlpha(QChar letter);
// The keypad digit of a letter: ABC 2, DEF 3, ... PQRS 7, TUV 8, WXY 9. A lowercase "q" gives
// 0. A letter the keypad has no digit for ("z", "Z", accented letters) raises error 13.
int LetterToDigit(QChar letter);

// Whether a text reads as money. A valid text is rewritten as the plain amount ("$1,234.5"
// becomes "1234.5"); an empty text is valid.
bool IsCurrency(QString& text);

// The selection a field gets when the focus arrives: the whole text when it came by Tab or an
// access key (the start kept in view when the text is wider than the field), none when it came
// by mouse or by code.
void SelectOnFocus(FieldEdit* field);
// Focuses the field and selects its whole text unless part of it is selected already.
void SelectAllText(FieldEdit* field);
void CaretToEnd(QLineEdit* field);
