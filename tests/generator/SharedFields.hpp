#pragma once

// The members that a record and its table row share under one name: for each kind of row, "visit"
// and its name hand them to `visit(name, inRow, inRecord)`. Lists are not among them.

#include "reader/ModelDef.hpp"
#include "reader/StageDef.hpp"

namespace tindrel::test {

#define RECORD(Row, RecordDef)                        \
    template <class Visit, class InRow, class Record> \
    void visit##Row(Visit& visit, InRow& row, Record& record) {
#define FIELD(type, name, value) visit(#name, row.name, record.name);
#define NESTED(Row, name) visit##Row(visit, row.name, record.name);
#define END_RECORD }
#include "reader/Characters.def"

#define RECORD(Row, RecordDef)                        \
    template <class Visit, class InRow, class Record> \
    void visit##Row(Visit& visit, InRow& row, Record& record) {
#define FIELD(type, name, value) visit(#name, row.name, record.name);
#define END_RECORD }
#include "reader/Stages.def"

}  // namespace tindrel::test
