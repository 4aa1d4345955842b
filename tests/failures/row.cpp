#include "tests/failures/row.h"

namespace failures {

const std::vector<Row> &allRows() {
    static const std::vector<Row> kRows = [] {
        std::vector<Row> rows;
        for (auto *const part : {treeRows, writingRows, readingRows, schemaRows}) {
            for (Row &row : part()) rows.push_back(std::move(row));
        }
        return rows;
    }();
    return kRows;
}

}  // namespace failures
