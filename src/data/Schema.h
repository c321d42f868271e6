#pragma once

class Database;

// Creates the tables and indexes of the schema that the store lacks (the statements written
// IF NOT EXISTS), so that a store made by an older version gains them. The columns of
// Rebates are never touched. Raises what the store raises.
void AddMissingTables(Database& db);
