#pragma once

#include <memory>

class Recordset;

// A walker over the undeleted records, ordered by DateSent. Its query text has an unbalanced
// parenthesis and has always been refused by the engine, so creating one raises 3075;
// nothing in the program creates it.
class clsRebates {
public:
    clsRebates(); // Class_Initialize
    ~clsRebates();
    clsRebates(const clsRebates&) = delete;
    clsRebates& operator=(const clsRebates&) = delete;

    void MoveFirst();
    void MoveLast();
    void MoveNext();     // no beep at the end
    void MovePrevious(); // beeps at the start and stays on the first row
    void Requery();

private:
    std::unique_ptr<Recordset> mRS;
};
