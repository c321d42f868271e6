#pragma once

#include "data/Recordset.h"

#include <memory>

// Every row of Rebates, read-only, in the table's order: the reports pick the records they
// print out of one walk. Raises 91 when no database is open.
std::unique_ptr<Recordset> OpenAllRebates();
