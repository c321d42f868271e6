#include "common/core/VbError.h"

VbError::VbError(int number, QString description)
    : mNumber(number), mDescription(std::move(description)), mWhat(mDescription.toUtf8()) {}

VbError::VbError(Code code) : VbError(code, StandardDescription(code)) {}

QString VbError::StandardDescription(int number) {
    switch (number) {
    case InvalidCall:
        return QStringLiteral("Invalid procedure call or argument");
    case Overflow:
        return QStringLiteral("Overflow");
    case TypeMismatch:
        return QStringLiteral("Type mismatch");
    case FileNotFound:
        return QStringLiteral("File not found");
    case PathFileAccess:
        return QStringLiteral("Path/File access error");
    case ObjectNotSet:
        return QStringLiteral("Object variable or With block variable not set");
    case InvalidPattern:
        return QStringLiteral("Invalid pattern string");
    case InvalidUseOfNull:
        return QStringLiteral("Invalid use of Null");
    case NoCurrentRecord:
        return QStringLiteral("No current record.");
    case UpdateWithoutEdit:
        return QStringLiteral("Update or CancelUpdate without AddNew or Edit.");
    case DuplicateKey:
        return QStringLiteral("The changes you requested to the table were not successful "
                              "because they would create duplicate values in the index, "
                              "primary key, or relationship.");
    case ItemNotFound:
        return QStringLiteral("Item not found in this collection.");
    case IndexOutOfBounds:
        return QStringLiteral("Index out of bounds");
    case ElementNotFound:
        return QStringLiteral("Element not found");
    default:
        return QStringLiteral("Application-defined or object-defined error");
    }
}
