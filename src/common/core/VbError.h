#pragma once

#include <QString>
#include <exception>

// A run-time error as the program reports it: a number (the old engine's number where one
// exists) and a description. Routines that can fail throw it; trapped routines catch it and
// hand both to gErrorLog.LogIt.
class VbError : public std::exception {
public:
    enum Code {
        InvalidCall = 5,
        Overflow = 6,
        TypeMismatch = 13,
        FileNotFound = 53,
        PathFileAccess = 75,
        ObjectNotSet = 91,
        InvalidPattern = 93,
        InvalidUseOfNull = 94,
        NoCurrentRecord = 3021,
        DuplicateKey = 3022,
        ItemNotFound = 3265,
        UpdateWithoutEdit = 3020,
        DatabaseError = 3049,
        QueryError = 3075,
    };

    VbError(int number, QString description);
    explicit VbError(Code code);

    int Number() const { return mNumber; }
    const QString& Description() const { return mDescription; }
    const char* what() const noexcept override { return mWhat.constData(); }

    // The engine's standard text for a number, "Application-defined or object-defined error"
    // for one it doesn't know.
    static QString StandardDescription(int number);

private:
    int mNumber;
    QString mDescription;
    QByteArray mWhat;
};
