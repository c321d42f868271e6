#pragma once

#include <QObject>
#include <QString>

// What one part of the program tells the others about the records, without knowing who
// listens. Signals are delivered at once, in the emitting call (direct connections only), so
// the order of effects stays that of a direct call: a save's lists are updated before the
// save routine goes on.
class Notifier : public QObject {
    Q_OBJECT
public:
    static Notifier& Instance();

Q_SIGNALS:
    // A record was written; its rows move to the lists its status belongs to.
    void RecordSaved(const QString& rebateID);
    // A record was marked deleted; its rows leave the lists.
    void RecordDeleted(const QString& rebateID);
    // The rebate form closed without saving; the Switchboard shows its current page anew.
    void RecordFormClosed();
    // Records changed in bulk (recovered, purged, imported, restored): every list is built anew.
    void ListsStale();
    // gDatabase was closed and opened again (compaction, restore); recordsets held before are
    // stale.
    void DatabaseReopened();
    // The options were saved; whoever shows something by them reads them anew.
    void OptionsChanged();

private:
    Notifier() = default;
};
